// SPDX-License-Identifier: MIT
// Disposal: values of which nobody has to wait for the end. To destroy the records of 100,000
// waypoints takes longer than a frame. [any]

#pragma once

#include <platform/System/DetachedThread.h>

#include <memory>

namespace host {

/// Shares a value that is destroyed on a thread of its own, whoever needs it last.
template <typename Value>
[[nodiscard]] std::shared_ptr<Value> freedElsewhere(std::unique_ptr<Value> value)
{
    return {value.release(), [](Value* shared) {
                const auto free = [shared] { const std::unique_ptr<Value> owned{shared}; };
                if (gps::detachNewThread(free)) // there is no thread
                    free();
            }};
}

} // namespace host
