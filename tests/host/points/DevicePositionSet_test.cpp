// SPDX-License-Identifier: MIT

#include "host/points/DevicePositionSet.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace {

using support::kNaN;
using support::kUnit;

gps::GPSPoint place(double latitude, double longitude = 7)
{
    return {latitude, longitude, 1000, 5, 0};
}

host::DevicePositionSet setOf(std::initializer_list<gps::GPSPoint> points)
{
    host::DevicePositionSet set;
    for (const auto& point : points)
        set.add(point);
    return set;
}

TEST(DevicePositionSet, PointThatMatchesIsFound)
{
    const auto has = [](const gps::GPSPoint& point) {
        return setOf({place(46.5, 7.25), place(-10, -20)}).take(point);
    };
    EXPECT_TRUE(has(place(46.5, 7.25)));
    EXPECT_TRUE(has(place(46.5 + kUnit, 7.25 - kUnit)));
    EXPECT_TRUE(has(place(-10, -20 - kUnit)));
    EXPECT_FALSE(has(place(46.5 + 2 * kUnit, 7.25)));
    EXPECT_FALSE(has(place(46.5, 7.25 - 2 * kUnit)));
    EXPECT_FALSE(has(place(46.5, -20)));
}

TEST(DevicePositionSet, EachPointIsFoundOnceInAnyOrder)
{
    for (const auto& order :
         {std::vector{3, 1, 4, 1, 5, 9}, {9, 5, 1, 4, 1, 3}, {1, 1, 3, 4, 9, 5}}) {
        auto set = setOf({place(3), place(1), place(4), place(1), place(5), place(9)});
        for (const auto latitude : order)
            EXPECT_TRUE(set.take(place(latitude))) << latitude;
        for (const auto latitude : order)
            EXPECT_FALSE(set.take(place(latitude))) << latitude;
    }
}

TEST(DevicePositionSet, PointsNextToEachOtherAreFoundInAnyOrder)
{
    auto set = setOf({place(1 + kUnit), place(1 + 2 * kUnit), place(1)});
    for (const int units : {0, 1, 2})
        EXPECT_TRUE(set.take(place(1 + units * kUnit))) << units;
}

TEST(DevicePositionSet, APointThatItLacksHidesNoneOfTheOthers)
{
    auto set = setOf({place(1), place(2)});
    EXPECT_FALSE(set.take(place(5)));
    EXPECT_TRUE(set.take(place(1)));
    EXPECT_TRUE(set.take(place(2)));
}

TEST(DevicePositionSet, IsEmptyAtFirst)
{
    host::DevicePositionSet set;
    EXPECT_FALSE(set.take({}));
}

TEST(DevicePositionSet, APointWithoutValidCoordinatesIsNeverFound)
{
    auto set = setOf({place(kNaN), place(96)});
    EXPECT_FALSE(set.take(place(kNaN)));
    EXPECT_FALSE(set.take(place(96)));
}

} // namespace
