// SPDX-License-Identifier: MIT
// One slot, one thread. Each work has a number, which its result still has to have when it is
// shown.

#include "host/window/base/Background.h"

#include "host/window/base/MainLoop.h"

#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace host {

Background::Background() : thread_([this] { runJobs(); }) {}

Background::~Background()
{
    *latest_ = 0;
    {
        const std::lock_guard lock{mutex_};
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void Background::run(Work work)
{
    start([latest = latest_, number = ++*latest_, work = std::move(work)] {
        onMainLoop([latest, number, result = work()] {
            if (*latest == number)
                result();
        });
    });
}

void Background::start(Job job)
{
    std::optional<Job> dropped{std::move(job)}; // destroyed after the lock has been released
    {
        const std::lock_guard lock{mutex_};
        next_.swap(dropped);
    }
    changed_.notify_one();
}

void Background::runJobs()
{
    // Where there are fewer processors than threads, frames come first.
    constexpr int kNiceness = 5;
    (void)::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
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
