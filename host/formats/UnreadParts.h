// SPDX-License-Identifier: MIT
// UnreadParts: what map files have that a reader left out, for messages. A plain value: any thread
// may hold its own.

#pragma once

#include <gps/Error.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What records of GPX files have and receivers have no place for: texts, and of geocaches a time
/// that no date text can carry, or that one was found without a date of it.
struct UnstoredText {
    std::string_view noun;  ///< "waypoint", "geocache", "route", "route point" or "track"
    std::string_view field; ///< "comment", "description", "link", "type", "time" or "found"
    std::size_t records;

    friend bool operator==(const UnstoredText& a, const UnstoredText& b) = default;
};

struct UnreadParts {
    static constexpr std::size_t kMostNamed = 10;

    std::size_t waypoints = 0; ///< without valid coordinates
    /// Of each file at most kMostNamed of those, each with its line.
    std::vector<gps::Error> firstWaypoints{};

    /// Values of points that were read without them: a sentence for each kind of each file.
    std::vector<std::string> values{};

    /// Each noun and field once.
    std::vector<UnstoredText> unstored{};

    /// What is as it should be, but has no place in a receiver or in a record: a sentence for each
    /// file.
    std::vector<std::string> ignored{};

    /// Of that, what `unstored` does not count: a sentence for each file, for a send.
    std::vector<std::string> unsent{};
};

} // namespace host
