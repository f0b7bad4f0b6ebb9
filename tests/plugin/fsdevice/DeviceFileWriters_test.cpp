// SPDX-License-Identifier: MIT
// Each writer and merge: names, numbers, order, failures, and generated records both ways.

#include "../../platform/System/PrivateMount.h"
#include "../../support/LogCapture.h"
#include "../../support/RecordingReceiver.h"
#include "../../support/Sentence.h"
#include "../../support/TemporaryFolder.h"

#include <plugin/codec/FieldText.h>
#include <plugin/fsdevice/DeviceFileReaders.h>
#include <plugin/fsdevice/DeviceFileWriters.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using magellan::getNextFileNameFromPath;
using magellan::mergeGeocaches;
using magellan::mergeRoutes;
using magellan::mergeWaypoints;
using magellan::saveTracks;
using support::fileOf;
using support::kClosing;
using support::sentence;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A waypoint with all texts that a file has.
gps::Dictionary storedWaypoint(std::string_view name, double latitude = 46.5,
                               std::string_view symbol = "a")
{
    return {{"name", name},
            {"comment", ""},
            {"symbol", symbol},
            {"point", gps::GPSPoint{latitude, 7.25, 400, 0, 0}}};
}

std::string waypointLine(std::string_view name, std::string_view latitude = "4630.00000",
                         std::string_view icon = "a")
{
    return sentence("PMGNWPL," + std::string{latitude} + ",N,00715.00000,E,0000400,M," +
                    std::string{name} + ",," + std::string{icon});
}

gps::Dictionary geocache(std::string_view name, std::string_view type = "Multi")
{
    return {
        {"name", name}, {"geocacheType", type}, {"point", gps::GPSPoint{46.5, 7.25, 400, 0, 0}}};
}

std::string geocacheLine(std::string_view name, std::string_view type = "Multi")
{
    return sentence("PMGNGEO,4630.00000,N,00715.00000,E,0000400,M," + std::string{name} + ",,,," +
                    std::string{type} + ",,,,");
}

gps::Dictionary route(std::string_view name, gps::Array points)
{
    return {{"name", name}, {"points", std::move(points)}};
}

gps::Dictionary track(gps::Array points)
{
    return {{"name", "Day 1"}, {"points", std::move(points)}};
}

gps::Dictionary trackPoint(double latitude)
{
    return {{"point", gps::GPSPoint{latitude, 7.25, 1200.9, 1218435348, 0}}};
}

/// Lines joined as a written file has them, the closing sentence last.
std::string written(const std::vector<std::string>& lines)
{
    std::string text;
    for (const auto& line : lines)
        text += line + "\r\n";
    return text + kClosing;
}

class DeviceFileWriters : public testing::Test {
protected:
    support::TemporaryFolder folder;
    support::LogCapture log;
};

TEST_F(DeviceFileWriters, TrackIsWrittenAsItsPointsAndTheClosingSentenceWithoutALineEnd)
{
    ASSERT_FALSE(saveTracks({track({trackPoint(46.5), trackPoint(-46.5)})}, folder.path(), false));
    EXPECT_EQ(
        folder.read("TKLG000.log"),
        written({sentence("PMGNTRK,4630.00000,N,00715.00000,E,01200,M,061548.00,A,,110808"),
                 sentence("PMGNTRK,4630.00000,S,00715.00000,E,01200,M,061548.00,A,,110808")}));
}

TEST_F(DeviceFileWriters, TrackPointWithoutItsPointGivesNoLine)
{
    ASSERT_FALSE(
        saveTracks({track({gps::Dictionary{{"name", "no point"}}, trackPoint(46.5), "no record"})},
                   folder.path(), false));
    EXPECT_EQ(
        folder.read("TKLG000.log"),
        written({sentence("PMGNTRK,4630.00000,N,00715.00000,E,01200,M,061548.00,A,,110808")}));
}

TEST_F(DeviceFileWriters, TrackPointThatCannotBeWrittenIsLoggedAndSkipped)
{
    ASSERT_FALSE(saveTracks(
        {track({trackPoint(90.1), trackPoint(std::numeric_limits<double>::quiet_NaN())})},
        folder.path(), false));
    EXPECT_EQ(folder.read("TKLG000.log"), kClosing);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("failed to create sentence for list from"),
                                         HasSubstr("failed to create")));
}

TEST_F(DeviceFileWriters, TracksGetTheLowestFreeNumbersGapsFirst)
{
    folder.put("TKLG000.log", "old 0");
    folder.put("TKLG002.log", "old 2");
    ASSERT_FALSE(saveTracks({track({}), track({})}, folder.path(), false));
    EXPECT_EQ(folder.read("TKLG001.log"), kClosing);
    EXPECT_EQ(folder.read("TKLG003.log"), kClosing);
    EXPECT_EQ(folder.read("TKLG000.log"), "old 0");
    EXPECT_EQ(folder.read("TKLG002.log"), "old 2");
}

TEST_F(DeviceFileWriters, Number998IsTheLastAndNumber999IsNeverUsed)
{
    for (int number = 0; number < 998; ++number)
        folder.put(magellan::trackFileName(number), "");
    EXPECT_EQ(getNextFileNameFromPath(folder.path(), magellan::trackFileName),
              folder.path("TKLG998.log"));
    folder.put("TKLG998.log", "");
    EXPECT_EQ(getNextFileNameFromPath(folder.path(), magellan::trackFileName), std::nullopt);
}

TEST_F(DeviceFileWriters, FolderWithATracksNameUsesUpItsNumber)
{
    folder.makeFolder("TKLG000.log");
    EXPECT_EQ(getNextFileNameFromPath(folder.path(), magellan::trackFileName),
              folder.path("TKLG001.log"));
}

TEST_F(DeviceFileWriters, LinkThatLeadsNowhereUsesUpItsNumberAndIsNotReplaced)
{
    std::filesystem::create_symlink("nowhere", folder.path("TKLG000.log"));
    EXPECT_EQ(getNextFileNameFromPath(folder.path(), magellan::trackFileName),
              folder.path("TKLG001.log"));
}

TEST_F(DeviceFileWriters, WithoutAFreeNumberSavingStopsWithTheWriteErrorOfAFileThatExists)
{
    for (int number = 0; number < 998; ++number)
        folder.put(magellan::trackFileName(number), "");
    const auto error = saveTracks({track({}), track({}), track({})}, folder.path(), false);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), gps::kFileErrorDomain);
    EXPECT_EQ(error->code(), 516);
    EXPECT_EQ(folder.read("TKLG998.log"), kClosing);
}

TEST_F(DeviceFileWriters, MissingFolderIsTheWriteErrorAndStopsTheTracks)
{
    const auto error = saveTracks({track({})}, folder.path("gone"), false);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), 4);
}

TEST_F(DeviceFileWriters, FailedTrackStopsTheSavingAndTheTracksBeforeItStay)
{
    const support::PrivateMount volume{folder.path(), "size=64k"};
    if (!volume.isMounted())
        GTEST_SKIP() << "mounting is not permitted";
    const auto large = track(gps::Array(2000, trackPoint(46.5)));
    const auto error = saveTracks({track({}), large, track({})}, folder.path(), false);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), 640);
    EXPECT_EQ(error->path(), folder.path("TKLG001.log"));
    EXPECT_THAT(folder.names(), ElementsAre("TKLG000.log"));
    EXPECT_EQ(folder.read("TKLG000.log"), kClosing);
}

TEST_F(DeviceFileWriters, WaypointOfAPresentNameReplacesThatOneAtItsPositionAndANewOneIsAppended)
{
    const auto path = folder.put("p.upt", fileOf({waypointLine("Camp"), waypointLine("Home")}));
    ASSERT_FALSE(mergeWaypoints({storedWaypoint("Camp", 47), storedWaypoint("Peak")}, path));
    EXPECT_EQ(folder.read("p.upt"), written({waypointLine("Camp", "4700.00000"),
                                             waypointLine("Home"), waypointLine("Peak")}));
}

TEST_F(DeviceFileWriters, WaypointWithoutANameIsDropped)
{
    ASSERT_FALSE(mergeWaypoints(
        {gps::Dictionary{{"point", gps::GPSPoint{}}}, "no record", storedWaypoint("Camp")},
        folder.path("p.upt")));
    EXPECT_EQ(folder.read("p.upt"), written({waypointLine("Camp")}));
}

TEST_F(DeviceFileWriters, EmptyWaypointListRewritesThePresentContentWithAClosingSentence)
{
    const auto path = folder.put("p.upt", fileOf({waypointLine("Camp"), "no sentence"}));
    ASSERT_FALSE(mergeWaypoints({}, path));
    EXPECT_EQ(folder.read("p.upt"), written({waypointLine("Camp")}));
}

TEST_F(DeviceFileWriters, UnreadablePresentFileCountsAsEmptyAndIsLogged)
{
    const auto path = folder.put("p.upt", "caf\xE9");
    ASSERT_FALSE(mergeWaypoints({storedWaypoint("Camp")}, path));
    EXPECT_EQ(folder.read("p.upt"), written({waypointLine("Camp")}));
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("Couldn't read waypoint data from device")));
}

TEST_F(DeviceFileWriters, MissingPresentFileCountsAsEmptyAndIsLogged)
{
    ASSERT_FALSE(mergeWaypoints({storedWaypoint("Camp")}, folder.path("p.upt")));
    ASSERT_FALSE(mergeGeocaches({geocache("Oak")}, folder.path("c.gs")));
    ASSERT_FALSE(mergeRoutes({route("Loop", {storedWaypoint("Camp")})}, folder.path("r.rte")));
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("Couldn't read waypoint data from device"),
                                         HasSubstr("Couldn't read geocache data from device"),
                                         HasSubstr("Couldn't read route data from device")));
    EXPECT_EQ(folder.read("p.upt"), written({waypointLine("Camp")}));
    EXPECT_EQ(folder.read("c.gs"), written({geocacheLine("Oak")}));
    EXPECT_EQ(folder.read("r.rte"),
              written({waypointLine("Camp"), sentence("PMGNRTE,1,1,c,1,Loop,Camp,a")}));
}

TEST_F(DeviceFileWriters, FolderWithTheDefaultFilesNameIsAWriteErrorAndIsKept)
{
    folder.put("Default POI File.upt/inside", "old");
    const auto error = magellan::saveWaypoints({storedWaypoint("Camp")}, folder.path(), false);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), 512);
    EXPECT_EQ(error->path(), folder.path("Default POI File.upt"));
    EXPECT_EQ(folder.read("Default POI File.upt/inside"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("Default POI File.upt"));
}

TEST_F(DeviceFileWriters, TextThatAsciiCannotCarryLeavesThePresentFileAsItWas)
{
    const auto path = folder.put("p.upt", fileOf({waypointLine("Camp")}));
    const auto error = mergeWaypoints({storedWaypoint("Peak", 46.5, "\xC3\xA9")},
                                      path); // an icon code is not filtered
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), 517);
    EXPECT_EQ(folder.read("p.upt"), fileOf({waypointLine("Camp")}));
}

TEST_F(DeviceFileWriters, TooShortSentenceInThePresentFileThrowsAndLeavesItAsItWas)
{
    const auto expectThrown = [this](auto merge, std::string_view body) {
        SCOPED_TRACE(body);
        const auto text = fileOf({sentence(body)});
        const auto path = folder.put("file", text);
        EXPECT_THROW((void)merge(gps::Array{}, path), gps::RangeError);
        EXPECT_EQ(folder.read("file"), text);
    };
    expectThrown([](const auto&... a) { return mergeWaypoints(a...); },
                 "PMGNWPL,4630.00000,N,00715.00000,E");
    expectThrown([](const auto&... a) { return mergeGeocaches(a...); },
                 "PMGNGEO,4630.00000,N,00715.00000,E,0000400,M,Oak");
    expectThrown([](const auto&... a) { return mergeRoutes(a...); },
                 "PMGNWPL,4630.00000,N,00715.00000,E");
    expectThrown([](const auto&... a) { return mergeRoutes(a...); }, "PMGNRTE,1,1,c,1");
}

TEST_F(DeviceFileWriters, GeocacheWithAnIdentifierReplacesOnlyThePresentOneOfThatName)
{
    const auto path =
        folder.put("c.gs", fileOf({geocacheLine("GC1", "Old"), geocacheLine("Oak", "Old")}));
    auto byId = geocache("Renamed");
    byId.set("cacheID", "GC1");
    auto sameName = geocache("Oak");
    sameName.set("cacheID", "GC2");
    ASSERT_FALSE(mergeGeocaches({byId, sameName}, path));
    EXPECT_EQ(folder.read("c.gs"),
              written({geocacheLine("Renamed"), geocacheLine("Oak", "Old"), geocacheLine("Oak")}));
}

TEST_F(DeviceFileWriters, GeocacheWithoutAnIdentifierReplacesThePresentOneOfItsName)
{
    const auto path = folder.put("c.gs", fileOf({geocacheLine("Oak", "Old")}));
    ASSERT_FALSE(mergeGeocaches({geocache("Oak")}, path));
    EXPECT_EQ(folder.read("c.gs"), written({geocacheLine("Oak")}));
}

TEST_F(DeviceFileWriters, IdentifierThatIsANumberCountsByItsDecimalText)
{
    const auto path = folder.put("c.gs", fileOf({geocacheLine("4711", "Old")}));
    auto record = geocache("Oak");
    record.set("cacheID", 4711);
    ASSERT_FALSE(mergeGeocaches({record}, path));
    EXPECT_EQ(folder.read("c.gs"), written({geocacheLine("Oak")}));
}

TEST_F(DeviceFileWriters, GeocacheWithNeitherIdentifierNorNameIsDropped)
{
    ASSERT_FALSE(
        mergeGeocaches({gps::Dictionary{{"point", gps::GPSPoint{}}}}, folder.path("c.gs")));
    EXPECT_EQ(folder.read("c.gs"), kClosing);
}

TEST_F(DeviceFileWriters, GeocacheWithoutItsPointLeavesThePresentFileAsItWasWithoutAnError)
{
    const auto path = folder.put("c.gs", fileOf({geocacheLine("Oak")}));
    EXPECT_FALSE(mergeGeocaches({geocache("Elm"), gps::Dictionary{{"name", "no point"}}}, path));
    EXPECT_EQ(folder.read("c.gs"), fileOf({geocacheLine("Oak")}));
}

TEST_F(DeviceFileWriters, RouteFileListsItsWaypointsSortedByNameThenItsRoutesNumberedFrom1)
{
    auto number7 = route("Way", {storedWaypoint("b"), storedWaypoint("B")});
    number7.set("number", 7);
    ASSERT_FALSE(
        mergeRoutes({number7, route("Loop", {storedWaypoint("a")})}, folder.path("r.rte")));
    EXPECT_EQ(
        folder.read("r.rte"),
        written({waypointLine("B"), waypointLine("a"), waypointLine("b"),
                 sentence("PMGNRTE,1,1,c,1,Way,b,a,B,a"), sentence("PMGNRTE,1,1,c,2,Loop,a,a")}));
}

TEST_F(DeviceFileWriters, RoutePointThatEqualsTheDevicesKeepsItsNameAndOneThatDiffersGetsANumber)
{
    const auto path = folder.put("r.rte", fileOf({waypointLine("Home"), waypointLine("Stop"),
                                                  sentence("PMGNRTE,1,1,c,1,Old,Home,a,Stop,a")}));
    // The receiver's own record of an unknown icon: its symbol is the icon's name in the symbol
    // map.
    gps::Dictionary present;
    gps::Dictionary routes;
    magellan::acquireRoutesFromPath(path, present, routes);
    ASSERT_FALSE(
        mergeRoutes({route("New", {*present.find("Home"), storedWaypoint("Stop", 47)})}, path));
    EXPECT_EQ(folder.read("r.rte"), written({waypointLine("Home"), waypointLine("Stop"),
                                             waypointLine("Stop 1", "4700.00000"),
                                             sentence("PMGNRTE,1,1,c,1,Old,Home,a,Stop,a"),
                                             sentence("PMGNRTE,1,1,c,2,New,Home,a,Stop 1,a")}));
}

TEST_F(DeviceFileWriters, EachFurtherClashInARouteGetsTheNextNumber)
{
    gps::Dictionary waypoints{{"Stop", storedWaypoint("Stop", 1)}};
    gps::Dictionary routes;
    std::vector<magellan::RenamedPoint> renamed;
    magellan::mergeRoute(route("R", {storedWaypoint("Stop", 2), storedWaypoint("Stop", 3),
                                     storedWaypoint("Stop", 1)}),
                         waypoints, routes, &renamed);
    ASSERT_EQ(renamed.size(), 2U);
    EXPECT_EQ(renamed[1].route, "R");
    EXPECT_EQ(renamed[1].before, "Stop");
    EXPECT_EQ(renamed[1].after, "Stop 2");
    EXPECT_EQ(waypoints, (gps::Dictionary{{"Stop", storedWaypoint("Stop", 1)},
                                          {"Stop 1", storedWaypoint("Stop 1", 2)},
                                          {"Stop 2", storedWaypoint("Stop 2", 3)}}));
    EXPECT_EQ(
        routes,
        (gps::Dictionary{{"R", route("R", {storedWaypoint("Stop 1", 2), storedWaypoint("Stop 2", 3),
                                           storedWaypoint("Stop", 1)})}}));
}

TEST_F(DeviceFileWriters, CountersStartAfreshForEachRouteSoThatTheSecondReplacesTheFirst)
{
    gps::Dictionary waypoints{{"Stop", storedWaypoint("Stop", 1)}};
    gps::Dictionary routes;
    magellan::mergeRoute(route("R", {storedWaypoint("Stop", 2)}), waypoints, routes);
    magellan::mergeRoute(route("S", {storedWaypoint("Stop", 3)}), waypoints, routes);
    EXPECT_EQ(waypoints, (gps::Dictionary{{"Stop", storedWaypoint("Stop", 1)},
                                          {"Stop 1", storedWaypoint("Stop 1", 3)}}));
}

TEST_F(DeviceFileWriters, RoutePointsWithoutANameAreDroppedAndARouteWithoutOneStillAddsItsPoints)
{
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    magellan::mergeRoute(
        {{"points", gps::Array{storedWaypoint("A"), gps::Dictionary{{"point", gps::GPSPoint{}}}}}},
        waypoints, routes);
    EXPECT_EQ(waypoints, (gps::Dictionary{{"A", storedWaypoint("A")}}));
    EXPECT_TRUE(routes.empty());
}

TEST_F(DeviceFileWriters, SaveOperationsWriteTheKindsDefaultFiles)
{
    ASSERT_FALSE(magellan::saveWaypoints({storedWaypoint("A")}, folder.path(), false));
    ASSERT_FALSE(magellan::saveRoutes({}, folder.path(), false));
    ASSERT_FALSE(magellan::saveGeocaches({}, folder.path(), false));
    EXPECT_EQ(folder.read("Default POI File.upt"), written({waypointLine("A")}));
    EXPECT_EQ(folder.read("Default Route File.rte"), kClosing);
    EXPECT_EQ(folder.read("Default Geocache File.gs"), kClosing);
}

TEST_F(DeviceFileWriters, WrittenFilesMergedWithNothingAreWrittenUnchanged)
{
    const auto path = folder.path("r.rte");
    ASSERT_FALSE(mergeRoutes(
        {route("One", {storedWaypoint("A", -12.34567), storedWaypoint("B"), storedWaypoint("C")}),
         route("Two", {storedWaypoint("B")})},
        path));
    const auto once = folder.read("r.rte");
    ASSERT_FALSE(mergeRoutes({}, path));
    EXPECT_EQ(folder.read("r.rte"), once);
}

/// Random records of the device's characters; the same seed gives the same records.
class Generated {
public:
    explicit Generated(unsigned seed) : random_(seed) {}

    gps::Dictionary record(int number, bool isGeocache)
    {
        gps::Dictionary made{{"name", text(12) + std::to_string(number)}, {"comment", text(40)}};
        if (isGeocache) {
            for (const auto* key : {"geocacheOwner", "geocacheHint", "geocacheType", "datePlaced",
                                    "dateFound", "difficulty", "terrain"})
                made.set(key, text(20));
        } else {
            made.set("symbol", std::vector{"Flag", "Campground", "zz", "b"}[below(4)]);
        }
        made.set("point", gps::GPSPoint{real(-90, 90), real(-180, 180), real(-500, 9000), 0, 0});
        return made;
    }

    gps::Array records(int count, bool isGeocache)
    {
        gps::Array list;
        for (int i = 0; i < count; ++i)
            list.emplace_back(record(i, isGeocache));
        return list;
    }

    gps::Array routes(int count)
    {
        gps::Array list;
        for (int i = 0; i < count; ++i)
            list.emplace_back(
                gps::Dictionary{{"name", "R" + std::to_string(i)},
                                {"comment", text(below(2) * 30)},
                                {"points", records(1 + static_cast<int>(below(5)), false)}});
        return list;
    }

    /// Points over the whole range of years that a sentence can write, and some without a time.
    gps::Dictionary track(int count)
    {
        std::uniform_int_distribution<std::int64_t> seconds{315'532'800,
                                                            3'471'292'799}; // 1980 to 2079
        gps::Array points;
        for (int i = 0; i < count; ++i) {
            const std::int64_t time = below(10) == 0 ? 0 : seconds(random_);
            points.emplace_back(
                gps::Dictionary{{"point", gps::GPSPoint{real(-90, 90), real(-180, 180),
                                                        real(-500, 9000), time, 0}}});
        }
        return {{"name", text(12)}, {"points", std::move(points)}};
    }

private:
    std::size_t below(std::size_t bound)
    {
        return std::uniform_int_distribution<std::size_t>{0, bound - 1}(random_);
    }
    double real(double low, double high)
    {
        return std::uniform_real_distribution<double>{low, high}(random_);
    }

    std::string text(std::size_t longest)
    {
        static constexpr std::string_view kCharacters{magellan::kDeviceCharacters};
        std::string made;
        for (std::size_t left = longest == 0 ? 0 : below(longest); left > 0; --left)
            made += kCharacters[below(kCharacters.size())];
        return made;
    }

    std::mt19937 random_;
};

// Compares the texts without writing and flushing hundreds of files.
TEST_F(DeviceFileWriters, GeneratedRecordsWrittenReadAndWrittenAgainAreTheSameBytes)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        Generated generated{seed};
        const auto twice = [](auto mergedText, const gps::Array& records, auto... more) {
            const auto once = std::optional<std::string>{mergedText(records, "", nullptr, more...)};
            ASSERT_TRUE(once);
            EXPECT_EQ(mergedText({}, *once, nullptr, more...), once);
        };
        twice(magellan::mergedWaypointText, generated.records(8, false));
        twice(magellan::mergedGeocacheText, generated.records(8, true));
        twice(magellan::mergedRouteText, generated.routes(4), nullptr);
    }
}

/// Reads a track file back as a record.
class TrackTaker : public support::RecordingReceiver {
public:
    void trackPoint(const gps::GPSPoint& point, const gps::Dictionary& /*extra*/) override
    {
        points_.emplace_back(gps::Dictionary{{"point", point}});
    }
    [[nodiscard]] gps::Dictionary track() const { return {{"points", points_}}; }

private:
    gps::Array points_;
};

TEST_F(DeviceFileWriters, GeneratedTracksWrittenReadAndWrittenAgainAreTheSameBytes)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        const auto once = magellan::trackText(Generated{seed}.track(20)).text;
        TrackTaker taker;
        magellan::acquireTracks(taker, folder.put("t.log", once));
        EXPECT_EQ(magellan::trackText(taker.track()).text, once);
        EXPECT_EQ(std::count(once.begin(), once.end(), '\n'), 20);
    }
}

TEST_F(DeviceFileWriters,
       DeletingRemovesTheWalkedFolderOnlyIfTheCurrentFolderHoldsAFileOfAnItemsPath)
{
    const auto here = std::filesystem::current_path();
    const support::TemporaryFolder elsewhere;
    folder.put("tracks/a.log", "");
    std::filesystem::current_path(elsewhere.path());
    magellan::deleteFilesFromDir(folder.path("tracks"), "log");
    EXPECT_TRUE(std::filesystem::exists(folder.path("tracks/a.log")));

    elsewhere.makeFolder("a.log"); // a folder of that name does not count
    magellan::deleteFilesFromDir(folder.path("tracks"), "log");
    EXPECT_TRUE(std::filesystem::exists(folder.path("tracks/a.log")));
    std::filesystem::remove(elsewhere.path("a.log"));

    elsewhere.put("a.log", "");
    magellan::deleteFilesFromDir(folder.path("tracks"), "upt"); // another extension
    EXPECT_TRUE(std::filesystem::exists(folder.path("tracks/a.log")));
    magellan::deleteFilesFromDir(folder.path("tracks"), "log");
    EXPECT_FALSE(std::filesystem::exists(folder.path("tracks")));
    EXPECT_TRUE(std::filesystem::exists(elsewhere.path("a.log")));
    std::filesystem::current_path(here);
}

TEST_F(DeviceFileWriters, DeleteFlagClearsByTheKindsExtensionBeforeAnythingIsWritten)
{
    const auto here = std::filesystem::current_path();
    const support::TemporaryFolder elsewhere;
    std::filesystem::current_path(elsewhere.path());
    for (const auto* name : {"a.log", "a.upt", "a.rte", "a.gs"})
        elsewhere.put(name, "");
    const auto expectCleared = [this](auto save, const std::string& name) {
        SCOPED_TRACE(name);
        const auto data = folder.makeFolder("data");
        folder.put("data/a.other", "");
        EXPECT_FALSE(save(gps::Array{}, data, true)); // no item has the kind's extension
        EXPECT_TRUE(std::filesystem::exists(folder.path("data/a.other")));
        folder.put("data/" + name, "");
        (void)save(gps::Array{gps::Dictionary{}}, data, true);
        EXPECT_FALSE(std::filesystem::exists(data));
    };
    expectCleared([](const auto&... a) { return saveTracks(a...); }, "a.log");
    expectCleared([](const auto&... a) { return magellan::saveWaypoints(a...); }, "a.upt");
    expectCleared([](const auto&... a) { return magellan::saveRoutes(a...); }, "a.rte");
    expectCleared([](const auto&... a) { return magellan::saveGeocaches(a...); }, "a.gs");
    std::filesystem::current_path(here);
}

} // namespace
