// SPDX-License-Identifier: MIT
// The data that a simulated receiver holds, loaded from files as receivers write them. Stateless.
// [any]

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

/// Adds the waypoint, track and route sentences of a file, or of all files below a folder.
/// Sentences without a valid checksum are skipped, and so are exact repeats of a waypoint, because
/// route files repeat the waypoints on their way.
/// @return  why the file or the folder cannot be read. Unreadable files in a folder are skipped
[[nodiscard]] std::optional<gps::Error> loadSentences(const std::string& path,
                                                      Sentences& sentences);

} // namespace simulator
