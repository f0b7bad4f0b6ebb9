// SPDX-License-Identifier: MIT

#include "host/points/GlobeFilter.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(GlobeFilter, PassesPointsWithValidCoordinatesAndCountsTheOthers)
{
    host::GlobeFilter filter;
    EXPECT_TRUE(filter.passes({90, 180, 0, 0, 0}));
    EXPECT_EQ(filter.remark(), "");
    EXPECT_FALSE(filter.passes({90.1, 0, 0, 0, 0}));
    EXPECT_EQ(filter.remark(), "1 point without valid coordinates was left out");
    EXPECT_TRUE(filter.passes({0, 0, 0, 0, 0}));
    EXPECT_FALSE(filter.passes({0, -180.1, 0, 0, 0}));
    EXPECT_EQ(filter.remark(), "2 points without valid coordinates were left out");
}

TEST(GlobeFilter, ElevationsThatAreNotStatedAreCountedOfPointsThatPass)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    host::GlobeFilter filter;
    for (const double elevation : {1e8, -1e8, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_TRUE(filter.passes({0, 0, elevation, 0, 0}));
    EXPECT_EQ(filter.remark(), "");
    EXPECT_TRUE(filter.passes({0, 0, 1.1e8, 0, 0}));
    EXPECT_EQ(filter.remark(), "1 elevation of more than 100,000 km was left out");
    EXPECT_TRUE(filter.passes({0, 0, -kInfinity, 0, 0}));
    EXPECT_FALSE(filter.passes({91, 0, kInfinity, 0, 0}));
    EXPECT_EQ(filter.remark(), "1 point without valid coordinates was left out, 2 elevations of "
                               "more than 100,000 km were left out");
}

} // namespace
