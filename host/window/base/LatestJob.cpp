// SPDX-License-Identifier: MIT
// One slot, one thread.

#include "host/window/base/LatestJob.h"

#include <utility>

namespace host {

LatestJob::LatestJob() : thread_([this] { run(); }) {}

LatestJob::~LatestJob()
{
    {
        const std::lock_guard lock{mutex_};
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void LatestJob::start(Job job)
{
    std::optional<Job> dropped{std::move(job)}; // destroyed after the lock has been released
    {
        const std::lock_guard lock{mutex_};
        next_.swap(dropped);
    }
    changed_.notify_one();
}

void LatestJob::run()
{
    std::unique_lock lock{mutex_};
    while (true) {
        changed_.wait(lock, [this] { return isEnding_ || next_; });
        if (isEnding_)
            return;
        auto job = std::exchange(next_, std::nullopt);
        lock.unlock();
        (*job)();
        job.reset();
        lock.lock();
    }
}

} // namespace host
