// SPDX-License-Identifier: MIT
// What KmlLine notes about the runs of a track, so that KmlReader gets the track's own points and
// segments back. A run is one line or gx:Track of a placemark. Stateless. [any]

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct KmlRun {
    bool isContinued = false; ///< belongs to the segment of the run before
    bool dropsFirst = false;  ///< its first point is not one of the track
    bool dropsLast = false;   ///< nor is its last one
};

/// Appends a run as a word, such as "new", "more" or "more-first-last", behind a space.
void appendKmlRun(std::string& out, const KmlRun& run);

/// @return  nullopt if the text has any other word
[[nodiscard]] std::optional<std::vector<KmlRun>> readKmlRuns(std::string_view text);

} // namespace host
