// SPDX-License-Identifier: MIT

#include "host/words/AccountText.h"

#include <gmock/gmock.h>

#include <numeric>
#include <set>

namespace {

using gps::SkipReason;
using host::gapText;
using host::groupedText;
using host::KindTally;
using host::SessionGap;
using host::tallyText;
using testing::HasSubstr;
using Cause = SessionGap::Cause;

KindTally tracks(std::uint64_t seen, std::uint64_t accepted)
{
    KindTally tally{.kind = "tracks"};
    tally.lines.seen = seen;
    tally.lines.accepted = accepted;
    return tally;
}

void skip(KindTally& tally, SkipReason reason, std::uint64_t count)
{
    tally.lines.skipped[static_cast<std::size_t>(reason)] += count;
}

TEST(AccountText, NumbersHaveACommaBetweenGroups)
{
    EXPECT_EQ(groupedText(0), "0");
    EXPECT_EQ(groupedText(999), "999");
    EXPECT_EQ(groupedText(1000), "1,000");
    EXPECT_EQ(groupedText(1234567), "1,234,567");
}

TEST(AccountText, NothingIsSaidAboutACleanKind)
{
    EXPECT_EQ(tallyText(tracks(2484, 2484)), "");
    auto tally = tracks(3, 2);
    skip(tally, SkipReason::kOtherKind, 1);
    EXPECT_EQ(tallyText(tally), "");
}

TEST(AccountText, DamagedLinesAreNamedWithTheirFile)
{
    auto tally = tracks(2485, 2481);
    skip(tally, SkipReason::kWrongChecksum, 2);
    skip(tally, SkipReason::kNotASentence, 1);
    skip(tally, SkipReason::kOtherKind, 1);
    tally.damaged = {{"/media/Track Logs/TKLG001.log", {10, 20, 30}}};
    EXPECT_EQ(tallyText(tally),
              "2,481 of 2,484 track points; 3 damaged: TKLG001.log lines 10, 20, 30");
}

TEST(AccountText, TenDamagedLinesAreNamedAndMoreAreCounted)
{
    auto tally = tracks(20, 8);
    tally.damaged = {{"/a.log", {1}}, {"/b.log", {1, 2, 3, 4, 5, 6, 7, 8, 9}}};
    skip(tally, SkipReason::kWrongChecksum, 10);
    EXPECT_EQ(tallyText(tally), "8 of 20 track points; 10 damaged: a.log line 1; b.log lines 1, 2, "
                                "3, 4, 5, 6, 7, 8, 9");
    tally.damaged[1].numbers.push_back(10);
    tally.damaged.push_back({"/c.log", {5}});
    skip(tally, SkipReason::kWrongChecksum, 2);
    EXPECT_EQ(tallyText(tally), "8 of 20 track points; 12 damaged: a.log line 1; b.log lines 1, 2, "
                                "3, 4, 5, 6, 7, 8, 9, and 2 more");
}

TEST(AccountText, DamageWithoutDetailsIsCounted)
{
    auto tally = tracks(1, 0);
    skip(tally, SkipReason::kWrongChecksum, 1);
    EXPECT_EQ(tallyText(tally), "0 of 1 track point; 1 damaged");
}

TEST(AccountText, RecordsThatAreNotKeptAreCountedByReason)
{
    KindTally tally{.kind = "waypoints"};
    tally.lines.seen = 5;
    tally.lines.accepted = 2;
    skip(tally, SkipReason::kNoName, 1);
    skip(tally, SkipReason::kReplaced, 2);
    EXPECT_EQ(tallyText(tally), "2 of 5 waypoints; 1 without a name; 2 replaced by a later one of "
                                "the same name");
}

TEST(AccountText, DamageOnASerialLineIsRepairedByTheReceiver)
{
    KindTally tally{.kind = "tracks", .isSerial = true};
    EXPECT_EQ(tallyText(tally), "");
    skip(tally, SkipReason::kWrongChecksum, 1);
    EXPECT_EQ(
        tallyText(tally),
        "While tracks were read, 1 sentence arrived damaged. A receiver sends such a sentence "
        "again.");
}

TEST(AccountText, EveryGapSaysWhatIsMissingAndWhatToDo)
{
    EXPECT_EQ(gapText({.cause = Cause::kSilence, .subject = "tracks", .count = 3}),
              "The receiver stopped sending while tracks were read; 3 track points arrived. Check "
              "the cable and the receiver's batteries, and try again.");
    EXPECT_EQ(gapText({.cause = Cause::kDamage, .subject = "routes", .count = 1}),
              "Too many sentences were damaged while routes were read; 1 route sentence arrived. "
              "Check the cable and the receiver's batteries, and try again.");
    EXPECT_EQ(gapText({.cause = Cause::kNotReached, .subject = "routes"}),
              "The session ended before the routes were read.");
    EXPECT_EQ(gapText({.cause = Cause::kNotAcknowledged, .subject = "PMGNCMD,TRACK,2"}),
              "The receiver did not acknowledge the command TRACK,2, so records may be missing. "
              "Turn it off and on, and try again.");
    EXPECT_EQ(gapText({.cause = Cause::kNotAcknowledged,
                       .subject = "PMGNCMD,HANDOFF",
                       .isClosingDown = true}),
              "The receiver did not acknowledge the command HANDOFF, so it may still be in its "
              "transfer mode. Turn it off and on again.");
    EXPECT_THAT(gapText({.cause = Cause::kSpeedRefused, .subject = "PMGNCMD,BAUD,115200"}),
                HasSubstr("but not at 115200 bits per second"));
    EXPECT_EQ(gapText({.cause = Cause::kUnknownPoints, .subject = "routes", .count = 2}),
              "2 points were left out of their routes, because the waypoints did not arrive. Try "
              "again.");
    EXPECT_EQ(gapText({.cause = Cause::kUnfinishedRoutes, .subject = "routes", .count = 1}),
              "1 route was left out, because the last sentence did not arrive. Try again.");
    EXPECT_THAT(gapText({.cause = Cause::kRepeatedRoutes, .subject = "routes", .count = 1}),
                HasSubstr("1 sentence of routes arrived twice"));
    for (const auto cause : {Cause::kStopped, Cause::kFailed})
        EXPECT_THAT(gapText({.cause = cause, .subject = "tracks"}), HasSubstr("0 track points"));
}

TEST(AccountText, RepeatsAreCountedByKind)
{
    EXPECT_EQ(host::repeatText({}), "");
    EXPECT_EQ(host::repeatText({.waypoints = 1, .trackPoints = 2000, .routes = 2}),
              "The receiver sent these twice; the repeats were left out: 1 waypoint, 2 routes, "
              "2,000 track points.");
}

TEST(AccountText, EachVoiceHasItsOwnAdviceAndNamesThePort)
{
    std::set<std::string> texts;
    for (const auto voice :
         {gps::LineVoice::kNothing, gps::LineVoice::kNoise, gps::LineVoice::kNmea}) {
        const auto text = host::voiceText(voice, "/dev/some");
        EXPECT_THAT(text, HasSubstr("at /dev/some"));
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 3U);
}

} // namespace
