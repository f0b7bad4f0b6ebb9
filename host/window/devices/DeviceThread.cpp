// SPDX-License-Identifier: MIT
// Waits for devices and for jobs at once: a job makes the monitor's wake-up file readable.

#include "host/window/devices/DeviceThread.h"

#include <chrono>
#include <cstdint>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace host {
namespace {

int newEventCounter()
{
    const int file = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (file < 0)
        throw std::system_error{errno, std::generic_category(), "eventfd"};
    return file;
}

} // namespace

DeviceThread::DeviceThread(DeviceHandler changed)
    : changed_(std::move(changed)), wakeUp_(newEventCounter()), thread_([this] { run(); })
{}

DeviceThread::~DeviceThread()
{
    {
        const std::lock_guard lock{mutex_};
        isEnding_ = true;
    }
    wake();
    thread_.join();
    ::close(wakeUp_);
}

void DeviceThread::post(Job job)
{
    {
        const std::lock_guard lock{mutex_};
        jobs_.push_back(std::move(job));
    }
    wake();
}

void DeviceThread::wake() const
{
    const std::uint64_t one = 1;
    (void)!::write(wakeUp_, &one, sizeof one); // fails only if it is readable already
}

void DeviceThread::run()
{
    gps::DeviceMonitor monitor{wakeUp_};
    constexpr std::chrono::milliseconds kForever{-1};
    while (runJobs()) {
        const auto changes = monitor.wait(kForever);
        if (changes.volumes || changes.serialPorts)
            changed_(changes);
    }
}

// Returns false once the thread is to end and no job is left.
bool DeviceThread::runJobs()
{
    std::uint64_t count = 0;
    (void)!::read(wakeUp_, &count, sizeof count);
    while (true) {
        std::vector<Job> jobs;
        {
            const std::lock_guard lock{mutex_};
            jobs.swap(jobs_);
            if (jobs.empty())
                return !isEnding_;
        }
        for (const auto& job : jobs)
            job();
    }
}

} // namespace host
