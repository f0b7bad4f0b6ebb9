// SPDX-License-Identifier: MIT
// OperationMonitor: what an operation shares with its host while it runs and afterwards: the host's
// request to stop, what has answered on a serial line, and the account of the operation. A driver
// owns one. [any], unless stated otherwise.

#pragma once

#include <gps/GPSDeviceDescription.h>
#include <gps/GPSTransferAccount.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>

namespace magellan {

class OperationMonitor {
public:
    /// Forgets the last operation. Call it before each one starts. [host thread]
    void begin();

    /// Only stores a flag, so that a signal handler can call it.
    void requestStop() noexcept { stop_.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool stopRequested() const noexcept
    {
        return stop_.load(std::memory_order_relaxed);
    }

    /// Records what has answered. Something better known replaces it, never the reverse. [worker]
    void hear(gps::LineVoice voice) noexcept;
    [[nodiscard]] gps::LineVoice voice() const noexcept
    {
        return voice_.load(std::memory_order_relaxed);
    }

    /// Records what could not be seen before the operation's worker runs. [host thread]
    void addUnseen(gps::UnseenPath unseen);

    /// Records what the device at a location has said about itself. [worker]
    void describe(const std::string& location, gps::DeviceDescription description);
    [[nodiscard]] gps::DeviceDescription descriptionOf(const std::string& location) const;

    void publish(gps::TransferAccount account) noexcept;
    [[nodiscard]] gps::TransferAccount account() const;

private:
    static_assert(std::atomic<bool>::is_always_lock_free, "signal handlers store the flag");

    std::atomic<bool> stop_ = false;
    std::atomic<gps::LineVoice> voice_ = gps::LineVoice::kNothing;
    mutable std::mutex mutex_;
    gps::TransferAccount account_;                               // guarded by mutex_
    std::map<std::string, gps::DeviceDescription> descriptions_; // by location; guarded by mutex_
};

} // namespace magellan
