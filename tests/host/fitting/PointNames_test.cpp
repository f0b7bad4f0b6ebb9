// SPDX-License-Identifier: MIT

#include "host/fitting/PointNames.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using gps::GPSPoint;
using host::PointNames;

GPSPoint at(double latitude, double longitude = 7)
{
    return {latitude, longitude, 0, 0, 0};
}

TEST(PointNames, NameStandsForThePlaceThatClaimedItFirst)
{
    PointNames names;
    EXPECT_TRUE(names.claim("Stop", at(46)));
    EXPECT_TRUE(names.claim("Stop", at(46)));
    EXPECT_TRUE(names.claim("Stop", at(46 + 5e-7, 7 - 5e-7))) << "what rounding moves is not moved";
    EXPECT_FALSE(names.claim("Stop", at(46 + 2e-6)));
    EXPECT_FALSE(names.claim("Stop", at(46, 7 + 2e-6)));
    EXPECT_TRUE(names.claim("Stop 2", at(47)));
}

TEST(PointNames, NameOnTheDeviceIsClaimedAtItsPlacesAlone)
{
    PointNames names;
    names.addOnDevice("Stop", at(46));
    names.addOnDevice("Stop", at(47));
    EXPECT_FALSE(names.claim("Stop", at(48)));
    EXPECT_TRUE(names.claim("Stop", at(47 - 8e-8, 7 + 8e-8)));
    EXPECT_FALSE(names.claim("Stop", at(46))) << "claimed by now";
}

TEST(PointNames, PlaceThatIsNoneIsNobodysOwn)
{
    PointNames names;
    names.addOnDevice("Stop", at(std::nan("")));
    names.addOnDevice("Far", at(1e300));
    EXPECT_FALSE(names.claim("Stop", at(46)));
    EXPECT_FALSE(names.claim("Far", at(1e300)));
}

} // namespace
