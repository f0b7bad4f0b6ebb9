// SPDX-License-Identifier: MIT
// LatestJob: a thread for work of which only the newest request counts, such as drawing a map that
// is being moved.

#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace host {

class LatestJob {
public:
    using Job = std::function<void()>;

    LatestJob();

    /// Waits for the end of the running job; the next one is dropped.
    ~LatestJob();
    LatestJob(const LatestJob&) = delete;
    LatestJob& operator=(const LatestJob&) = delete;

    /// Runs a job on the thread after the running one, instead of the one that has not begun. It
    /// must not throw. [any]
    void start(Job job);

private:
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<Job> next_; // under mutex_
    bool isEnding_ = false;   // under mutex_
    std::thread thread_;      // last: it uses all of the above
};

} // namespace host
