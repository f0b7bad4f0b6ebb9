// SPDX-License-Identifier: MIT
// DeviceMonitor: waits until volumes or serial ports come or go. [host thread]

#pragma once

#include <chrono>
#include <memory>

namespace gps {

/// What may have changed since the last wait.
struct DeviceChanges {
    bool volumes = false;
    bool serialPorts = false;
    bool interrupted =
        false; ///< a signal was handled meanwhile, or the wake-up file has something to read
};

class DeviceMonitor {
public:
    /// @param wakeUp  an open file, not owned: a wait ends as soon as something can be read from
    /// it; -1: none
    explicit DeviceMonitor(int wakeUp = -1);
    ~DeviceMonitor();
    DeviceMonitor(const DeviceMonitor&) = delete;
    DeviceMonitor& operator=(const DeviceMonitor&) = delete;

    /// Waits for the next change, at most as long as given (negative: for ever), and gathers what
    /// comes close together.
    [[nodiscard]] DeviceChanges wait(std::chrono::milliseconds limit);

private:
    struct Watches;
    std::unique_ptr<Watches> watches_;
    int wakeUp_;
};

} // namespace gps
