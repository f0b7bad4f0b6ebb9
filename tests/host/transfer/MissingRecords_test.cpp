// SPDX-License-Identifier: MIT

#include "host/transfer/MissingRecords.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "host/Numbers.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string_view>
#include <utility>

namespace {

using Action = gps::PlannedFile::Action;
using support::kUnit;
using support::waypointAt;
using testing::IsEmpty;
using testing::SizeIs;

gps::Array withPoints(gps::Array points)
{
    return {gps::Dictionary{{"points", std::move(points)}}};
}

// A plan of two files: one of waypoints and one of routes and tracks.
class MissingRecords : public testing::Test {
protected:
    MissingRecords()
    {
        plan_.files.push_back({"/points", Action::kCreate, "", {}});
        plan_.files.push_back({"/lines", Action::kMerge, "", {}});
        driver_.decode = [](std::string_view path, std::string_view) -> gps::Dictionary {
            if (path == "/points")
                return {{"waypoint", gps::Array{waypointAt(46.5, -7.25)}}};
            return {{"route", withPoints({waypointAt(1, 2)})},
                    {"track", withPoints({waypointAt(3, 4)})}};
        };
    }

    std::vector<host::MissingRecord> missing(const char* key, gps::Array records)
    {
        return host::missingRecords({{key, std::move(records)}}, plan_, driver_);
    }

    support::FakeFileDriver driver_;
    gps::SendPlan plan_;
};

TEST_F(MissingRecords, RecordIsFoundWithinThePrecisionOfADevice)
{
    EXPECT_THAT(missing("waypoint", {waypointAt(46.5 + 0.5 * kUnit, -7.25 - 0.5 * kUnit)}),
                IsEmpty());
    EXPECT_THAT(missing("waypoint", {waypointAt(46.5 + 2 * kUnit, -7.25)}), SizeIs(1));
    EXPECT_THAT(missing("waypoint", {waypointAt(46.5, -7.25 + 2 * kUnit)}), SizeIs(1));
}

TEST_F(MissingRecords, MissingRecordHasItsKindAndItsName)
{
    const auto records = missing("waypoint", {waypointAt(0, 0), gps::Dictionary{}});
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].kind, "waypoint");
    EXPECT_EQ(records[0].name, "A");
    EXPECT_EQ(records[1].name, std::nullopt);
}

TEST_F(MissingRecords, GeocacheIsCalledOne)
{
    auto cache = waypointAt(0, 0);
    cache.set("symbol", "Geocache Found");
    EXPECT_EQ(missing("waypoint", {cache}).front().kind, "geocache");
}

TEST_F(MissingRecords, TrackWithoutAFileInThePlanIsOneUnplannedRecord)
{
    plan_.files.push_back({"/lines", Action::kCreate, "", {}, "tracks"});
    auto tracks = withPoints({waypointAt(3, 4)});
    tracks.emplace_back(
        gps::Dictionary{{"name", "B"}, {"points", gps::Array{waypointAt(5, 6), waypointAt(7, 8)}}});
    const auto records = host::unplannedRecords({{"track", tracks}}, plan_, driver_);
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].kind, "track");
    EXPECT_EQ(records[0].name, "B");
    tracks.pop_back();
    EXPECT_THAT(host::unplannedRecords({{"track", tracks}}, plan_, driver_), IsEmpty());
}

TEST_F(MissingRecords, AreKnownByTheirIndexAmongThoseOfTheirKind)
{
    plan_.files.push_back({"/lines", Action::kCreate, "", {}, "tracks"});
    auto tracks = withPoints({waypointAt(3, 4)});
    tracks.emplace_back(
        gps::Dictionary{{"name", "B"}, {"points", gps::Array{waypointAt(5, 6), waypointAt(7, 8)}}});
    const gps::Dictionary data{{"waypoint", gps::Array{waypointAt(0, 0), waypointAt(0, 1)}},
                               {"route", withPoints({waypointAt(1, 2), waypointAt(46.5, -7.25)})},
                               {"track", tracks}};
    const auto records = host::unplannedRecords(data, plan_, driver_);
    std::vector<std::pair<std::string_view, std::size_t>> places;
    for (const auto& record : records)
        places.emplace_back(record.listKey(), record.index);
    EXPECT_THAT(places,
                testing::ElementsAre(testing::Pair("waypoint", 0U), testing::Pair("waypoint", 1U),
                                     testing::Pair("route", 0U), testing::Pair("track", 1U)));
    EXPECT_EQ(host::countMissing(records, data),
              (host::RecordCounts{.waypoints = 2, .tracks = 1, .trackPoints = 2}))
        << "a point of a route is no record";
}

TEST_F(MissingRecords, NothingIsUnplannedIfAFileCannotBeWritten)
{
    const gps::Dictionary data{{"waypoint", gps::Array{waypointAt(0, 0)}}};
    EXPECT_THAT(host::unplannedRecords(data, plan_, driver_), SizeIs(1));
    plan_.files[0] = {"/points", Action::kSkip, "", gps::Error{"some", 1}};
    EXPECT_THAT(host::unplannedRecords(data, plan_, driver_), IsEmpty());
}

TEST_F(MissingRecords, RecordThatCannotBeWrittenIsMissing)
{
    EXPECT_THAT(missing("waypoint", {waypointAt(96.5, 7), gps::Dictionary{}, "text"}), SizeIs(3));
}

TEST_F(MissingRecords, EachKindIsLookedForInItsOwnFiles)
{
    EXPECT_THAT(missing("waypoint", {waypointAt(1, 2), waypointAt(3, 4)}), SizeIs(2));
    const auto routePoints =
        missing("route", withPoints({waypointAt(1, 2), waypointAt(46.5, -7.25), waypointAt(3, 4)}));
    ASSERT_THAT(routePoints, SizeIs(2));
    EXPECT_EQ(routePoints[0].kind, "route point");
    const auto trackPoints =
        missing("track", withPoints({waypointAt(1, 2), waypointAt(46.5, -7.25), waypointAt(3, 4)}));
    ASSERT_THAT(trackPoints, SizeIs(2));
    EXPECT_EQ(trackPoints[0].kind, "track point");
}

gps::Dictionary recordWith(gps::Dictionary record, const char* key, const char* text)
{
    record.set(key, text);
    return record;
}

TEST_F(MissingRecords, RecordWithAnotherNameOrContentAtThePlaceIsNotTheSentOne)
{
    const auto there = waypointAt(46.5, -7.25);
    EXPECT_THAT(missing("waypoint", {there}), IsEmpty());
    EXPECT_THAT(missing("waypoint", {there, recordWith(there, "name", "B")}), SizeIs(1));
    for (const char* const key : {"comment", "symbol"})
        EXPECT_THAT(missing("waypoint", {recordWith(there, key, "other")}), SizeIs(1)) << key;
    auto higher = there;
    higher.set("point", gps::GPSPoint{46.5, -7.25, 1, 0, 0});
    EXPECT_THAT(missing("waypoint", {higher}), SizeIs(1));
}

TEST_F(MissingRecords, GeocacheIsMissingIfAWaypointIsAtItsPlace)
{
    const auto cache = recordWith(waypointAt(46.5, -7.25), "symbol", "Geocache");
    EXPECT_THAT(missing("waypoint", {cache}), SizeIs(1));
    plan_.files[0].kind = "waypoints";
    plan_.files.push_back({"/caches", Action::kMerge, "", {}, "geocaches"});
    EXPECT_THAT(missing("waypoint", {cache, waypointAt(46.5, -7.25)}), SizeIs(1));
}

TEST_F(MissingRecords, GeocacheIsAWaypointOnADeviceWithoutAFileForIt)
{
    plan_.files[0].kind = "waypoints";
    auto cache = waypointAt(46.5, -7.25);
    cache.set("symbol", "Geocache");
    cache.set("geocacheHint", "below the stone");
    driver_.storedSymbol = [](const std::string&) { return "a"; };
    EXPECT_THAT(missing("waypoint", {cache}), IsEmpty());
    cache.set("comment", "note");
    EXPECT_THAT(missing("waypoint", {cache}), SizeIs(1));
}

TEST_F(MissingRecords, RouteThatNoFileHoldsIsOneRecord)
{
    auto routes = withPoints({waypointAt(1, 2), waypointAt(1, 3)});
    routes.front().as<gps::Dictionary>()->set("name", "R");
    const auto records = missing("route", routes);
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].kind, "route");
    EXPECT_EQ(records[0].name, "R");
    const auto noted = recordWith(waypointAt(1, 2), "comment", "other");
    EXPECT_THAT(missing("route", withPoints({noted})), SizeIs(1)) << "stored as another point";
    EXPECT_EQ(missing("route", withPoints({noted}))[0].kind, "route");
    EXPECT_THAT(missing("route", withPoints({recordWith(waypointAt(1, 2), "name", "B")})),
                IsEmpty())
        << "a driver numbers points";
}

TEST_F(MissingRecords, PointsOfTracksAreCounted)
{
    const auto records = missing("track", withPoints({waypointAt(3, 4), waypointAt(3, 4)}));
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].kind, "track point");
}

TEST_F(MissingRecords, FilesThatAreSkippedHoldNothing)
{
    plan_.files.front().action = Action::kSkip;
    EXPECT_THAT(missing("waypoint", {waypointAt(46.5, -7.25)}), SizeIs(1));
    EXPECT_THAT(missing("route", withPoints({waypointAt(1, 2)})), IsEmpty());
}

} // namespace
