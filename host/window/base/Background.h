// SPDX-License-Identifier: MIT
// Background: work for a widget that would hold up a frame, on a thread of its own. Of what is
// requested while it works, only the newest counts. [main loop]

#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace host {

class Background {
public:
    using Result = std::function<void()>; ///< shows a result; called on the main loop's thread
    using Work = std::function<Result()>; ///< runs on the thread; must not throw
    using Job = std::function<void()>;    ///< runs on the thread; must not throw

    Background();

    /// Waits for the work that is running. Its result is not shown; what has not begun is dropped.
    ~Background();
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Does some work after what is running. Work that has not begun by then is dropped, and so is
    /// the result of what is running.
    void run(Work work);

    /// The same for work that shows its results itself, so that none is dropped.
    void start(Job job);

private:
    void runJobs();

    // The number of the latest work; 0 once this object is gone. Read and set by the main loop.
    std::shared_ptr<std::uint64_t> latest_ = std::make_shared<std::uint64_t>(0);
    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<Job> next_; // under mutex_
    bool isEnding_ = false;   // under mutex_
    std::thread thread_;      // last: it uses all of the above
};

} // namespace host
