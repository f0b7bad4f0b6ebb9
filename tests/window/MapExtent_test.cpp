// SPDX-License-Identifier: MIT

#include "host/window/map/MapExtent.h"

#include "host/window/map/MapPath.h"
#include "host/window/map/MapView.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using host::Extent;
using host::extentOfAll;

Extent around(double left, double right)
{
    return {.left = left, .right = right, .top = 0.4, .bottom = 0.5};
}

TEST(MapExtent, ExtentOfNothingIsEmpty)
{
    EXPECT_TRUE(extentOfAll({}).isEmpty());
    EXPECT_TRUE(extentOfAll(std::vector<Extent>{{}, {}}).isEmpty());
}

TEST(MapExtent, ExtentOfAllContainsEach)
{
    const auto all = extentOfAll(std::vector{around(0.3, 0.4), around(0.2, 0.25), Extent{}});
    EXPECT_DOUBLE_EQ(all.left, 0.2);
    EXPECT_DOUBLE_EQ(all.right, 0.4);
    EXPECT_DOUBLE_EQ(all.top, 0.4);
    EXPECT_DOUBLE_EQ(all.bottom, 0.5);
}

TEST(MapExtent, ExtentOfAllLeadsAcrossThe180thMeridianIfThatIsShorter)
{
    const auto all = extentOfAll(std::vector{around(0.01, 0.02), around(0.97, 0.98)});
    EXPECT_DOUBLE_EQ(all.left, 0.97);
    EXPECT_DOUBLE_EQ(all.right, 1.02);
}

TEST(MapExtent, ExtentOfAllStaysWithinTheWorldIfThatIsShorter)
{
    const auto all = extentOfAll(std::vector{around(0.3, 0.31), around(0.7, 0.71)});
    EXPECT_DOUBLE_EQ(all.left, 0.3);
    EXPECT_DOUBLE_EQ(all.right, 0.71);
}

TEST(MapExtent, ExtentBeyondTheEdgeIsTheSameAsOnTheOtherSide)
{
    const auto all = extentOfAll(std::vector{around(0.99, 1.01), around(0.005, 0.02)});
    EXPECT_DOUBLE_EQ(all.left, 0.99);
    EXPECT_DOUBLE_EQ(all.right, 1.02);
}

TEST(MapExtent, ExtentAroundTheWorldDoesNotEndTheProgram)
{
    const auto all = extentOfAll(std::vector{around(-3, 4)});
    EXPECT_GE(all.right - all.left, 1);
}

TEST(MapExtent, LatitudeAndLongitudeAreThoseOfThePosition)
{
    const auto position = host::mapPositionOf({.latitude = 46.5, .longitude = -7.25});
    EXPECT_NEAR(host::latitudeOf(position), 46.5, 1e-9);
    EXPECT_NEAR(host::longitudeOf(position), -7.25, 1e-9);
    EXPECT_NEAR(host::longitudeOf({position.x + 2, position.y}), -7.25, 1e-9);
    EXPECT_NEAR(host::longitudeOf({position.x - 2, position.y}), -7.25, 1e-9);
}

std::vector<double> shiftsOf(const Extent& thing, const Extent& seen)
{
    std::vector<double> shifts;
    host::visitShifts(thing, seen, [&](double shift) { shifts.push_back(shift); });
    return shifts;
}

TEST(MapView, ShiftsAreThoseInWhichAThingIsSeen)
{
    using Shifts = std::vector<double>;
    EXPECT_EQ(shiftsOf(around(0.3, 0.4), around(0, 1)), Shifts{0});
    EXPECT_EQ(shiftsOf(around(0.3, 0.4), around(0.39, 0.5)), Shifts{0});
    EXPECT_EQ(shiftsOf(around(0.3, 0.4), around(0.41, 0.5)), Shifts{});
    EXPECT_EQ(shiftsOf(around(0.9, 1.1), around(-0.2, 0.05)), Shifts{-1});
    EXPECT_EQ(shiftsOf(around(0.3, 0.4), around(-1, 2)), (Shifts{-1, 0, 1}));
    EXPECT_EQ(shiftsOf(Extent{}, around(0, 1)), Shifts{});
}

TEST(MapView, ShiftsNeedAnOverlapInLatitude)
{
    const Extent thing{.left = 0, .right = 1, .top = 0.6, .bottom = 0.7};
    EXPECT_TRUE(shiftsOf(thing, around(0, 1)).empty());
}

} // namespace
