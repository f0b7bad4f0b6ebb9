// SPDX-License-Identifier: MIT

#include "host/points/DateLine.h"

#include <gtest/gtest.h>

namespace {

using host::dateLineCrossing;

TEST(DateLine, LineTakesTheShorterWayAroundTheGlobe)
{
    EXPECT_FALSE(dateLineCrossing({0, 10, 0, 0, 0}, {0, -20, 0, 0, 0}));
    EXPECT_FALSE(
        dateLineCrossing({0, 90, 0, 0, 0}, {0, -90, 0, 0, 0})); // over a pole, or either way around
    EXPECT_FALSE(dateLineCrossing({0, 179, 0, 0, 0}, {0, 180, 0, 0, 0}));
    EXPECT_TRUE(dateLineCrossing({0, 90.001, 0, 0, 0}, {0, -90, 0, 0, 0}));
    EXPECT_TRUE(dateLineCrossing({0, -179, 0, 0, 0}, {0, 179, 0, 0, 0}));
}

TEST(DateLine, CrossingIsInterpolated)
{
    const auto east =
        dateLineCrossing({10, 179, 100, 1000000000, 0}, {14, -178, 400, 1000000030, 0});
    ASSERT_TRUE(east);
    EXPECT_EQ(east->before.longitude, 180);
    EXPECT_EQ(east->after.longitude, -180);
    EXPECT_NEAR(east->before.latitude, 10 + 4.0 / 3, 1e-12);
    EXPECT_NEAR(east->before.altitude, 200, 1e-9);
    EXPECT_EQ(east->before.time, 1000000010);
    EXPECT_EQ(east->after.latitude, east->before.latitude);
    EXPECT_EQ(east->after.time, east->before.time);

    const auto west = dateLineCrossing({10, -179, 0, 0, 0}, {14, 179, 0, 1000000030, 0});
    ASSERT_TRUE(west);
    EXPECT_EQ(west->before.longitude, -180);
    EXPECT_EQ(west->after.longitude, 180);
    EXPECT_EQ(west->before.latitude, 12);
    EXPECT_EQ(west->before.time, 0); // one of the points has no timestamp
}

TEST(DateLine, LineFromOneSideOfTheMeridianToTheOtherCrossesAtItsStart)
{
    const auto crossing = dateLineCrossing({5, 180, 7, 0, 0}, {6, -180, 8, 0, 0});
    ASSERT_TRUE(crossing);
    EXPECT_EQ(crossing->before, (gps::GPSPoint{5, 180, 7, 0, 0}));
    EXPECT_EQ(crossing->after, (gps::GPSPoint{5, -180, 7, 0, 0}));
}

} // namespace
