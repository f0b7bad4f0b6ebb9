// SPDX-License-Identifier: MIT

#include "host/records/SendData.h"

#include "host/FakeDriver.h"
#include "host/Records.h"
#include "host/formats/GpxReader.h"
#include "host/records/RecordKeeper.h"
#include "host/transfer/Download.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using Fate = host::PlannedRecord::Fate;
using host::RecordSet;
using host::TickedRecords;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kSampleGpx[] =
    "<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'>"
    "<wpt lat='1' lon='2'><ele>3</ele><name>A</name><cmt>by</cmt><sym>Flag</sym></wpt>"
    "<wpt lat='1' "
    "lon='2'><ele>4</ele><time>2024-06-01T10:00:00Z</time><name>GC1</name><sym>Geocache</sym>"
    "</wpt>"
    "<rte><name>R</name><src>me</src><rtept lat='4' "
    "lon='5'><ele>6</ele><name>P</name></rtept></rte>"
    "<trk><name>T</name><trkseg><trkpt lat='6' lon='7'><ele>8</ele></trkpt></trkseg>"
    "<trkseg><trkpt lat='6' "
    "lon='8'><ele>9</ele></trkpt></trkseg></trk><trk><name>U</name></trk></gpx>";

RecordSet imported(const std::string& file)
{
    support::FakeDriver driver;
    host::RecordKeeper keeper;
    host::DownloadRequest request{.sourceFiles = {file}, .isDriverReused = true};
    request.consumers.push_back(&keeper);
    EXPECT_TRUE(host::download(driver, request).isComplete());
    EXPECT_FALSE(keeper.close());
    return keeper.take();
}

RecordSet threeWaypoints()
{
    RecordSet set;
    for (const char* const name : {"A", "B", "C"})
        set.points.push_back({{46, 7, 0, 0, 0}, {{"name", name}, {"comment", "by"}}});
    return set;
}

gps::Dictionary& waypoint(gps::Dictionary& data, std::size_t index)
{
    return *(*data.findArray("waypoint"))[index].as<gps::Dictionary>();
}

TEST(SendData, OfAnImportedFileIsWhatASendReadsFromIt)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("a.gpx", kSampleGpx);
    gps::Dictionary expected;
    ASSERT_FALSE(host::readGpx(file, expected));
    const auto set = imported(file);
    const auto data = host::sendData(set, TickedRecords::all(set));
    EXPECT_EQ(data, expected) << gps::describe(data) << gps::describe(expected);
}

TEST(SendData, IsDividedWhereTheFileDividesATrackButNotAtAJump)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put(
        "jump.gpx",
        "<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'><trk><name>T</name><trkseg>"
        "<trkpt lat='6' lon='7'><time>2024-06-01T10:00:00Z</time></trkpt>"
        "<trkpt lat='6' lon='8'><time>2024-06-01T10:00:01Z</time></trkpt></trkseg>"
        "<trkseg><trkpt lat='6' lon='8'><time>2024-06-01T10:00:02Z</time></trkpt>"
        "<trkpt lat='6' lon='9'><time>2024-06-01T10:00:03Z</time></trkpt></trkseg></trk></gpx>");
    gps::Dictionary expected;
    ASSERT_FALSE(host::readGpx(file, expected));
    const auto set = imported(file);
    EXPECT_THAT(set.tracks.front().segments, ElementsAre(1, 2, 3));
    EXPECT_THAT(set.tracks.front().gaps, ElementsAre(1, 3));
    EXPECT_EQ(host::sendData(set, TickedRecords::all(set)), expected);
}

TEST(SendData, HasNoKeyForAKindWithoutTicks)
{
    auto set = threeWaypoints();
    set.routes.resize(1);
    const auto data = host::sendData(set, {{true, false, false}, {false}, {}});
    EXPECT_EQ(data.findArray("waypoint")->size(), 1U);
    EXPECT_FALSE(data.contains("route"));
    EXPECT_FALSE(data.contains("track"));
}

TEST(SendData, OfAnUnnumberedSendHasNoKeyOfOurs)
{
    const auto set = threeWaypoints();
    auto data = host::sendData(set, TickedRecords::all(set));
    EXPECT_EQ(waypoint(data, 0).size(), 3U); // name, comment and point
}

TEST(PlannedRecords, AreKnownByTheirIndexWhateverTheirNameBecomes)
{
    const auto set = threeWaypoints();
    const TickedRecords ticked{{true, false, true}, {}, {}};
    auto data = host::numberedSendData(set, ticked);
    waypoint(data, 1).set("name", "C 1");
    waypoint(data, 1).set("comment", "");
    const auto planned = host::plannedRecords(set, ticked, data).points;
    EXPECT_EQ(planned[0].fate, Fate::kSent);
    EXPECT_THAT(planned[0].changedTexts, IsEmpty());
    EXPECT_EQ(planned[1].fate, Fate::kNotTicked);
    EXPECT_EQ(planned[2].fate, Fate::kSent);
    EXPECT_EQ(planned[2].name, "C 1");
    EXPECT_THAT(planned[2].changedTexts, ElementsAre("name", "comment"));
}

TEST(PlannedRecords, OutsideThePlanAreOnTheDeviceOrEmpty)
{
    auto set = threeWaypoints();
    set.tracks.resize(2);
    set.tracks[0].points.resize(1);
    const auto ticked = TickedRecords::all(set);
    const auto planned = host::plannedRecords(set, ticked, {});
    EXPECT_EQ(planned.points[0].fate, Fate::kPresent);
    EXPECT_EQ(planned.tracks[0].fate, Fate::kPresent);
    EXPECT_EQ(planned.tracks[1].fate, Fate::kEmpty);
}

TEST(PlannedRecords, ThatRepeatASentOneAreSentOnce)
{
    const auto set = threeWaypoints();
    const auto ticked = TickedRecords::all(set);
    auto data = host::numberedSendData(set, ticked);
    host::RepeatedIndices repeated;
    repeated.add("waypoint", waypoint(data, 2), waypoint(data, 0));
    data.findArray("waypoint")->resize(1);
    const auto planned = host::plannedRecords(set, ticked, data, repeated).points;
    EXPECT_EQ(planned[0].fate, Fate::kSent);
    EXPECT_EQ(planned[1].fate, Fate::kPresent);
    EXPECT_EQ(planned[2].fate, Fate::kRepeated);
}

TEST(PlannedRecords, ThatRepeatOneOnTheDeviceAreThereToo)
{
    const auto set = threeWaypoints();
    const auto ticked = TickedRecords::all(set);
    auto data = host::numberedSendData(set, ticked);
    host::RepeatedIndices repeated;
    repeated.add("waypoint", waypoint(data, 2), waypoint(data, 0));
    EXPECT_EQ(host::plannedRecords(set, ticked, {}, repeated).points[2].fate, Fate::kPresent);
}

TEST(PlannedRecords, ThatRepeatARouteAreNotThePointsOfItsIndex)
{
    auto set = threeWaypoints();
    for (int i = 0; i < 2; ++i)
        set.routes.push_back({.record = {{"name", "R"}}, .points = {{}}});
    const auto ticked = TickedRecords::all(set);
    auto data = host::numberedSendData(set, ticked);
    auto& routes = *data.findArray("route");
    host::RepeatedIndices repeated;
    repeated.add("route", *routes[1].as<gps::Dictionary>(), *routes[0].as<gps::Dictionary>());
    routes.resize(1);
    const auto planned = host::plannedRecords(set, ticked, data, repeated);
    EXPECT_EQ(planned.routes[1].fate, Fate::kRepeated);
    EXPECT_EQ(planned.points[1].fate, Fate::kSent);
}

TEST(PlannedRecords, TrackIsRepeatedIfNoSegmentOfItIsSent)
{
    RecordSet set;
    for (int i = 0; i < 2; ++i)
        set.tracks.push_back({.record = {{"name", "T"}}, .points = {{}, {}}, .segments = {1}});
    const auto ticked = TickedRecords::all(set);
    auto data = host::numberedSendData(set, ticked);
    auto& tracks = *data.findArray("track");
    host::RepeatedIndices repeated;
    repeated.add("track", *tracks[3].as<gps::Dictionary>(), *tracks[1].as<gps::Dictionary>());
    tracks.resize(3);
    EXPECT_EQ(host::plannedRecords(set, ticked, data, repeated).tracks[1].fate, Fate::kSent);
    repeated.add("track", *tracks[2].as<gps::Dictionary>(), *tracks[0].as<gps::Dictionary>());
    tracks.resize(2);
    EXPECT_EQ(host::plannedRecords(set, ticked, data, repeated).tracks[1].fate, Fate::kRepeated);
}

TEST(PlannedRecords, ThatTheDeviceWouldNotHaveAreNotSent)
{
    RecordSet set;
    for (const auto segments : {1U, 2U, 1U, 1U})
        set.tracks.push_back({.record = {},
                              .points = std::vector<gps::GPSPoint>(segments),
                              .segments = std::vector<std::size_t>(segments - 1, 1)});
    const auto ticked = TickedRecords::all(set);
    const auto data = host::numberedSendData(set, ticked);
    const auto planned = host::plannedRecords(
        set, ticked, data, {}, {{"track", {}, 2}, {"track", {}, 3}, {"track point", {}, 4}});
    EXPECT_EQ(planned.tracks[0].fate, Fate::kSent);
    EXPECT_EQ(planned.tracks[1].fate, Fate::kPartial) << "one of its two segments";
    EXPECT_EQ(planned.tracks[2].fate, Fate::kMissing);
    EXPECT_EQ(planned.tracks[3].fate, Fate::kPartial);
}

TEST(PlannedRecords, OfATrackWithSegmentsIsOne)
{
    RecordSet set;
    set.tracks.push_back({.record = {{"name", "T"}}, .points = {{}, {}}, .segments = {1}});
    const auto ticked = TickedRecords::all(set);
    const auto data = host::numberedSendData(set, ticked);
    EXPECT_EQ(data.findArray("track")->size(), 2U);
    EXPECT_EQ(host::plannedRecords(set, ticked, data).tracks[0].fate, Fate::kSent);
}

} // namespace
