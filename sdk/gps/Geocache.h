// SPDX-License-Identifier: MIT
// Geocaches travel as waypoints whose records have more keys. This header names those keys and
// decides which records are geocaches. [any]

#pragma once

#include <array>
#include <string_view>

namespace gps {

class Dictionary;

/// The text keys of a geocache record, in the order of a geocache sentence's fields.
inline constexpr std::array<std::string_view, 9> kGeocacheKeys{
    "name",       "comment",   "geocacheOwner", "geocacheHint", "geocacheType",
    "datePlaced", "dateFound", "difficulty",    "terrain"};

/// The symbols of geocaches: one that the user has yet to find, and one that was found.
inline constexpr std::string_view kGeocacheSymbol = "Geocache";
inline constexpr std::string_view kFoundGeocacheSymbol = "Geocache Found";

/// Whether a record is a geocache: its "symbol" is a string that begins with "Geocache". The same
/// rule decides which file of a device a sent record is written to. [any]
[[nodiscard]] bool isGeocache(const Dictionary& record);

} // namespace gps
