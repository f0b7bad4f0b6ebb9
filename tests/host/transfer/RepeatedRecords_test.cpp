// SPDX-License-Identifier: MIT

#include "host/transfer/RepeatedRecords.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using gps::Array;
using gps::Dictionary;
using support::waypointAt;

Dictionary otherWith(Dictionary record, const char* key, const char* text)
{
    record.set(key, text);
    return record;
}

Dictionary routeThrough(Array points)
{
    return {{"name", "R"}, {"points", std::move(points)}};
}

Dictionary timedPoint(std::int64_t time)
{
    return {{"point", gps::GPSPoint{.latitude = 1, .longitude = 7, .time = time}}};
}

TEST(RepeatedRecords, SameTrackIsSentOnce)
{
    const auto track = routeThrough({waypointAt(1), waypointAt(2)});
    const auto other = routeThrough({waypointAt(3)});
    Dictionary data{{"track", Array{track, other, track, other, track}}};
    const host::RecordCounts expected{.tracks = 3, .trackPoints = 5};
    EXPECT_EQ(host::removeRepeatedRecords(data, support::FakeFileDriver{}), expected);
    EXPECT_EQ(data, (Dictionary{{"track", Array{track, other}}}));
}

TEST(RepeatedRecords, TrackWithoutValidCoordinatesIsReportedAndNotRemoved)
{
    Dictionary data{{"track", Array{routeThrough({waypointAt(96)}), routeThrough({waypointAt(96)}),
                                    routeThrough({}), routeThrough({})}}};
    EXPECT_TRUE(host::removeRepeatedRecords(data, support::FakeFileDriver{}).isEmpty());
}

TEST(RepeatedRecords, EachKindOfRecordIsSentOnce)
{
    const auto cache = otherWith(waypointAt(46), "symbol", "Geocache");
    Dictionary data{{"waypoint", Array{waypointAt(46), cache, waypointAt(46), cache, cache}},
                    {"route", Array{routeThrough({waypointAt(1), waypointAt(2)}),
                                    routeThrough({waypointAt(1), waypointAt(2)})}}};
    const host::RecordCounts expected{
        .waypoints = 1, .geocaches = 2, .routes = 1, .routePoints = 2};
    EXPECT_EQ(host::removeRepeatedRecords(data, support::FakeFileDriver{}), expected);
    EXPECT_EQ(data, (Dictionary{{"waypoint", Array{waypointAt(46), cache}},
                                {"route", Array{routeThrough({waypointAt(1), waypointAt(2)})}}}));
}

TEST(RepeatedRecords, VisitorGetsEachRecordThatIsLeftOutAndTheFirstOfItsLike)
{
    // The number is not compared.
    const auto numbered = [](int number) {
        auto record = waypointAt(46);
        record.set("number", number);
        return record;
    };
    Dictionary data{{"waypoint", Array{numbered(0), numbered(1), waypointAt(47), numbered(3)}},
                    {"route", Array{routeThrough({waypointAt(1)}), routeThrough({waypointAt(1)})}}};
    std::string visited;
    const auto visit = [&](std::string_view key, const Dictionary& record,
                           const Dictionary& first) {
        visited += key;
        for (const auto* const each : {&record, &first}) {
            if (const auto* const number = each->find("number"))
                visited += " " + std::to_string(number->int32Reading());
        }
        visited += "; ";
    };
    (void)host::removeRepeatedRecords(data, support::FakeFileDriver{}, visit);
    EXPECT_EQ(visited, "waypoint 1 0; waypoint 3 0; route; ");
}

TEST(RepeatedRecords, RecordsThatDifferStay)
{
    Dictionary data{
        {"waypoint", Array{waypointAt(46), waypointAt(47), otherWith(waypointAt(46), "name", "B"),
                           otherWith(waypointAt(46), "comment", "c"), "text", "text"}},
        {"route", Array{routeThrough({waypointAt(1)}), routeThrough({waypointAt(2)})}},
        {"track",
         Array{routeThrough({waypointAt(1)}), routeThrough({waypointAt(2)}),
               routeThrough({waypointAt(1), waypointAt(2)}),
               routeThrough({waypointAt(2), waypointAt(1)}),
               routeThrough({timedPoint(1'200'000'000)}), routeThrough({timedPoint(1'200'000'001)}),
               otherWith(routeThrough({waypointAt(1)}), "name", "S"), "text", "text"}}};
    const auto before = data;
    EXPECT_TRUE(host::removeRepeatedRecords(data, support::FakeFileDriver{}).isEmpty());
    EXPECT_EQ(data, before);
}

TEST(RepeatedRecords, RecordWithoutValidCoordinatesIsReportedAndNotRemoved)
{
    Dictionary data{{"waypoint", Array{waypointAt(96), waypointAt(96)}}};
    EXPECT_TRUE(host::removeRepeatedRecords(data, support::FakeFileDriver{}).isEmpty());
}

} // namespace
