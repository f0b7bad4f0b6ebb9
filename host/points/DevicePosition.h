// SPDX-License-Identifier: MIT
// DevicePosition: coordinates at the precision at which receivers store them. This is the one rule
// for whether two points are the same after a receiver has rounded one of them. A value: [any]

#pragma once

#include <gps/GPSPoint.h>

#include <array>
#include <cstdint>
#include <optional>

namespace host {

/// A latitude and a longitude in a receiver's units: five decimals of a minute, which is 1.9 cm on
/// the ground.
class DevicePosition {
public:
    /// Rounds a point's coordinates to whole units.
    /// @return  nullopt if the coordinates are not valid: no receiver stores such a point
    [[nodiscard]] static std::optional<DevicePosition> of(const gps::GPSPoint& point) noexcept;

    /// Whether both may be the same point. One unit of difference on each axis is allowed, because
    /// a value halfway between two units can be rounded either way on its way to a receiver and
    /// back. The longitudes 180 and -180 do not match: a receiver returns the sign that it was
    /// given.
    [[nodiscard]] bool matches(const DevicePosition& other) const noexcept;

    /// Whether a receiver stores exactly the same coordinates for both.
    [[nodiscard]] bool operator==(const DevicePosition& other) const noexcept = default;

    /// A number that differs for any two positions that are not equal, for hash tables.
    [[nodiscard]] std::int64_t key() const noexcept;

    /// The keys of all positions that match this one, its own key first.
    [[nodiscard]] std::array<std::int64_t, 9> matchingKeys() const noexcept;

private:
    DevicePosition(std::int32_t latitude, std::int32_t longitude) noexcept
        : latitude_(latitude), longitude_(longitude)
    {}

    std::int32_t latitude_;
    std::int32_t longitude_;
};

/// The altitude that a receiver stores: whole metres, without rounding, and 0 if it is unknown.
[[nodiscard]] double deviceAltitude(const gps::GPSPoint& point) noexcept;

/// The time that a receiver stores: one from 1980 to 2079, since its years have two digits; 0 for
/// any other, which is no time.
[[nodiscard]] std::int64_t deviceTime(const gps::GPSPoint& point) noexcept;

/// Whether a receiver may store the same coordinates and altitude for both points.
[[nodiscard]] bool isSameOnDevice(const gps::GPSPoint& a, const gps::GPSPoint& b) noexcept;

} // namespace host
