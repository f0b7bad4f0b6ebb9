// SPDX-License-Identifier: MIT

#include "host/transfer/DeviceRecords.h"

#include "host/FakeDriver.h"

#include <gtest/gtest.h>

namespace {

gps::Dictionary point(double latitude, const char* symbol, const char* comment = "")
{
    return {{"name", "Camp"},
            {"comment", comment},
            {"symbol", symbol},
            {"point", gps::GPSPoint{.latitude = latitude, .longitude = 7, .altitude = 12}}};
}

gps::Dictionary routeOf(gps::Dictionary record)
{
    return {{"route", gps::Array{gps::Dictionary{{"points", gps::Array{std::move(record)}}}}}};
}

// What stands in a route after the device's record was looked for.
gps::Dictionary used(gps::Dictionary wanted, gps::Dictionary present)
{
    support::FakeFileDriver driver;
    // A device that has no icon for blue symbols.
    driver.storedSymbol = [](const std::string& symbol) {
        return symbol.empty() || symbol.starts_with("Blue") ? "Dot" : symbol;
    };
    auto data = routeOf(std::move(wanted));
    host::useRecordsOfDevice(data, routeOf(std::move(present)), driver);
    const auto& route = *data.find("route")->as<gps::Array>()->front().as<gps::Dictionary>();
    return *route.find("points")->as<gps::Array>()->front().as<gps::Dictionary>();
}

TEST(DeviceRecords, RoutePointThatWouldBeWrittenAlikeBecomesTheDevicesOwn)
{
    const auto present = point(46.5, "Dot");
    auto wanted = point(46.5 + 0.4e-5 / 60, "Dot");
    EXPECT_EQ(used(wanted, present), present);
    wanted.set("point",
               gps::GPSPoint{.latitude = 46.5, .longitude = 7, .altitude = 12.9, .time = 1});
    EXPECT_EQ(used(wanted, present), present);
    wanted.remove("comment");
    EXPECT_EQ(used(wanted, present), present);
}

TEST(DeviceRecords, RoutePointThatWouldBeWrittenDifferentlyStays)
{
    const auto present = point(46.5, "Dot");
    for (const auto& wanted :
         {point(46.5 + 1e-5 / 60, "Dot"), point(46.5, "Dot", "by the lake"), point(46.5, "Tent")})
        EXPECT_EQ(used(wanted, present), wanted);
    auto higher = present;
    higher.set("point", gps::GPSPoint{.latitude = 46.5, .longitude = 7, .altitude = 13});
    EXPECT_EQ(used(higher, present), higher);
    auto other = present;
    other.set("name", "Hut");
    EXPECT_EQ(used(other, present), other);
}

TEST(DeviceRecords, SymbolsAreOneWhereTheDriverWritesTheSame)
{
    const auto present = point(46.5, "Dot");
    EXPECT_EQ(used(point(46.5, "Blue flag"), present), present);
    auto none = present;
    none.remove("symbol");
    EXPECT_EQ(used(none, present), present);
}

} // namespace
