// SPDX-License-Identifier: MIT

#include "host/window/Background.h"

#include "host/window/MainLoop.h"

#include <utility>

namespace host {

Background::Background() : thread_([this] { loop(); }) {}

Background::~Background()
{
    *latest_ = 0;
    {
        const std::lock_guard lock{mutex_};
        isEnding_ = true;
        next_.reset();
    }
    changed_.notify_one();
    thread_.join();
}

void Background::run(Work work)
{
    const auto number = ++*latest_;
    {
        const std::lock_guard lock{mutex_};
        next_ = Job{number, std::move(work)};
    }
    changed_.notify_one();
}

void Background::loop()
{
    while (true) {
        std::unique_lock lock{mutex_};
        changed_.wait(lock, [this] { return isEnding_ || next_; });
        if (isEnding_)
            return;
        const auto job = std::move(*next_);
        next_.reset();
        lock.unlock();
        onMainLoop([latest = latest_, number = job.number, result = job.work()] {
            if (*latest == number)
                result();
        });
    }
}

} // namespace host
