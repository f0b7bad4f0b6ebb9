// SPDX-License-Identifier: MIT
// RepeatFilter: drops records that a serial receiver sent twice. A receiver repeats a sentence
// whose acknowledgement did not arrive in time, and the driver reports it twice. Used by downloads.
// One thread at a time.

#pragma once

#include "host/operations/Event.h"
#include "host/transfer/EventFilter.h"

#include <cstdint>
#include <vector>

namespace host {

/// How many records were dropped.
struct RepeatCounts {
    std::uint64_t waypoints = 0;
    std::uint64_t trackPoints = 0;
    std::uint64_t routes = 0;

    [[nodiscard]] std::uint64_t total() const noexcept { return waypoints + trackPoints + routes; }
};

/// A record is dropped if it is equal to the one before it in the same transfer. A route is
/// compared with all its points, and held back until its end.
class RepeatFilter final : public EventFilter {
public:
    void event(const Event& event, const Sink& sink) override;
    void finish(const Sink& sink) override;

    [[nodiscard]] const RepeatCounts& dropped() const noexcept { return dropped_; }

private:
    void point(const Event& event, std::uint64_t& dropped, const Sink& sink);
    void endRoute(const Sink& sink);

    RepeatCounts dropped_;
    Event last_;               // the last waypoint or track point that was passed on
    bool hasLast_ = false;     // in this transfer
    std::vector<Event> route_; // the open route with its points
    std::vector<Event> lastRoute_;
};

} // namespace host
