// SPDX-License-Identifier: MIT
// Background: work for a widget that would hold up a frame, on a thread of its own. Only the latest
// result is shown. [main loop]

#pragma once

#include "host/window/base/LatestJob.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace host {

class Background {
public:
    using Result = std::function<void()>; ///< shows a result; called on the main loop's thread
    using Work = std::function<Result()>; ///< runs on the thread; must not throw

    Background() = default;

    /// Waits for the work that is running. Its result is not shown.
    ~Background() { *latest_ = 0; }
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Does some work after what is running. Work that has not begun by then is dropped, and so is
    /// the result of what is running.
    void run(Work work);

private:
    // The number of the latest work; 0 once this object is gone. Read and set by the main loop.
    std::shared_ptr<std::uint64_t> latest_ = std::make_shared<std::uint64_t>(0);
    LatestJob job_;
};

} // namespace host
