// SPDX-License-Identifier: MIT

#include "host/transfer/RecordComparison.h"

#include "host/FakeDriver.h"
#include "host/Numbers.h"

#include <gps/Geocache.h>

#include <gtest/gtest.h>

namespace {

using gps::Array;
using gps::Dictionary;

Dictionary hut()
{
    return {{"name", "Hut"},
            {"comment", "windy"},
            {"symbol", "Building"},
            {"point", gps::GPSPoint{46, 7, 1200.9, 5, 0}}};
}

Dictionary hutWith(const char* key, gps::Value value)
{
    auto record = hut();
    record.set(key, std::move(value));
    return record;
}

class RecordComparison : public testing::Test {
protected:
    support::FakeFileDriver device_;
    host::RecordComparison comparison_{device_};
};

TEST_F(RecordComparison, WaypointsThatTheDeviceStoresAlikeAreTheSame)
{
    device_.storedSymbol = [](const std::string&) { return "b"; };
    for (const auto& same :
         {hut(),
          hutWith("point", gps::GPSPoint{46 + support::kUnit, 7 - support::kUnit, 1200.1, 0, 0}),
          hutWith("symbol", "Farm"), hutWith("geocacheOwner", "Ann")})
        EXPECT_TRUE(comparison_.areSameWaypoints(hut(), same));
}

TEST_F(RecordComparison, WaypointsThatDifferOnTheDeviceAreNotTheSame)
{
    for (const auto& other :
         {hutWith("name", "hut"), hutWith("comment", ""), hutWith("symbol", "Farm"),
          hutWith("point", gps::GPSPoint{46, 7, 1201, 5, 0}),
          hutWith("point", gps::GPSPoint{46 + 2.1 * support::kUnit, 7, 1200, 5, 0}),
          hutWith("point", gps::GPSPoint{97, 7, 1200, 5, 0}), hutWith("point", "none")})
        EXPECT_FALSE(comparison_.areSameWaypoints(hut(), other));
}

TEST_F(RecordComparison, MissingAndEmptyTextsAreTheSame)
{
    auto without = hut();
    without.remove("comment");
    EXPECT_TRUE(comparison_.areSameWaypoints(without, hutWith("comment", "")));
}

TEST_F(RecordComparison, UnknownAltitudeIsStoredAsZero)
{
    const auto at = [](double altitude) {
        return hutWith("point", gps::GPSPoint{46, 7, altitude, 0, 0});
    };
    const auto unknown = at(support::kNaN);
    EXPECT_TRUE(comparison_.areSameWaypoints(unknown, at(0)));
    EXPECT_TRUE(comparison_.areSameWaypoints(unknown, unknown));
    EXPECT_FALSE(comparison_.areSameWaypoints(unknown, at(1)));
}

TEST_F(RecordComparison, GeocachesAreComparedByTheirNineTextsAndTheirPoint)
{
    EXPECT_TRUE(host::RecordComparison::areSameGeocaches(hut(), hutWith("symbol", "Geocache")));
    for (const auto key : gps::kGeocacheKeys)
        EXPECT_FALSE(
            host::RecordComparison::areSameGeocaches(hut(), hutWith(std::string{key}.c_str(), "x")))
            << key;
    EXPECT_FALSE(host::RecordComparison::areSameGeocaches(
        hut(), hutWith("point", gps::GPSPoint{47, 7, 1200, 0, 0})));
}

TEST_F(RecordComparison, RoutesAreTheSameWithTheSamePointsInTheSameOrder)
{
    const auto valley = hutWith("name", "Valley");
    const Dictionary route{{"name", "Ridge"}, {"number", 1}, {"points", Array{hut(), valley}}};
    const auto with = [&](const char* key, gps::Value value) {
        auto other = route;
        other.set(key, std::move(value));
        return other;
    };
    EXPECT_TRUE(comparison_.areSameRoutes(route, with("number", 7)));
    EXPECT_FALSE(comparison_.areSameRoutes(route, with("points", Array{valley, hut()})));
    EXPECT_FALSE(comparison_.areSameRoutes(route, with("points", Array{hut()})));
    EXPECT_FALSE(comparison_.areSameRoutes(route, with("points", Array{hut(), 1})));
    EXPECT_FALSE(comparison_.areSameRoutes(route, with("points", "none")));
    EXPECT_FALSE(comparison_.areSameRoutes(route, with("name", "ridge")));
    EXPECT_FALSE(comparison_.areSameRoutes(route, with("comment", "x")));
}

TEST_F(RecordComparison, EachSymbolIsAskedForOnce)
{
    int questions = 0;
    device_.storedSymbol = [&](const std::string& symbol) {
        ++questions;
        return symbol;
    };
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(comparison_.areSameWaypoints(hut(), hutWith("symbol", "Farm")));
    EXPECT_EQ(questions, 2);
}

} // namespace
