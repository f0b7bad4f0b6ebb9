// SPDX-License-Identifier: MIT
// Time zones by name, from the system's zone database. [any]

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace gps {

/// Seconds that a zone is ahead of UTC at an instant, daylight saving as in force then.
/// @param name      a zone database name, as "Europe/Zurich"
/// @param unixTime  seconds since 1970-01-01 00:00 UTC
/// @return          none when the database has no zone of that name
[[nodiscard]] std::optional<std::int32_t> secondsFromGMT(const std::string& name,
                                                         std::int64_t unixTime);

/// Now, in seconds since 1970-01-01 00:00 UTC.
[[nodiscard]] std::int64_t unixTimeNow();

} // namespace gps
