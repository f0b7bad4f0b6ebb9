// SPDX-License-Identifier: MIT
// Times by the clocks of a place. A time zone is a name of the time zone database; an empty one
// stands for UTC. Stateless. [any]

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The date and the time of day as clocks in a zone show them: "2010-01-17 09:40:07"; empty without
/// a time. A zone that the system does not know is taken as UTC.
/// @param time  seconds since 1970-01-01 00:00 UTC
/// Precondition: `hasTimestamp` holds for a point with this time.
[[nodiscard]] std::string timeInZone(const std::optional<std::int64_t>& time,
                                     std::string_view zone);

/// Whose time timeInZone() shows: "Auckland", or "UTC".
[[nodiscard]] std::string zoneTitle(std::string_view zone, std::int64_t time);

} // namespace host
