// SPDX-License-Identifier: MIT
// RouteGaps: finds the routes of a file or serial phase of which a sentence is missing. Each object
// follows one file or phase. Not thread-safe. [any]

#pragma once

#include <gps/GPSTransferAccount.h>

#include <cstdint>
#include <string>

namespace magellan {

class SentenceFields;

class RouteGaps {
public:
    /// Follows the numbers of a route's sentences. A sentence that is repeated is not a gap.
    /// @param number  of the sentence in its file or phase
    /// @param lines   gets a kIncomplete for each route that is found to be incomplete
    /// Precondition: readRouteInfo() has accepted the sentence.
    void add(const SentenceFields& fields, std::uint64_t number, gps::LineAccount& lines);

    /// Call this at the end: the last route may not be complete.
    void finish(gps::LineAccount& lines) noexcept;

private:
    // Of the last sentence.
    std::string name_;        // of its route
    std::int64_t number_ = 0; // in its route; 0 before the first
    std::uint64_t line_ = 0;  // its number in the file or phase
    bool isOpen_ = false;     // its route is not complete yet
    bool hasGap_ = false;     // its route lacks a sentence
};

} // namespace magellan
