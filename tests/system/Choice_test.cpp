// SPDX-License-Identifier: MIT
// Which records `acquire` and `import` keep, and where they divide tracks, with the built program.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace {

using support::acquire;
using support::magellangps;
using support::Receiver;
using support::sentences;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::string fixAt(const char* position, const char* time, const char* track)
{
    return std::string{"PMGNTRK,"} + position + ",N,00715.000,E,01200,M," + time + ".00,A," +
           track + ",010624";
}

/// A receiver with a track around one minute, and one of two hours later.
class ChosenReceiver : public Receiver {
public:
    ChosenReceiver()
    {
        put("Tracks/a.log",
            sentences({fixAt("4630.000", "095959", "Day 1"), fixAt("4630.010", "100000", "Day 1"),
                       fixAt("4630.020", "100059", "Day 1"),
                       fixAt("4630.030", "100100", "Day 1")}));
        put("Tracks/b.log", sentences({fixAt("4640.000", "120000", "Day 2")}));
    }
};

TEST(Choice, SinceAndUntilIncludeTheirWholeMinute)
{
    const ChosenReceiver receiver;
    const auto ran = acquire(receiver, {"--since", "2024-06-01T10:00Z", "--until",
                                        "2024-06-01T10:00Z", "-o", receiver.path("a.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "note: Left out because of --since or --until: 1 track (3 points).\n"
                       "note: Kept although --since and --until cannot judge what has no time: "
                       "2 waypoints, 1 geocache, 1 route.\n");
    const auto gpx = receiver.read("a.gpx");
    EXPECT_THAT(gpx, HasSubstr("<time>2024-06-01T10:00:00Z</time>"));
    EXPECT_THAT(gpx, HasSubstr("<time>2024-06-01T10:00:59Z</time>"));
    EXPECT_THAT(gpx, Not(HasSubstr("T09:59:59Z")));
    EXPECT_THAT(gpx, Not(HasSubstr("T10:01:00Z")));
    EXPECT_THAT(gpx, Not(HasSubstr("Day 2")));
}

TEST(Choice, DateIsADayOfThisComputersClock)
{
    const ChosenReceiver receiver;
    const auto tracksWith = [&](const char* zone) {
        const auto ran =
            magellangps({"acquire", "--device", receiver.path(), "--since", "2024-06-02", "--json"},
                        {.environment = {std::string{"TZ="} + zone}});
        return nlohmann::json::parse(ran.out)["chosen"]["tracks"];
    };
    EXPECT_EQ(tracksWith("UTC"), 0);
    EXPECT_EQ(tracksWith("UTC-12"), 1) << "it is midnight there at 12:00 in UTC";
    EXPECT_EQ(tracksWith("UTC-14:00:01"), 2);
}

TEST(Choice, SummaryAndFileHaveTheSameRecords)
{
    const ChosenReceiver receiver;
    const auto ran = acquire(
        receiver, {"--track", "*2", "--no-geocaches", "--summary", "-o", receiver.path("a.gpx")});
    EXPECT_THAT(ran.out, HasSubstr("Geocaches              0\n"));
    EXPECT_THAT(ran.out, HasSubstr("Day 2"));
    EXPECT_THAT(ran.out, Not(HasSubstr("Day 1")));
    EXPECT_THAT(receiver.read("a.gpx"), HasSubstr("<name>Day 2</name>"));
    EXPECT_THAT(receiver.read("a.gpx"), Not(HasSubstr("Day 1")));
    EXPECT_EQ(ran.err, "note: Left out because of --track: 1 track (4 points).\n"
                       "note: Left out because of --no-geocaches: 1 geocache.\n");
}

TEST(Choice, NothingLeftKeepsTheOlderFileAndSaysSo)
{
    const ChosenReceiver receiver;
    receiver.put("a.gpx", "old");
    const auto ran = acquire(
        receiver, {"--track", "X", "--no-waypoints", "--no-routes", "-o", receiver.path("a.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "note: Left out because of --track: 2 tracks (5 points).\n"
                       "note: No track that arrived has the name \"X\". --list shows the names.\n"
                       "note: No record is left, so no file was written. Path: " +
                           receiver.path("a.gpx") + '\n');
    EXPECT_EQ(receiver.read("a.gpx"), "old");
}

TEST(Choice, PipeGetsADocumentEvenIfNothingIsLeft)
{
    const ChosenReceiver receiver;
    const auto ran = acquire(
        receiver, {"--track", "X", "--no-waypoints", "--no-routes", "-o", "-", "--format", "gpx"});
    EXPECT_THAT(ran.out, testing::EndsWith("</gpx>\n"));
}

TEST(Choice, EventLinesShowEveryCallWhateverIsWritten)
{
    const ChosenReceiver receiver;
    const auto all = acquire(receiver, {"--events"});
    const auto chosen =
        acquire(receiver, {"--events", "--track", "Day 2", "-o", receiver.path("a.gpx")});
    EXPECT_EQ(chosen.out, all.out);
    EXPECT_THAT(receiver.read("a.gpx"), Not(HasSubstr("Day 1")));
}

TEST(Choice, ListNamesEachRecordAndWritesNoFile)
{
    const Receiver receiver;
    EXPECT_THAT(
        acquire(receiver, {"--list", "--utc"}).out,
        StartsWith(
            "Kind      Name   Points  First (UTC)          Last (UTC)           Length km  Where\n"
            "Waypoint  Camp        1                                                       "
            "near Saanen\n"
            "Waypoint  Hut         1\n"
            "Geocache  GC1         1                                                       "
            "near Martigny-Combe\n"
            "Route     Loop        2                                             10468.17  near "
            "Saanen\n"
            "Track     Day 1       2  2024-06-01 10:00:00  2024-06-01 10:00:01       0.00  near "
            "Saanen\n"
            "Total                 7  2024-06-01 10:00:00  2024-06-01 10:00:01       0.00\n"));
}

TEST(Choice, ListIsPartOfTheJsonDocument)
{
    const ChosenReceiver receiver;
    const auto ran = acquire(receiver, {"--list", "--json", "--no-waypoints", "--no-routes"});
    const auto list = nlohmann::json::parse(ran.out)["list"];
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1], nlohmann::json::parse(
                           R"({"kind":"Track","name":"Day 2","points":1,"kilometres":0.0,
                               "first":"2024-06-01T12:00:00Z","last":"2024-06-01T12:00:00Z"})"));
    EXPECT_EQ(nlohmann::json::parse(acquire(receiver, {"--json"}).out)["list"], nullptr);
}

class NewOnly : public testing::Test {
protected:
    support::Ran saveTo(const char* name, std::vector<std::string> more = {})
    {
        std::vector<std::string> words{"acquire",    "--device", receiver_.path(),
                                       "--new-only", "-o",       folder_.path(name)};
        words.insert(words.end(), more.begin(), more.end());
        return magellangps(words, {.environment = {"XDG_STATE_HOME=" + folder_.path("state")}});
    }

    [[nodiscard]] bool exists(const char* name) const
    {
        return std::filesystem::exists(folder_.path(name));
    }

    ChosenReceiver receiver_;
    support::TemporaryFolder folder_;
};

TEST_F(NewOnly, SavesWhatWasNotSavedBefore)
{
    EXPECT_EQ(saveTo("a.gpx").err, "");
    EXPECT_THAT(folder_.read("a.gpx"), HasSubstr("Day 2"));
    const auto none = saveTo("b.gpx");
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.err,
              "note: Left out because of --new-only, as it was saved before: 2 waypoints, "
              "1 geocache, 1 route, 2 tracks (5 points).\n"
              "note: No record is left, so no file was written. Path: " +
                  folder_.path("b.gpx") + '\n');
    EXPECT_FALSE(exists("b.gpx"));
    receiver_.put("Tracks/c.log", sentences({fixAt("4640.000", "130000", "Day 3")}));
    EXPECT_EQ(saveTo("c.gpx").status, 0);
    EXPECT_THAT(folder_.read("c.gpx"), HasSubstr("Day 3"));
    EXPECT_THAT(folder_.read("c.gpx"), Not(HasSubstr("Day 2")));
}

TEST_F(NewOnly, WhatAChoiceLeavesOutIsNotRemembered)
{
    EXPECT_EQ(saveTo("a.gpx", {"--track", "Day 1"}).status, 0);
    EXPECT_EQ(saveTo("b.gpx").status, 0);
    EXPECT_THAT(folder_.read("b.gpx"), HasSubstr("Day 2"));
    EXPECT_THAT(folder_.read("b.gpx"), Not(HasSubstr("Day 1")));
}

TEST_F(NewOnly, WithoutACompleteFileNothingIsRemembered)
{
    const std::vector<std::string> look{"acquire", "--device", receiver_.path(), "--new-only"};
    const support::How how{.environment = {"XDG_STATE_HOME=" + folder_.path("state")}};
    EXPECT_THAT(magellangps(look, how).out, HasSubstr("Day 1"));
    receiver_.put("Tracks/bad.log", "\xff");
    EXPECT_EQ(saveTo("a.gpx").status, 1);
    EXPECT_TRUE(exists("a.partial.gpx"));
    EXPECT_THAT(magellangps(look, how).out, HasSubstr("Day 1"));
}

TEST_F(NewOnly, ExistingFileIsNotReplaced)
{
    EXPECT_EQ(saveTo("a.gpx").status, 0);
    const auto before = folder_.read("a.gpx");
    const auto ran = saveTo("a.gpx", {"--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "magellangps: With --new-only the output file would be replaced by what is "
                       "new. Name a file that does not exist. Path: " +
                           folder_.path("a.gpx") + '\n');
    EXPECT_EQ(nlohmann::json::parse(ran.out)["status"], 1);
    EXPECT_EQ(folder_.read("a.gpx"), before);
}

TEST_F(NewOnly, DamagedMemoryIsReportedAndEverythingIsNew)
{
    EXPECT_EQ(saveTo("a.gpx").status, 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator{folder_.path("state")}) {
        if (entry.is_regular_file())
            std::ofstream{entry.path()} << "damaged";
    }
    const auto ran = saveTo("b.gpx");
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err, HasSubstr("The list of saved records is damaged"));
    EXPECT_THAT(folder_.read("b.gpx"), HasSubstr("Day 1"));
}

TEST_F(NewOnly, MemoryNeedsAFolder)
{
    const auto ran = support::run({"/usr/bin/env", "-u", "HOME", MAGELLAN_BIN_DIR "/magellangps",
                                   "acquire", "--device", receiver_.path(), "--new-only"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err,
              "magellangps: --new-only needs a folder to remember what was saved. Set HOME "
              "or XDG_STATE_HOME.\n");
}

TEST(Segments, BeginAtAJumpThatNoReceiverCanMake)
{
    const Receiver receiver; // its track has one
    for (const auto& [name, begin] : std::initializer_list<std::pair<const char*, const char*>>{
             {"a.gpx", "</trkseg><trkseg>"},
             {"a.geojson", "MultiLineString"},
             {"a.html", "\"breaks\":[1]"},
             {"a.csv", "track point,Day 1,2,46.75,"}}) {
        const auto ran = acquire(receiver, {"-o", receiver.path(name)});
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.err, "note: 1 track was divided into segments at 1 jump that no receiver can "
                           "make; --split-gap off keeps it whole.\n");
        EXPECT_THAT(receiver.read(name), HasSubstr(begin)) << name;
        EXPECT_EQ(acquire(receiver, {"--split-gap", "off", "-o", receiver.path(name)}).err, "");
        EXPECT_THAT(receiver.read(name), Not(HasSubstr(begin))) << name;
    }
}

TEST(Segments, BeginAtGapsOfTimeOrDistanceOnRequest)
{
    const ChosenReceiver receiver;
    const auto gaps = [&](const char* rule) {
        const auto ran =
            acquire(receiver, {"--split-gap", rule, "--json", "-o", receiver.path("a.gpx")});
        return nlohmann::json::parse(ran.out)["segments"]["gaps"];
    };
    EXPECT_EQ(gaps("58s"), 1);
    EXPECT_EQ(gaps("59s"), 0);
    EXPECT_EQ(gaps("18m"), 3);
    EXPECT_EQ(gaps("19m"), 0);
}

TEST(Segments, EventLinesHaveNone)
{
    const Receiver receiver;
    EXPECT_THAT(acquire(receiver, {"-o", receiver.path("a.jsonl")}).err, IsEmpty());
    EXPECT_EQ(receiver.read("a.jsonl"), acquire(receiver, {"--events"}).out);
}

} // namespace
