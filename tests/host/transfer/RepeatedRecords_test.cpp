// SPDX-License-Identifier: MIT

#include "host/transfer/RepeatedRecords.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"

#include <gtest/gtest.h>

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

TEST(RepeatedRecords, RecordsThatDifferStay)
{
    Dictionary data{
        {"waypoint", Array{waypointAt(46), waypointAt(47), otherWith(waypointAt(46), "name", "B"),
                           otherWith(waypointAt(46), "comment", "c"), "text", "text"}},
        {"route", Array{routeThrough({waypointAt(1)}), routeThrough({waypointAt(2)})}},
        {"track", Array{routeThrough({waypointAt(1)}), routeThrough({waypointAt(1)})}}};
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
