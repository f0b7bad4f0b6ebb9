// SPDX-License-Identifier: MIT

#include "host/points/GlobeFilter.h"

#include <gtest/gtest.h>

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

} // namespace
