// SPDX-License-Identifier: MIT
// Which records of a waypoint list are geocaches, and in which order they are sent.

#include <plugin/fsdevice/GeocacheSplit.h>

#include <gtest/gtest.h>

using magellan::extractGeocachesFromList;

namespace {

gps::Dictionary record(std::string_view name, std::string_view symbol)
{
    return {{"name", name}, {"symbol", symbol}};
}

TEST(GeocacheSplit, WaypointsKeepTheListsOrderAndGeocachesAreReversed)
{
    const auto split =
        extractGeocachesFromList({record("1", "Geocache"), record("2", "Flag"),
                                  record("3", "Geocache Found"), record("4", "House")});
    EXPECT_EQ(split.waypoints, (gps::Array{record("2", "Flag"), record("4", "House")}));
    EXPECT_EQ(split.geocaches,
              (gps::Array{record("3", "Geocache Found"), record("1", "Geocache")}));
}

TEST(GeocacheSplit, EqualGeocachesAreAllRemovedFromTheWaypoints)
{
    const auto split = extractGeocachesFromList(
        {record("1", "Geocache"), record("1", "Geocache"), record("2", "Flag")});
    EXPECT_EQ(split.waypoints, gps::Array{record("2", "Flag")});
    EXPECT_EQ(split.geocaches, (gps::Array{record("1", "Geocache"), record("1", "Geocache")}));
}

TEST(GeocacheSplit, SymbolMustBeginWithGeocacheCaseIncluded)
{
    const auto split = extractGeocachesFromList(
        {record("1", "geocache"), record("2", "My Geocache"), gps::Dictionary{{"name", "3"}}});
    EXPECT_EQ(split.waypoints.value_or(gps::Array{}).size(), 3U);
    EXPECT_FALSE(split.geocaches);
}

TEST(GeocacheSplit, AnEmptyListOfEitherKindIsMissing)
{
    EXPECT_FALSE(extractGeocachesFromList({}).waypoints);
    EXPECT_FALSE(extractGeocachesFromList({}).geocaches);
    EXPECT_FALSE(extractGeocachesFromList({record("1", "Geocache")}).waypoints);
}

} // namespace
