// SPDX-License-Identifier: MIT
// Facts about single points that every output needs: whether a point has a timestamp and valid
// coordinates, and how both are written. Stateless. [any]

#pragma once

#include <gps/GPSPoint.h>
#include <gps/NumberText.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace host {

/// 10000-01-01 00:00 UTC: years are written with four digits.
inline constexpr std::int64_t kEndOfTimestamps = 253402300800;

/// Whether a point's time is a real timestamp: from 1980-01-01 up to the end of the year 9999.
///
/// A receiver that sends a time of day without a date yields a time in 1970. No satellite time is
/// older than 1980, so anything before that has no date.
[[nodiscard]] bool hasTimestamp(const gps::GPSPoint& point) noexcept;

/// The farthest from sea level that an elevation can be, in metres: beyond all satellites, and
/// short enough for every format and device.
inline constexpr double kMostElevation = 1e8;

/// Whether a point has an elevation that the outputs state: a number within kMostElevation. One
/// that is not known is a NaN.
[[nodiscard]] bool isElevationStated(const gps::GPSPoint& point) noexcept;

/// Writes timestamps as "YYYY-MM-DD", a separator and "HH:MM:SS", in UTC. Remembers the date: most
/// points are of the same day as the point before.
class TimestampText {
public:
    static constexpr std::size_t kSize = 19;

    /// @param at    has room for kSize characters
    /// @param time  seconds since 1970-01-01 00:00 UTC
    /// Precondition: `hasTimestamp` holds for a point with this time.
    /// @return      the end of what was written
    [[nodiscard]] char* put(char* at, std::int64_t time, char separator) noexcept;

private:
    std::int64_t day_ = -1; // since 1970-01-01; -1 is before all days that are written
    std::array<char, 10> date_{};
};

/// Appends one timestamp.
void appendTimestamp(std::string& out, std::int64_t time, char separator);

inline constexpr std::size_t kMostOfDegrees = gps::kMostOfRounded;

/// Writes a latitude or a longitude in degrees with nine decimals, which is 0.1 mm. Receivers store
/// a hundredth of that precision, so the text reads back as the same sentence.
/// @param at  has room for kMostOfDegrees characters
/// Precondition: the value is a valid coordinate.
/// @return    the end of what was written
[[nodiscard]] char* putDegrees(char* at, double degrees) noexcept;

/// Whether both coordinates are valid: finite, latitude within 90 and longitude within 180 degrees.
[[nodiscard]] bool isOnGlobe(const gps::GPSPoint& point) noexcept;

} // namespace host
