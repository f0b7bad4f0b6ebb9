// SPDX-License-Identifier: MIT

#include "host/fitting/PointNames.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using gps::GPSPoint;
using host::PointNames;
using support::kUnit;

GPSPoint pointAt(double latitude, double longitude = 7)
{
    return {latitude, longitude, 0, 0, 0};
}

TEST(PointNames, NameBelongsToThePositionThatClaimedItFirst)
{
    PointNames names;
    EXPECT_TRUE(names.claim("Stop", pointAt(46)));
    EXPECT_TRUE(names.claim("Stop", pointAt(46)));
    EXPECT_TRUE(names.claim("Stop", pointAt(46 + kUnit, 7 - kUnit))) << "the receiver's rounding";
    EXPECT_FALSE(names.claim("Stop", pointAt(46 + 2 * kUnit)));
    EXPECT_FALSE(names.claim("Stop", pointAt(46, 7 + 2 * kUnit)));
    EXPECT_TRUE(names.claim("Stop 2", pointAt(47)));
}

TEST(PointNames, NameOnTheDeviceCanBeClaimedOnlyAtOneOfItsPositions)
{
    PointNames names;
    names.addOnDevice("Stop", pointAt(46));
    names.addOnDevice("Stop", pointAt(47));
    EXPECT_FALSE(names.claim("Stop", pointAt(48)));
    EXPECT_FALSE(names.claim("Stop", pointAt(47 + 2 * kUnit)));
    EXPECT_TRUE(names.claim("Stop", pointAt(47 - 8e-8, 7 + 8e-8)));
    EXPECT_FALSE(names.claim("Stop", pointAt(46))) << "it belongs to the other position now";
}

TEST(PointNames, NameOfAPointWithoutValidCoordinatesBelongsToNoPosition)
{
    PointNames names;
    names.addOnDevice("Stop", pointAt(std::nan("")));
    names.addOnDevice("Far", pointAt(1e300));
    EXPECT_FALSE(names.claim("Stop", pointAt(46)));
    EXPECT_FALSE(names.claim("Far", pointAt(1e300)));
    EXPECT_TRUE(names.claim("New", pointAt(1e300)));
    EXPECT_FALSE(names.claim("New", pointAt(46)));
    EXPECT_FALSE(names.claim("New", pointAt(1e300)));
}

} // namespace
