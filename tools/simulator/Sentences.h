// SPDX-License-Identifier: MIT
// The data that a simulated receiver holds, taken from the files that receivers write. [any]

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>
#include <vector>

namespace simulator {

/// Sentence bodies, without "$" and checksum, in the order in which they are sent.
struct Sentences {
    std::vector<std::string> waypoints{};
    std::vector<std::string> tracks{};
    std::vector<std::string> routes{};
};

/// Adds the waypoint, track and route sentences with good checksums of a file, or of all files
/// below a folder. A waypoint that is there already, to the letter, is left out: route files repeat
/// those that they pass.
/// @return  why the file, or the folder, cannot be read; what is inside a folder may be unreadable
[[nodiscard]] std::optional<gps::Error> loadSentences(const std::string& path,
                                                      Sentences& sentences);

} // namespace simulator
