// SPDX-License-Identifier: MIT
// Time zones by name, from the system's time zone database. [any]

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace gps {

/// The offset of a time zone from UTC at a given time, including daylight saving time. [any]
/// @param name      a name of the database, such as "Europe/Zurich"
/// @param unixTime  seconds since 1970-01-01 00:00 UTC
/// @return          seconds, positive to the east; nullopt if the database has no such zone
[[nodiscard]] std::optional<std::int32_t> secondsFromGMT(const std::string& name,
                                                         std::int64_t unixTime);

/// The present time in seconds since 1970-01-01 00:00 UTC. [any]
[[nodiscard]] std::int64_t unixTimeNow();

} // namespace gps
