// SPDX-License-Identifier: MIT

#include "host/formats/CsvWriter.h"

#include "host/Numbers.h"
#include "host/formats/Written.h"
#include "support/Variable.h"

#include <gmock/gmock.h>

#include <ctime>
#include <limits>
#include <string>
#include <vector>

namespace {

using host::Event;
using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr gps::GPSPoint kHut{46.5, 7.25, 1529, 1218435348, 0};
constexpr gps::GPSPoint kLake{-46.123456789, -7.5, 0, 0, 0};

constexpr const char* kWaypointHeader =
    "kind,name,latitude,longitude,elevation,time (UTC),local time,comment,symbol\r\n";

std::string csvOf(const std::vector<Event>& events)
{
    const support::Variable zone{"TZ", "Europe/Zurich"};
    ::tzset();
    support::Written written;
    host::CsvWriter writer{written.output(), written.folder()};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return written.text();
}

TEST(CsvWriter, SegmentsOfEachTrackAreNumbered)
{
    const auto csv = csvOf({newTrack({{"name", "A"}}), trackPoint({1, 2, 3, 0, 0}),
                            support::newSegment(), trackPoint({4, 5, 6, 0, 0}),
                            newTrack({{"name", "B"}}), trackPoint({7, 8, 9, 0, 0})});
    EXPECT_THAT(csv, testing::EndsWith("track point,A,1,1,2,3,,\r\n"
                                       "track point,A,2,4,5,6,,\r\n"
                                       "track point,B,1,7,8,9,,\r\n"));
}

TEST(CsvWriter, WithoutRecordsItIsEmpty)
{
    EXPECT_EQ(csvOf({support::stateChange(1), support::stateChange(0)}), "");
}

TEST(CsvWriter, WaypointsHaveTheirTextsAndBothTimes)
{
    EXPECT_EQ(csvOf({wayPoint(kHut, {{"name", "Hut"}, {"comment", "warm"}, {"symbol", "Lodging"}}),
                     wayPoint(kLake, {{"name", "Lake"}})}),
              std::string{kWaypointHeader} +
                  "waypoint,Hut,46.5,7.25,1529,2008-08-11 06:15:48,2008-08-11 08:15:48+02:00,"
                  "warm,Lodging\r\n"
                  "waypoint,Lake,-46.123456789,-7.5,0,,,,\r\n");
}

TEST(CsvWriter, GeocachesHaveTheirOwnColumns)
{
    EXPECT_EQ(csvOf({wayPoint(kLake, {{"name", "GC1"},
                                      {"comment", "bring a pen"},
                                      {"geocacheOwner", "me"},
                                      {"geocacheHint", "under a stone"},
                                      {"geocacheType", "Traditional"},
                                      {"datePlaced", "140508"},
                                      {"dateFound", "soon"},
                                      {"difficulty", "1.5"},
                                      {"terrain", "4"},
                                      {"symbol", "Geocache Found"}})}),
              "kind,name,latitude,longitude,elevation,time (UTC),local time,comment,symbol,owner,"
              "hint,type,placed,found,difficulty,terrain\r\n"
              "geocache,GC1,-46.123456789,-7.5,0,,,bring a pen,Geocache Found,me,under a stone,"
              "Traditional,2008-05-14,soon,1.5,4\r\n");
}

TEST(CsvWriter, RoutePointsAndTrackPointsNameTheirRouteAndTrack)
{
    EXPECT_EQ(
        csvOf({newRoute({{"name", "Loop"}, {"comment", "steep"}}),
               wayPoint(kHut, {{"name", "Hut"}}), newTrack({{"name", "Morning"}}), trackPoint(kHut),
               newTrack({}), trackPoint(kLake)}),
        "kind,route,route comment,name,latitude,longitude,elevation,time (UTC),local time,"
        "comment,symbol\r\n"
        "route point,Loop,steep,Hut,46.5,7.25,1529,2008-08-11 06:15:48,"
        "2008-08-11 08:15:48+02:00,,\r\n"
        "kind,track,segment,latitude,longitude,elevation,time (UTC),local time\r\n"
        "track point,Morning,1,46.5,7.25,1529,2008-08-11 06:15:48,2008-08-11 08:15:48+02:00\r\n"
        "track point,,1,-46.123456789,-7.5,0,,\r\n");
}

TEST(CsvWriter, TablesAreInOneOrderAndEachHasOneHeader)
{
    const auto csv = csvOf(
        {newTrack({}), trackPoint(kHut), newRoute({}), wayPoint(kHut),
         support::transferEvent(host::EventKind::kStartTransfer, gps::TransferKind::kWaypoints),
         wayPoint(kHut, {{"symbol", "Geocache"}}), wayPoint(kHut), newTrack({}), trackPoint(kHut),
         wayPoint(kLake)});
    std::vector<std::string> kinds;
    for (std::size_t at = 0; at < csv.size(); at = csv.find('\n', at) + 1)
        kinds.push_back(csv.substr(at, csv.find(',', at) - at));
    EXPECT_THAT(kinds,
                testing::ElementsAre("kind", "waypoint", "waypoint", "kind", "geocache", "kind",
                                     "route point", "kind", "track point", "track point"));
}

TEST(CsvWriter, OnlyCommasQuotesAndLineBreaksNeedQuotes)
{
    const auto rowOf = [](const char* comment) {
        const auto csv = csvOf({wayPoint(kLake, {{"name", "a"}, {"comment", comment}})});
        return csv.substr(std::string{kWaypointHeader}.size());
    };
    EXPECT_THAT(rowOf("; 'x' =1+1 \xC3\xA9 "), EndsWith(",,; 'x' =1+1 \xC3\xA9 ,\r\n"));
    EXPECT_THAT(rowOf("a,b"), EndsWith(",\"a,b\",\r\n"));
    EXPECT_THAT(rowOf("say \"hi\""), EndsWith(",\"say \"\"hi\"\"\",\r\n"));
    EXPECT_THAT(rowOf("a\nb"), EndsWith(",\"a\nb\",\r\n"));
    EXPECT_THAT(rowOf("a\rb"), EndsWith(",\"a\rb\",\r\n"));
}

TEST(CsvWriter, NamesOfPlacesRoutesAndTracksAreQuotedToo)
{
    const auto csv =
        csvOf({wayPoint(kLake, {{"name", "a,b"}}), newRoute({{"name", "c,d"}}),
               wayPoint(kLake, {{"name", "e,f"}}), newTrack({{"name", "g,h"}}), trackPoint(kLake)});
    EXPECT_THAT(csv, HasSubstr("\r\nwaypoint,\"a,b\",-46"));
    EXPECT_THAT(csv, HasSubstr("\r\nroute point,\"c,d\",,\"e,f\",-46"));
    EXPECT_THAT(csv, HasSubstr("\r\ntrack point,\"g,h\",1,-46"));
}

TEST(CsvWriter, AnUnknownElevationIsAnEmptyCell)
{
    auto point = kHut;
    point.altitude = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(csvOf({trackPoint(point)}), HasSubstr("\r\ntrack point,,1,46.5,7.25,,2008-"));
}

TEST(CsvWriter, PointsOffTheGlobeAreLeftOutAndReported)
{
    support::Written written;
    host::CsvWriter writer{written.output(), written.folder()};
    writer.event(trackPoint({91, 0, 0, 0, 0}));
    EXPECT_FALSE(writer.close());
    EXPECT_EQ(written.text(), "");
    EXPECT_THAT(writer.remark(), StartsWith("1 point"));
}

} // namespace
