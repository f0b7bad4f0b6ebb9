// SPDX-License-Identifier: MIT
// RecordCounts: how many records of each kind a device, a file or a data dictionary holds, counted
// from events. Used by the reports of transfer/ and by whatever shows them.

#pragma once

#include "host/operations/Event.h"

#include <cstddef>
#include <string_view>

namespace host {

/// A geocache counts as a geocache only, a route's point as a route point only.
struct RecordCounts {
    std::size_t waypoints = 0;
    std::size_t geocaches = 0;
    std::size_t routes = 0;
    std::size_t routePoints = 0;
    std::size_t tracks = 0;
    std::size_t trackPoints = 0;

    [[nodiscard]] bool isEmpty() const noexcept { return *this == RecordCounts{}; }

    RecordCounts& operator+=(const RecordCounts& other) noexcept;
    RecordCounts& operator-=(const RecordCounts& other) noexcept;

    friend bool operator==(const RecordCounts& a, const RecordCounts& b) noexcept = default;
};

/// Counts one record of a device, with its points.
/// @param key  of its kind, as for a gps::RecordVisitor
void countRecord(std::string_view key, const gps::Dictionary& record, RecordCounts& counts);

/// Counts the records in a send's data dictionary. A route without points does not count: no device
/// stores anything of it. A track without points becomes a file.
[[nodiscard]] RecordCounts countRecords(const gps::Dictionary& data);

/// How many records a data dictionary has lost.
/// @param before  the number that it had
[[nodiscard]] RecordCounts removedSince(RecordCounts before, const gps::Dictionary& data);

/// Counts the records in a stream of events. One thread at a time.
class RecordCounter {
public:
    void add(const Event& event);

    [[nodiscard]] const RecordCounts& counts() const noexcept { return counts_; }

private:
    RecordCounts counts_;
    EventKind open_ = EventKind::kStateChange; // kNewRoute or kNewTrack while one is open
};

} // namespace host
