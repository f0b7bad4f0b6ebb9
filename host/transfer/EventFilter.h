// SPDX-License-Identifier: MIT
// EventFilter: decides which of a download's records reach its output file. The download borrows
// it, so whoever made the filter can ask it afterwards what it saw. One thread at a time.

#pragma once

#include "host/operations/Event.h"

#include <functional>

namespace host {

class EventFilter {
public:
    /// Where events go that pass the filter.
    using Sink = std::function<void(const Event& event)>;

    virtual ~EventFilter() = default;

    /// Passes the event on, drops it, or keeps it until later events decide.
    virtual void event(const Event& event, const Sink& sink) = 0;

    /// No further event follows: passes on or drops whatever is still held back.
    virtual void finish(const Sink& sink) = 0;
};

} // namespace host
