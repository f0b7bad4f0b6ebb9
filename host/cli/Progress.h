// SPDX-License-Identifier: MIT
// Progress: one line on a terminal that says how far an operation is, printed over again and again.

#pragma once

#include <chrono>
#include <cstddef>

#include "host/operations/EventStream.h"

namespace host {

/// Fed on the thread that takes an operation's events; cleared once that has ended.
class Progress {
public:
    /// @param isShown  whether anything is printed at all
    explicit Progress(bool isShown) : isShown_(isShown) {}

    void show(const EventBatch& batch);
    void clear() const;

private:
    bool isShown_;
    gps::TransferKind kind_ = gps::TransferKind::kWaypoints;
    std::size_t points_ = 0; // of the present transfer
    std::chrono::steady_clock::time_point next_{};
};

} // namespace host
