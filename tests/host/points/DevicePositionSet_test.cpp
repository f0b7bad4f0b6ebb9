// SPDX-License-Identifier: MIT

#include "host/points/DevicePositionSet.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

namespace {

using support::kNaN;
using support::kUnit;

TEST(DevicePositionSet, ContainsWhatMatchesOneOfItsPoints)
{
    host::DevicePositionSet set;
    set.add({46.5, 7.25, 0, 0, 0});
    set.add({-10, -20, 0, 0, 0});
    EXPECT_TRUE(set.contains({46.5, 7.25, 1000, 5, 0}));
    EXPECT_TRUE(set.contains({46.5 + kUnit, 7.25 - kUnit, 0, 0, 0}));
    EXPECT_TRUE(set.contains({-10, -20 - kUnit, 0, 0, 0}));
    EXPECT_FALSE(set.contains({46.5 + 2 * kUnit, 7.25, 0, 0, 0}));
    EXPECT_FALSE(set.contains({46.5, 7.25 - 2 * kUnit, 0, 0, 0}));
    EXPECT_FALSE(set.contains({46.5, -20, 0, 0, 0}));
}

TEST(DevicePositionSet, ContainsItsPointsInAnyOrderAndAnyNumberOfTimes)
{
    host::DevicePositionSet set;
    for (const double latitude : {3, 1, 4, 1, 5, 9})
        set.add({latitude, 7, 0, 0, 0});
    for (const double latitude : {3, 4, 5, 9, 1, 9, 3, 3, 4, 5})
        EXPECT_TRUE(set.contains({latitude, 7, 0, 0, 0})) << latitude;
    EXPECT_FALSE(set.contains({2, 7, 0, 0, 0}));
    EXPECT_TRUE(set.contains({1, 7, 0, 0, 0}));
}

TEST(DevicePositionSet, APointThatItLacksHidesNoneOfTheOthers)
{
    host::DevicePositionSet set;
    set.add({1, 7, 0, 0, 0});
    set.add({2, 7, 0, 0, 0});
    EXPECT_FALSE(set.contains({5, 7, 0, 0, 0}));
    EXPECT_TRUE(set.contains({1, 7, 0, 0, 0}));
    EXPECT_TRUE(set.contains({2, 7, 0, 0, 0}));
}

TEST(DevicePositionSet, IsEmptyAtFirst)
{
    host::DevicePositionSet set;
    EXPECT_FALSE(set.contains({}));
}

TEST(DevicePositionSet, NeverContainsAPointWithoutValidCoordinates)
{
    host::DevicePositionSet set;
    set.add({kNaN, 7, 0, 0, 0});
    set.add({96, 7, 0, 0, 0});
    EXPECT_FALSE(set.contains({kNaN, 7, 0, 0, 0}));
    EXPECT_FALSE(set.contains({96, 7, 0, 0, 0}));
}

} // namespace
