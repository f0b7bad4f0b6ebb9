// SPDX-License-Identifier: MIT
// DeviceThread: the one thread on which drivers are called. An import, a plan or a slow disk then
// never holds up a frame of the window, whose own thread never waits for a driver.

#pragma once

#include <platform/System/DeviceMonitor.h>

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace host {

class DeviceThread {
public:
    using Job = std::function<void()>;
    using DeviceHandler = std::function<void(const gps::DeviceChanges& changes)>;

    /// @param changed  called on the thread between two jobs, after volumes or ports have changed
    explicit DeviceThread(DeviceHandler changed);

    /// Waits until the jobs have been done.
    ~DeviceThread();
    DeviceThread(const DeviceThread&) = delete;
    DeviceThread& operator=(const DeviceThread&) = delete;

    /// Runs a job on the thread, after those that were posted before. It must not throw. [any]
    void post(Job job);

private:
    void run();
    [[nodiscard]] bool runJobs();
    void wake() const;

    DeviceHandler changed_;
    int wakeUp_; // an event counter that ends a wait for devices
    std::mutex mutex_;
    std::vector<Job> jobs_; // under mutex_
    bool isEnding_ = false; // under mutex_
    std::thread thread_;    // last: it uses all of the above
};

} // namespace host
