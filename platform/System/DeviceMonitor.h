// SPDX-License-Identifier: MIT
// DeviceMonitor: waits until volumes or serial ports appear or disappear. [host thread]

#pragma once

#include <chrono>
#include <memory>

namespace gps {

/// What may have changed since the last wait.
struct DeviceChanges {
    bool volumes = false;
    bool serialPorts = false;
    bool interrupted = false; ///< a signal was handled, or the wake-up file has data to read
};

class DeviceMonitor {
public:
    /// @param wakeUp  an open file, not owned; a wait ends when it has data to read. -1 for no file
    explicit DeviceMonitor(int wakeUp = -1);
    ~DeviceMonitor();
    DeviceMonitor(const DeviceMonitor&) = delete;
    DeviceMonitor& operator=(const DeviceMonitor&) = delete;

    /// Waits for the next change. Changes in quick succession are combined. [host thread]
    /// @param limit  the longest time to wait; negative: no limit
    [[nodiscard]] DeviceChanges wait(std::chrono::milliseconds limit);

private:
    struct Watches;
    std::unique_ptr<Watches> watches_;
    int wakeUp_;
};

} // namespace gps
