// SPDX-License-Identifier: MIT

#include "host/transfer/AccountFindings.h"

#include "host/DriverReports.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using gps::PhaseEnd;
using gps::SkipReason;
using host::gapsIn;
using host::SessionGap;
using host::talliesOf;
using support::errorAbout;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Cause = SessionGap::Cause;

gps::LineAccount lines(std::uint64_t seen, std::uint64_t accepted,
                       std::vector<gps::SkippedLine> skipped = {})
{
    gps::LineAccount account{.seen = seen, .accepted = accepted, .details = skipped};
    for (const auto& line : skipped)
        ++account.skipped[static_cast<std::size_t>(line.reason)];
    return account;
}

/// A session in which all phases ended with END and all commands were acknowledged.
gps::TransferAccount cleanSession()
{
    gps::TransferAccount account;
    for (const char* kind : {"waypoints", "tracks", "routes"})
        account.phases.push_back({kind, PhaseEnd::kEnd, lines(3, 3)});
    using enum gps::CommandPurpose;
    account.commands = {{"on", 1, true, kTransfer},
                        {"fast", 1, true, kSpeedUp},
                        {"off", 1, true, kRestore},
                        {"silent", 1, true, kRestore},
                        {"slow", 1, true, kRestore}};
    return account;
}

std::vector<Cause> causesIn(const gps::TransferAccount& account, std::uint64_t repeatedRoutes = 0)
{
    std::vector<Cause> causes;
    for (const auto& gap : gapsIn(account, repeatedRoutes))
        causes.push_back(gap.cause);
    return causes;
}

TEST(AccountFindings, EmptyAccountHasNoFindings)
{
    EXPECT_THAT(talliesOf({}), IsEmpty());
    EXPECT_THAT(gapsIn({}, 0), IsEmpty());
    EXPECT_THAT(host::unreadablePaths({}), IsEmpty());
}

TEST(AccountFindings, TallyHasTheTotalsAndTheDamagedLinesOfEachFile)
{
    gps::TransferAccount account;
    account.files = {{.kind = "tracks",
                      .path = "/a.log",
                      .lines = lines(5, 2,
                                     {{2, SkipReason::kWrongChecksum},
                                      {3, SkipReason::kOtherKind},
                                      {4, SkipReason::kNotASentence}})},
                     {.kind = "tracks", .path = "/b.log", .lines = lines(1, 1)}};
    account.totals = {{.kind = "tracks",
                       .lines = lines(6, 3,
                                      {{2, SkipReason::kWrongChecksum},
                                       {3, SkipReason::kOtherKind},
                                       {4, SkipReason::kNotASentence}})}};
    const auto tallies = talliesOf(account);
    ASSERT_THAT(tallies, SizeIs(1));
    EXPECT_EQ(tallies[0].kind, "tracks");
    EXPECT_EQ(tallies[0].lines.seen, 6U);
    EXPECT_EQ(tallies[0].lines.accepted, 3U);
    EXPECT_EQ(tallies[0].damagedCount(), 2U);
    ASSERT_THAT(tallies[0].damaged, SizeIs(1));
    EXPECT_EQ(tallies[0].damaged[0].path, "/a.log");
    EXPECT_THAT(tallies[0].damaged[0].numbers, ElementsAre(2, 4));
}

TEST(AccountFindings, PhaseHasATallyOfItsOwn)
{
    const auto tallies = talliesOf(cleanSession());
    ASSERT_THAT(tallies, SizeIs(3));
    EXPECT_TRUE(tallies[0].isSerial);
    EXPECT_EQ(tallies[0].lines.accepted, 3U);
}

TEST(AccountFindings, CleanSessionHasNoGap)
{
    EXPECT_THAT(causesIn(cleanSession()), IsEmpty());
}

TEST(AccountFindings, EveryEndOfAPhaseButEndIsAGap)
{
    const std::vector<std::pair<PhaseEnd, Cause>> ends{{PhaseEnd::kNotReached, Cause::kNotReached},
                                                       {PhaseEnd::kSilence, Cause::kSilence},
                                                       {PhaseEnd::kDamage, Cause::kDamage},
                                                       {PhaseEnd::kStopped, Cause::kStopped},
                                                       {PhaseEnd::kFailed, Cause::kFailed}};
    for (const auto& [end, cause] : ends) {
        auto account = cleanSession();
        account.phases[1].end = end;
        const auto gaps = gapsIn(account, 0);
        ASSERT_THAT(gaps, SizeIs(1));
        EXPECT_EQ(gaps[0].cause, cause);
        EXPECT_EQ(gaps[0].subject, "tracks");
        EXPECT_EQ(gaps[0].count, 3U);
    }
}

TEST(AccountFindings, CommandThatWasNeverAcknowledgedIsAGap)
{
    const std::vector<std::pair<std::size_t, Cause>> commands{{0, Cause::kNotAcknowledged},
                                                              {1, Cause::kSpeedRefused},
                                                              {2, Cause::kNotAcknowledged},
                                                              {4, Cause::kNotAcknowledged}};
    for (const auto& [index, cause] : commands) {
        auto account = cleanSession();
        account.commands[index].acknowledged = false;
        const auto gaps = gapsIn(account, 0);
        ASSERT_THAT(gaps, SizeIs(1));
        EXPECT_EQ(gaps[0].cause, cause);
        EXPECT_EQ(gaps[0].subject, account.commands[index].command);
        EXPECT_EQ(gaps[0].isClosingDown, index >= 2);
    }
}

TEST(AccountFindings, CommandsOfTheCloseDownComeLast)
{
    auto account = cleanSession();
    account.commands[2].acknowledged = false;
    account.phases[0].end = PhaseEnd::kSilence;
    EXPECT_THAT(causesIn(account), ElementsAre(Cause::kSilence, Cause::kNotAcknowledged));
}

TEST(AccountFindings, LossesWithinRoutesAreGaps)
{
    auto account = cleanSession();
    account.phases[2].lines =
        lines(3, 1, {{1, SkipReason::kUnknownPoint}, {3, SkipReason::kIncomplete}});
    EXPECT_THAT(causesIn(account), ElementsAre(Cause::kUnknownPoints, Cause::kUnfinishedRoutes));
}

TEST(AccountFindings, RepeatedRouteSentencesAreAGapUnlessTheHostDroppedTheRepeats)
{
    auto account = cleanSession();
    account.phases[2].lines = lines(4, 4);
    account.phases[2].lines.skipped[static_cast<std::size_t>(SkipReason::kRepeated)] = 2;
    EXPECT_THAT(causesIn(account, 1), ElementsAre(Cause::kRepeatedRoutes));
    EXPECT_THAT(causesIn(account, 2), IsEmpty());
    EXPECT_THAT(causesIn(account, 3), IsEmpty());
}

TEST(AccountFindings, DamagedSentencesBeforeTheEndAreNoGap)
{
    auto account = cleanSession();
    account.phases[1].lines = lines(4, 3, {{2, SkipReason::kWrongChecksum}});
    EXPECT_THAT(causesIn(account), IsEmpty()) << "they are sent again until they are acknowledged";
}

TEST(AccountFindings, FilesAndUnseenPathsWithAnErrorAreUnreadable)
{
    gps::TransferAccount account;
    account.files = {{.kind = "tracks", .path = "/good"},
                     {.kind = "tracks", .path = "/bad", .error = gps::Error{"some", 1}}};
    account.unseen = {{"device", "/folder", {"some", 2}}};
    const auto errors = host::unreadablePaths(account);
    ASSERT_THAT(errors, SizeIs(2));
    EXPECT_EQ(errors[0].path(), "/folder");
    EXPECT_EQ(errors[1].path(), "/bad");
}

TEST(AccountFindings, FolderIsHarmlessOnlyAmongTracksAndRoutes)
{
    const support::TemporaryFolder folder;
    gps::TransferAccount account;
    for (const char* kind : {"tracks", "routes", "waypoints", "geocaches"})
        account.files.push_back(
            {.kind = kind, .path = folder.path(), .error = gps::Error{"some", 1}});
    EXPECT_THAT(host::unreadablePaths(account), SizeIs(2));
    account.files[0].path = folder.path("gone");
    EXPECT_THAT(host::unreadablePaths(account), SizeIs(3));
}

TEST(AccountFindings, CauseIsTheUnderlyingErrorWithItsReason)
{
    const gps::Error cause{"deep",
                           7,
                           {{gps::kErrorDescriptionKey, "It could not be read."},
                            {gps::kErrorReasonKey, "Input/output error"}}};
    const auto found = host::causeOf(errorAbout("/a").causedBy(cause));
    EXPECT_EQ(found.description(), "It could not be read. (Input/output error)");
    EXPECT_EQ(found.path(), "/a");
    EXPECT_EQ(host::causeOf(errorAbout("/a")), errorAbout("/a")) << "nothing is known about it";
}

} // namespace
