// SPDX-License-Identifier: MIT
// TimeRange: which times a user chose. Stateless. [any]

#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace host {

/// Times from `first` to `last`, both included, in seconds since 1970-01-01 00:00 UTC.
struct TimeRange {
    std::int64_t first = std::numeric_limits<std::int64_t>::min();
    std::int64_t last = std::numeric_limits<std::int64_t>::max();

    [[nodiscard]] bool contains(std::int64_t time) const noexcept
    {
        return first <= time && time <= last;
    }
};

/// Reads a date, which means that whole day, or a date and a time, which mean that minute or
/// second: "YYYY-MM-DD", "YYYY-MM-DDThh:mm" or "YYYY-MM-DDThh:mm:ss". A space may replace the "T".
/// All are those of this computer's time zone unless a time is followed by "Z" or an offset such as
/// "+02:00". A day has as many hours as clocks show in that zone.
/// @return  nullopt for any other text, and for a date or time that does not exist
[[nodiscard]] std::optional<TimeRange> readTimeRange(const std::string& text);

} // namespace host
