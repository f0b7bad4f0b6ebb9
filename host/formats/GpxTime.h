// SPDX-License-Identifier: MIT
// Timestamps as GPX documents write them. Stateless. [any]

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// Reads "YYYY-MM-DDThh:mm:ss" with an optional fraction of a second, followed by "Z", an offset
/// ("+hh:mm", "+hhmm" or "+hh", up to 14 hours) or nothing, which means UTC. Accepts a space
/// instead of the "T", white space around the text, and a date alone, which means its midnight in
/// UTC. A day may end at 24:00:00.
///
/// @return  seconds since 1970-01-01 00:00 UTC (negative before), without the fraction; nullopt for
///          any other text and for a date or time that does not exist
/// Source of the format: ISO 8601, in the profile of W3C XML Schema's dateTime.
[[nodiscard]] std::optional<std::int64_t> readGpxTime(std::string_view text) noexcept;

} // namespace host
