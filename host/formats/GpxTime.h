// SPDX-License-Identifier: MIT
// Moments as XML documents write them. Stateless: [any] thread.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// Reads "YYYY-MM-DDThh:mm:ss", with a fraction of the second or without, then "Z", an offset
/// ("+hh:mm", "+hhmm", "+hh", up to 14 hours) or nothing, which is UTC. A space may stand for the
/// "T", white space around it all; a day alone is its midnight.
///
/// @return  seconds since 1970-01-01 00:00 UTC, negative before, the fraction dropped; none for any
/// other text, and for a day
///          or an hour that no calendar has
/// Source of the form: ISO 8601, in the profile of W3C XML Schema's dateTime.
[[nodiscard]] std::optional<std::int64_t> readGpxTime(std::string_view text) noexcept;

} // namespace host
