// SPDX-License-Identifier: MIT

#include "host/transfer/RecordCounts.h"

#include "host/Records.h"

#include <gmock/gmock.h>

namespace {

using host::RecordCounts;
using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::track;
using support::waypoint;

RecordCounts countsOf(const std::vector<host::Event>& events)
{
    host::RecordCounter counter;
    for (const auto& event : events)
        counter.add(event);
    return counter.counts();
}

TEST(RecordCounts, EventsThatAreNotRecordsCountNothing)
{
    EXPECT_TRUE(countsOf({}).isEmpty());
    EXPECT_TRUE(countsOf({endOfTransfer()}).isEmpty());
    EXPECT_FALSE(countsOf({track("T")}).isEmpty());
}

TEST(RecordCounts, EachKindIsCounted)
{
    const RecordCounts expected{.waypoints = 2,
                                .geocaches = 1,
                                .routes = 2,
                                .routePoints = 0,
                                .tracks = 2,
                                .trackPoints = 2};
    EXPECT_EQ(countsOf({waypoint("A"), waypoint("B"), cache("C"), endOfTransfer(), route("R"),
                        route("S"), endOfTransfer(), track("T"), fix(1), fix(2), track("U")}),
              expected);
}

TEST(RecordCounts, PointsOfARouteAreNotWaypoints)
{
    const RecordCounts expected{.waypoints = 1, .routes = 1, .routePoints = 2};
    EXPECT_EQ(countsOf({route("R"), waypoint("A"), cache("B"), endOfTransfer(), waypoint("C")}),
              expected);
}

TEST(RecordCounts, PointsWithoutAHeadAreATrack)
{
    const RecordCounts expected{.tracks = 2, .trackPoints = 3};
    EXPECT_EQ(countsOf({fix(1), fix(2), endOfTransfer(), fix(3)}), expected);
}

TEST(RecordCounts, DataDictionaryIsCountedLikeADownload)
{
    const gps::Dictionary geocache{{"symbol", "Geocache"}, {"geocacheType", "Traditional"}};
    const gps::Array points(3, gps::Dictionary{});
    const auto counts = host::countRecords(
        {{"waypoint", gps::Array{gps::Dictionary{}, geocache, gps::Dictionary{}, "text"}},
         {"route", gps::Array{gps::Dictionary{{"points", points}}, gps::Dictionary{}}},
         {"track", gps::Array{gps::Dictionary{{"points", points}}}}});
    EXPECT_EQ(counts, (host::RecordCounts{.waypoints = 2,
                                          .geocaches = 1,
                                          .routes = 1,
                                          .routePoints = 3,
                                          .tracks = 1,
                                          .trackPoints = 3}));
    EXPECT_TRUE(host::countRecords({{"track", "text"}}).isEmpty());
}

TEST(RecordCounts, RouteWithoutPointsIsNotSentButATrackIs)
{
    const gps::Array empty{gps::Dictionary{{"name", "A"}, {"points", gps::Array{}}},
                           gps::Dictionary{{"name", "B"}}};
    EXPECT_TRUE(host::countRecords({{"route", empty}}).isEmpty());
    EXPECT_EQ(host::countRecords({{"track", empty}}).tracks, 2U);
}

} // namespace
