// SPDX-License-Identifier: MIT

#include "host/fitting/Altitudes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

gps::Dictionary at(double altitude)
{
    return {{"point", gps::GPSPoint{.latitude = 46, .altitude = altitude}}};
}

double altitudeAfter(double altitude)
{
    gps::Dictionary data{{"waypoint", gps::Array{at(altitude)}}};
    (void)host::clearImpossibleAltitudes(data);
    return gps::findPoint(*data.findArray("waypoint")->front().as<gps::Dictionary>())->altitude;
}

TEST(Altitudes, FiveCharactersAreTheBound)
{
    for (const double kept : {99999.0, 99999.9, -9999.0, -9999.9, 0.0, -0.5})
        EXPECT_EQ(altitudeAfter(kept), kept);
    for (const double cleared :
         {100000.0, -10000.0, 1e9, -1e300, std::numeric_limits<double>::infinity()})
        EXPECT_TRUE(std::isnan(altitudeAfter(cleared))) << cleared;
}

TEST(Altitudes, AllPointsAreCounted)
{
    const gps::Dictionary record{{"points", gps::Array{at(1e9), at(1), gps::Dictionary{}}}};
    gps::Dictionary data{{"waypoint", gps::Array{at(1e9), at(2)}},
                         {"route", gps::Array{record}},
                         {"track", gps::Array{record, record}}};
    EXPECT_EQ(host::clearImpossibleAltitudes(data), 4U);
    EXPECT_EQ(host::clearImpossibleAltitudes(data), 0U);
}

} // namespace
