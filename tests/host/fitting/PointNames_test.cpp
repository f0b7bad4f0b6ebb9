// SPDX-License-Identifier: MIT

#include "host/fitting/PointNames.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using gps::GPSPoint;
using host::PointNames;

constexpr double kUnit = 1e-5 / 60; // degrees: the precision of a receiver

GPSPoint at(double latitude, double longitude = 7)
{
    return {latitude, longitude, 0, 0, 0};
}

TEST(PointNames, NameBelongsToThePositionThatClaimedItFirst)
{
    PointNames names;
    EXPECT_TRUE(names.claim("Stop", at(46)));
    EXPECT_TRUE(names.claim("Stop", at(46)));
    EXPECT_TRUE(names.claim("Stop", at(46 + kUnit, 7 - kUnit))) << "the receiver's rounding";
    EXPECT_FALSE(names.claim("Stop", at(46 + 2 * kUnit)));
    EXPECT_FALSE(names.claim("Stop", at(46, 7 + 2 * kUnit)));
    EXPECT_TRUE(names.claim("Stop 2", at(47)));
}

TEST(PointNames, NameOnTheDeviceCanBeClaimedOnlyAtOneOfItsPositions)
{
    PointNames names;
    names.addOnDevice("Stop", at(46));
    names.addOnDevice("Stop", at(47));
    EXPECT_FALSE(names.claim("Stop", at(48)));
    EXPECT_FALSE(names.claim("Stop", at(47 + 2 * kUnit)));
    EXPECT_TRUE(names.claim("Stop", at(47 - 8e-8, 7 + 8e-8)));
    EXPECT_FALSE(names.claim("Stop", at(46))) << "it belongs to the other position now";
}

TEST(PointNames, NameOfAPointWithoutValidCoordinatesBelongsToNoPosition)
{
    PointNames names;
    names.addOnDevice("Stop", at(std::nan("")));
    names.addOnDevice("Far", at(1e300));
    EXPECT_FALSE(names.claim("Stop", at(46)));
    EXPECT_FALSE(names.claim("Far", at(1e300)));
    EXPECT_TRUE(names.claim("New", at(1e300)));
    EXPECT_FALSE(names.claim("New", at(46)));
    EXPECT_FALSE(names.claim("New", at(1e300)));
}

} // namespace
