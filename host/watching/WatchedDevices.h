// SPDX-License-Identifier: MIT
// WatchedDevices: which devices are connected, and which of them still have to be downloaded from.
// A device is due once while it stays connected; after a failure it is due again, a few times. One
// thread at a time.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// A device as a driver lists it.
struct WatchedDevice {
    std::string driver{}; ///< the driver's name as driverName() gives it
    std::string location{};
    std::string name{};
    bool isReadable = true;

    /// Another name at the same location is another device.
    friend bool operator==(const WatchedDevice& a, const WatchedDevice& b)
    {
        return a.driver == b.driver && a.location == b.location && a.name == b.name;
    }
};

class WatchedDevices {
public:
    struct Changes {
        std::vector<WatchedDevice> appeared{};
        std::vector<WatchedDevice> gone{};
    };

    /// Takes over the devices that are connected now and returns what changed since the last call.
    /// A device that is listed twice counts once: a folder can be named twice.
    Changes update(const std::vector<WatchedDevice>& connected);

    /// The devices to download from: readable ones that are not done.
    [[nodiscard]] std::vector<WatchedDevice> due() const;

    /// Whether a failure of the next try would be final.
    /// @param mostTries  how many tries a device gets
    /// Precondition: the device is connected.
    [[nodiscard]] bool isLastTry(const WatchedDevice& device, std::size_t mostTries) const;

    /// The device is not due again until it has been disconnected.
    /// Precondition: the device is connected.
    void markDone(const WatchedDevice& device);

    /// Counts a try that failed. Returns whether the device is due again.
    /// Precondition: the device is connected.
    [[nodiscard]] bool markFailed(const WatchedDevice& device, std::size_t mostTries);

private:
    struct Entry {
        WatchedDevice device;
        std::size_t failures = 0;
        bool isDone = false;
    };

    [[nodiscard]] std::vector<Entry>::const_iterator find(const WatchedDevice& device) const;
    [[nodiscard]] Entry& entryOf(const WatchedDevice& device);

    std::vector<Entry> entries_;
};

} // namespace host
