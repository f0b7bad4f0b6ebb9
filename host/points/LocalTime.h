// SPDX-License-Identifier: MIT
// Timestamps in the time zone of this computer. Stateless. [any]

#pragma once

#include <cstddef>
#include <cstdint>

namespace host {

inline constexpr std::size_t kMostOfLocalTime = 25; ///< "2008-08-11 08:15:48+02:00"

/// Writes a timestamp as date, time and the zone's offset from UTC at that time. The zone is that
/// of the environment variable TZ or of the system.
/// @param at    has room for kMostOfLocalTime characters
/// @param time  seconds since 1970-01-01 00:00 UTC, within the years 0 to 9999
/// @return      the end of what was written
[[nodiscard]] char* putLocalTime(char* at, std::int64_t time) noexcept;

/// The times at which clocks show the same. They differ in the hour that is repeated when daylight
/// saving time ends.
struct ClockTimes {
    std::int64_t earliest; ///< seconds since 1970-01-01 00:00 UTC
    std::int64_t latest;
};

/// When clocks of that zone show a date and time. If they skip it, as when daylight saving time
/// begins, both are the time at which they are put forward.
/// @param shown  the date and time, as seconds since 1970-01-01 00:00 of the same clocks; within
///               the years 1 to 9998
[[nodiscard]] ClockTimes whenClocksShow(std::int64_t shown) noexcept;

} // namespace host
