// SPDX-License-Identifier: MIT
// NameFitting: makes the names and texts of a data dictionary readable on a device and its names
// different, before a send hands them to a driver. What a device can show is the caller's
// knowledge. Stateless: [any] thread.

#pragma once

#include <gps/Value.h>
#include <platform/GPSUtilities/CharacterFilter.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What a device's texts can be.
struct TextRules {
    gps::CharacterSet characters;
    std::size_t longestName; ///< characters; a geocache's name may be longer
};

/// One text that is no longer what it was.
struct TextChange {
    std::string_view kind; ///< "waypoint", "geocache", "route" or "route point"
    std::string_view key;  ///< "name", "comment" and so on
    std::string before;    ///< empty: the record had no name
    std::string after;     ///< in the device's characters
    std::string dropped; ///< the characters that have no counterpart on the device, in their order
};

/// Writes every text in the device's characters, then gives each name that had to change, is too
/// long, empty or missing one that no other thing in the data has and no other on the device. The
/// same data with the same device gives the same names.
///
/// A name that is good already stays, and so replaces what the device holds under it; where several
/// waypoints or several routes in the data have it at different places, it stays with the first. A
/// route's point goes by the name of the waypoint that had its name: of the one at its place, else
/// of the first, unless a point elsewhere goes by that name already, in the data or in a route of
/// the device. Geocaches of one name are one geocache. What an earlier send has put on the device
/// is known by its place, and gets its name again.
///
/// Symbols are looked up by name and so left alone; a track's name is its own affair: no device
/// keeps it.
///
/// @param data      the records to send; changed in place
/// @param onDevice  the records that the device holds, under the same keys
/// @return          what has changed: first all other texts, then the names, one that several
/// points share only once
[[nodiscard]] std::vector<TextChange>
fitNames(gps::Dictionary& data, const gps::Dictionary& onDevice, const TextRules& rules);

} // namespace host
