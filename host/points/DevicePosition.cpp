// SPDX-License-Identifier: MIT
// Keys are computed without hashing: both coordinates fit side by side into 64 bits.

#include "host/points/DevicePosition.h"

#include "host/points/Points.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace host {
namespace {

constexpr double kUnitsPerDegree = 60 * 1e5;

// Rounds halves away from zero, on either side of the equator alike; matches() allows for receivers
// that round them otherwise.
// Precondition: the value is a valid coordinate.
std::int32_t unitsOf(double degrees) noexcept
{
    const double units = std::abs(degrees) * kUnitsPerDegree;
    const auto whole = static_cast<std::int32_t>(units);
    const auto nearest = whole + (units - whole >= 0.5 ? 1 : 0);
    return degrees < 0 ? -nearest : nearest;
}

std::int64_t unitsBetween(std::int32_t a, std::int32_t b) noexcept
{
    return std::abs(std::int64_t{a} - b);
}

} // namespace

std::optional<DevicePosition> DevicePosition::of(const gps::GPSPoint& point) noexcept
{
    if (!isOnGlobe(point))
        return std::nullopt;
    return DevicePosition{unitsOf(point.latitude), unitsOf(point.longitude)};
}

bool DevicePosition::matches(const DevicePosition& other) const noexcept
{
    return unitsBetween(latitude_, other.latitude_) <= 1 &&
           unitsBetween(longitude_, other.longitude_) <= 1;
}

std::int64_t DevicePosition::key() const noexcept
{
    // More than the 2,160,000,001 longitudes and the neighbours of the outermost two.
    constexpr std::int64_t kLongitudes = 4'000'000'000;
    return latitude_ * kLongitudes + longitude_;
}

std::array<std::int64_t, 9> DevicePosition::matchingKeys() const noexcept
{
    std::array<std::int64_t, 9> keys{};
    std::size_t next = 0;
    for (const int north : {0, -1, 1}) {
        for (const int east : {0, -1, 1})
            keys[next++] = DevicePosition{latitude_ + north, longitude_ + east}.key();
    }
    return keys;
}

double deviceAltitude(const gps::GPSPoint& point) noexcept
{
    return std::isnan(point.altitude) ? 0 : std::trunc(point.altitude);
}

std::int64_t deviceTime(const gps::GPSPoint& point) noexcept
{
    return gps::NMEAUtils::hasNMEADate(point.time) ? point.time : 0;
}

bool isSameOnDevice(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept
{
    const auto first = DevicePosition::of(a);
    const auto second = DevicePosition::of(b);
    return first && second && first->matches(*second) && deviceAltitude(a) == deviceAltitude(b);
}

} // namespace host
