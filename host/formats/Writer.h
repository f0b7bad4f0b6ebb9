// SPDX-License-Identifier: MIT
// Writer: turns a stream of events into one output. Each format is one. One thread at a time.

#pragma once

#include "host/operations/Event.h"

#include <optional>
#include <string>

namespace host {

/// Fed with every event in order, with each operation's result after its events, then closed. Keeps
/// no points: memory does not grow with a track. A destructor is silent and need not leave a whole
/// file.
class Writer {
public:
    virtual ~Writer() = default;

    virtual void event(const Event& event) = 0;

    /// What an operation answered; none: success.
    virtual void result(const std::optional<gps::Error>& error) { (void)error; }

    /// Ends the output. @return  the first failure since the start
    [[nodiscard]] virtual std::optional<gps::Error> close() = 0;

    /// What the user should know of what was written, in one sentence; empty: nothing.
    [[nodiscard]] virtual std::string remark() const { return {}; }
};

} // namespace host
