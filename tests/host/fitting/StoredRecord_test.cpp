// SPDX-License-Identifier: MIT

#include "host/fitting/StoredRecord.h"

#include "host/FakeDriver.h"
#include "host/Numbers.h"
#include "host/transfer/RecordComparison.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using gps::Array;
using gps::Dictionary;

Dictionary storedCamp(double latitude = 46, double metres = 5)
{
    return {{"name", "Camp"},
            {"comment", "by the lake"},
            {"symbol", "Tent"},
            {"point", gps::GPSPoint{latitude, 7, metres, 1, 0}}};
}

Dictionary withText(Dictionary record, std::string_view key, std::string_view text)
{
    record.set(key, text);
    return record;
}

Dictionary routeVia(Array points)
{
    return {{"name", "R"}, {"comment", "long"}, {"points", std::move(points)}};
}

std::string codeOf(std::string_view symbol)
{
    return symbol == "Camping" ? "Tent" : std::string{symbol};
}

// Waypoints that a receiver stores alike, and others that it does not.
std::vector<std::pair<Dictionary, bool>> waypoints()
{
    return {{storedCamp(), true},
            {storedCamp(46, 5.9), true},
            {storedCamp(46 + support::kUnit), true},
            {withText(storedCamp(), "symbol", "Camping"), true},
            {withText(storedCamp(), "unknown key", "x"), true},
            {storedCamp(46 + 2 * support::kUnit), false},
            {storedCamp(46, 6), false},
            {storedCamp(46, -5), false},
            {withText(storedCamp(), "comment", ""), false},
            {withText(storedCamp(), "symbol", "House"), false},
            {storedCamp(96), false},
            {Dictionary{}, false}};
}

TEST(StoredRecord, WaypointsAreTheSameIfTheirComparisonSaysSo)
{
    support::FakeFileDriver driver;
    driver.storedSymbol = codeOf;
    host::RecordComparison comparison{driver};
    for (const auto& [record, isSame] : waypoints()) {
        EXPECT_EQ(
            host::storedWaypoint(storedCamp(), codeOf).isSame(host::storedWaypoint(record, codeOf)),
            isSame);
        EXPECT_EQ(comparison.areSameWaypoints(storedCamp(), withText(record, "name", "Camp")),
                  isSame);
    }
}

TEST(StoredRecord, EveryTextOfAGeocacheCountsExceptItsName)
{
    const auto cache = withText(storedCamp(), "symbol", "Geocache");
    const auto stored = host::storedGeocache(cache);
    EXPECT_TRUE(stored.isSame(host::storedGeocache(withText(cache, "name", "GC2"))));
    EXPECT_TRUE(stored.isSame(host::storedGeocache(withText(cache, "symbol", "Geocache Found"))))
        << "that follows from its date";
    for (const auto* const key : {"comment", "geocacheOwner", "geocacheHint", "geocacheType",
                                  "datePlaced", "dateFound", "difficulty", "terrain"})
        EXPECT_FALSE(stored.isSame(host::storedGeocache(withText(cache, key, "x")))) << key;
    EXPECT_FALSE(stored.isSame(host::storedGeocache(storedCamp(46, 6))));
    EXPECT_FALSE(host::storedGeocache(withText(cache, "geocacheOwner", "x"))
                     .isSame(host::storedGeocache(withText(cache, "geocacheHint", "x"))))
        << "another field";
}

TEST(StoredRecord, RoutesAreTheSameIfAllPointsAreInTheirOrder)
{
    const auto stored = [](const Dictionary& record) { return host::storedRoute(record, codeOf); };
    const auto tour = stored(routeVia({storedCamp(46), storedCamp(47), storedCamp(48)}));
    EXPECT_TRUE(tour.isSame(
        stored(withText(routeVia({storedCamp(46), storedCamp(47), storedCamp(48)}), "name", "S"))));
    EXPECT_TRUE(tour.isSame(
        stored(routeVia({storedCamp(46 + support::kUnit),
                         withText(storedCamp(47), "symbol", "Camping"), storedCamp(48)}))));
    for (const auto& other :
         {routeVia({storedCamp(46), storedCamp(48), storedCamp(47)}),
          routeVia({storedCamp(46), storedCamp(47)}),
          routeVia({storedCamp(46), storedCamp(47), storedCamp(48), storedCamp(48)}),
          routeVia({storedCamp(46), storedCamp(47), storedCamp(48 + 2 * support::kUnit)}),
          routeVia({storedCamp(46), storedCamp(47), storedCamp(48, 6)}),
          routeVia({storedCamp(46), withText(storedCamp(47), "name", "Hut"), storedCamp(48)}),
          withText(routeVia({storedCamp(46), storedCamp(47), storedCamp(48)}), "comment", "short"),
          routeVia({})})
        EXPECT_FALSE(tour.isSame(stored(other)));
}

TEST(StoredRecord, RouteWithAPointThatNobodyStoresIsTheSameAsNoOther)
{
    const auto bad = host::storedRoute(routeVia({storedCamp(46), storedCamp(96)}), codeOf);
    EXPECT_FALSE(bad.isSame(bad));
}

TEST(StoredRecord, ReceiversOwnRecordsAreComparedExactly)
{
    const auto held = host::storedWaypoint(storedCamp(), codeOf);
    EXPECT_TRUE(held.isSameOnReceiver(host::storedWaypoint(storedCamp(46, 5.5), codeOf)));
    EXPECT_FALSE(
        held.isSameOnReceiver(host::storedWaypoint(storedCamp(46 + support::kUnit), codeOf)));
    const auto nowhere = host::storedWaypoint(storedCamp(96), codeOf);
    EXPECT_FALSE(nowhere.isSameOnReceiver(nowhere));
}

} // namespace
