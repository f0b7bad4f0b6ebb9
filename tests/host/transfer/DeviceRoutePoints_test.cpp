// SPDX-License-Identifier: MIT

#include "host/transfer/DeviceRoutePoints.h"

#include "host/FakeDriver.h"
#include "host/Numbers.h"

#include <gtest/gtest.h>

namespace {

using support::kUnit;

gps::Dictionary point(double latitude, const char* symbol, const char* comment = "")
{
    return {{"name", "Camp"},
            {"comment", comment},
            {"symbol", symbol},
            {"point", gps::GPSPoint{.latitude = latitude, .longitude = 7, .altitude = 12}}};
}

gps::Dictionary dataWithRouteOf(gps::Dictionary record)
{
    return {{"route", gps::Array{gps::Dictionary{{"points", gps::Array{std::move(record)}}}}}};
}

// The route point after the device's points were looked up.
gps::Dictionary used(gps::Dictionary wanted, gps::Dictionary present)
{
    support::FakeFileDriver driver;
    driver.storedSymbol = [](const std::string& symbol) {
        return symbol.empty() || symbol.starts_with("Blue") ? "Dot" : symbol;
    };
    auto data = dataWithRouteOf(std::move(wanted));
    host::useDeviceRoutePoints(data, support::recordsOf(dataWithRouteOf(std::move(present))),
                               driver);
    const auto& route = *data.find("route")->as<gps::Array>()->front().as<gps::Dictionary>();
    return *route.find("points")->as<gps::Array>()->front().as<gps::Dictionary>();
}

TEST(DeviceRoutePoints, PointThatIsStoredAlikeIsReplacedByTheDevicesOwn)
{
    const auto present = point(46.5, "Dot");
    auto wanted = point(46.5 + 0.9 * kUnit, "Dot");
    EXPECT_EQ(used(wanted, present), present);
    wanted.set("point",
               gps::GPSPoint{.latitude = 46.5, .longitude = 7, .altitude = 12.9, .time = 1});
    EXPECT_EQ(used(wanted, present), present);
    wanted.remove("comment");
    EXPECT_EQ(used(wanted, present), present);
}

TEST(DeviceRoutePoints, PointThatIsStoredDifferentlyStays)
{
    const auto present = point(46.5, "Dot");
    for (const auto& wanted :
         {point(46.5 + 2 * kUnit, "Dot"), point(46.5, "Dot", "by the lake"), point(46.5, "Tent")})
        EXPECT_EQ(used(wanted, present), wanted);
    auto higher = present;
    higher.set("point", gps::GPSPoint{.latitude = 46.5, .longitude = 7, .altitude = 13});
    EXPECT_EQ(used(higher, present), higher);
    auto other = present;
    other.set("name", "Hut");
    EXPECT_EQ(used(other, present), other);
}

TEST(DeviceRoutePoints, PointThatIsStoredLikeTheFirstOfItsNameBecomesEqualToIt)
{
    const auto first = point(46.5, "Dot");
    auto later = point(46.5 + 0.9 * kUnit, "Dot");
    later.set("time", 5);
    const auto other = point(46.5, "Tent");
    gps::Dictionary data{
        {"route", gps::Array{gps::Dictionary{{"points", gps::Array{first, other}}},
                             gps::Dictionary{{"points", gps::Array{later, other}}}}}};
    host::useDeviceRoutePoints(data, support::recordsOf({}), support::FakeFileDriver{});
    const auto& second = *(*data.find("route")->as<gps::Array>())[1].as<gps::Dictionary>();
    EXPECT_EQ(*second.findArray("points"), (gps::Array{first, other}));
}

TEST(DeviceRoutePoints, PointWithoutValidCoordinatesStays)
{
    const auto present = point(96.5, "Dot");
    auto wanted = point(96.5, "Blue flag");
    EXPECT_EQ(used(wanted, present), wanted);
    wanted.remove("point");
    EXPECT_EQ(used(wanted, point(46.5, "Dot")), wanted);
}

TEST(DeviceRoutePoints, SymbolsAreTheSameIfTheDeviceStoresTheSameCode)
{
    const auto present = point(46.5, "Dot");
    EXPECT_EQ(used(point(46.5, "Blue flag"), present), present);
    auto none = present;
    none.remove("symbol");
    EXPECT_EQ(used(none, present), present);
}

TEST(DeviceRoutePoints, DeviceIsAskedOnceForEachSymbol)
{
    support::FakeFileDriver driver;
    int questions = 0;
    driver.storedSymbol = [&](const std::string&) {
        ++questions;
        return std::string{"Dot"};
    };
    const gps::Dictionary route{{"points", gps::Array(3, point(46.5, "A"))}};
    gps::Dictionary data{{"route", gps::Array(3, route)}};
    host::useDeviceRoutePoints(data, support::recordsOf(dataWithRouteOf(point(46.5, "B"))), driver);
    EXPECT_EQ(questions, 2);
}

} // namespace
