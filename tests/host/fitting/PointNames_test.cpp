// SPDX-License-Identifier: MIT

#include "host/fitting/PointNames.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using host::PointNames;
using host::StoredRecord;
using support::kUnit;

StoredRecord pointAt(double latitude, double longitude = 7, std::size_t details = 0)
{
    return {host::DevicePosition::of({latitude, longitude, 0, 0, 0}), details};
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

TEST(PointNames, PointWithOtherDetailsIsAnotherPoint)
{
    PointNames names;
    EXPECT_TRUE(names.claim("Stop", pointAt(46, 7, 1)));
    EXPECT_FALSE(names.claim("Stop", pointAt(46, 7, 2)));
    names.addOnDevice("Camp", pointAt(46, 7, 1));
    EXPECT_FALSE(names.claim("Camp", pointAt(46, 7, 2)));
    EXPECT_TRUE(names.claim("Camp", pointAt(46, 7, 1))) << "a refused claim claims nothing";
}

TEST(PointNames, NameOnTheDeviceCanBeClaimedOnlyAtItsPosition)
{
    PointNames names;
    names.addOnDevice("Stop", pointAt(46));
    names.addOnDevice("Stop", pointAt(46));
    EXPECT_FALSE(names.isClaimable("Stop", pointAt(47)));
    EXPECT_FALSE(names.claim("Stop", pointAt(46 + 2 * kUnit)));
    EXPECT_TRUE(names.isClaimable("Stop", pointAt(46 - 8e-8, 7 + 8e-8)));
    EXPECT_TRUE(names.claim("Stop", pointAt(46 - 8e-8, 7 + 8e-8)));
}

// A driver that merges into one of the files would number a point that differs from that file's.
TEST(PointNames, NameOfTwoDifferentPointsOnTheDeviceCannotBeClaimed)
{
    for (const auto& other : {pointAt(47), pointAt(46, 7, 1), pointAt(46 + kUnit)}) {
        PointNames names;
        names.addOnDevice("Stop", pointAt(46));
        names.addOnDevice("Stop", other);
        EXPECT_FALSE(names.claim("Stop", pointAt(46)));
        EXPECT_FALSE(names.claim("Stop", other));
    }
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
