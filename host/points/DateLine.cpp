// SPDX-License-Identifier: MIT
// Interpolates in degrees: on the maps that need the cut, that is a straight line.

#include "host/points/DateLine.h"

#include "host/points/Points.h"

#include <cmath>
#include <cstdint>

namespace host {

std::optional<DateLineCrossing> dateLineCrossing(const gps::GPSPoint& from,
                                                 const gps::GPSPoint& to) noexcept
{
    const double eastward = to.longitude - from.longitude;
    if (std::abs(eastward) <= 180)
        return std::nullopt;
    const double side = std::copysign(180.0, from.longitude);
    const double distance = 360 - std::abs(eastward); // degrees, the shorter way
    // A distance of 0 means that both points are on the meridian, with opposite signs.
    const double part = distance > 0 ? (180 - std::abs(from.longitude)) / distance : 0;
    gps::GPSPoint at;
    at.longitude = side;
    at.latitude = std::lerp(from.latitude, to.latitude, part);
    at.altitude = std::lerp(from.altitude, to.altitude, part);
    if (hasTimestamp(from) && hasTimestamp(to))
        at.time =
            from.time + static_cast<std::int64_t>(part * static_cast<double>(to.time - from.time));
    DateLineCrossing crossing{at, at};
    crossing.after.longitude = -side;
    return crossing;
}

} // namespace host
