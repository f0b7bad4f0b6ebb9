// SPDX-License-Identifier: MIT

#include "host/fitting/PointNames.h"

#include "host/points/Points.h"

#include <gps/NumberText.h>

#include <cmath>
#include <cstdint>

namespace host {
namespace {

constexpr double kUnit =
    1e-6; // degrees: a tenth of a metre, and more than a device's rounding moves a place

std::int64_t unitsOf(double degrees)
{
    return std::llround(degrees / kUnit);
}

std::string keyOf(const std::string& name, std::int64_t latitude, std::int64_t longitude)
{
    std::string key = name;
    for (const auto units : {latitude, longitude}) {
        key += '\n'; // in no name
        gps::appendInteger(key, units);
    }
    return key;
}

bool isSamePlace(const gps::GPSPoint& a, const gps::GPSPoint& b)
{
    return std::abs(a.latitude - b.latitude) <= kUnit &&
           std::abs(a.longitude - b.longitude) <= kUnit;
}

} // namespace

void PointNames::addOnDevice(const std::string& name, const gps::GPSPoint& place)
{
    onDevice_.insert(name);
    if (isOnGlobe(place))
        places_.insert(keyOf(name, unitsOf(place.latitude), unitsOf(place.longitude)));
}

bool PointNames::claim(const std::string& name, const gps::GPSPoint& place)
{
    if (const auto known = claimed_.find(name); known != claimed_.end())
        return isSamePlace(known->second, place);
    if (isHeldElsewhere(name, place))
        return false;
    claimed_.emplace(name, place);
    return true;
}

bool PointNames::isHeldElsewhere(const std::string& name, const gps::GPSPoint& place) const
{
    if (!onDevice_.contains(name))
        return false;
    if (!isOnGlobe(place))
        return true;
    for (const int north : {0, -1, 1}) {
        for (const int east : {0, -1, 1}) {
            if (places_.contains(
                    keyOf(name, unitsOf(place.latitude) + north, unitsOf(place.longitude) + east)))
                return false;
        }
    }
    return true;
}

} // namespace host
