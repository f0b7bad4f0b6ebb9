// SPDX-License-Identifier: MIT
// Presence: which devices are there, and which of them are still to be acquired from. A device is
// done once while it stays; one that fails is tried again, a few times. One thread at a time.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// A device as a driver lists it.
struct PresentDevice {
    std::string driver; ///< its name, as the command line has it
    std::string location;
    std::string name;
    bool isReadable = true;

    /// Another name at the same place is another device.
    friend bool operator==(const PresentDevice& a, const PresentDevice& b)
    {
        return a.driver == b.driver && a.location == b.location && a.name == b.name;
    }
};

class Presence {
public:
    struct Changes {
        std::vector<PresentDevice> appeared{};
        std::vector<PresentDevice> gone{};
    };

    /// Takes what is there now; a device that is listed twice, as a folder named twice is, counts
    /// once. @return  what has changed since the last time
    Changes update(const std::vector<PresentDevice>& present);

    /// The devices to acquire from: readable ones that are not done.
    [[nodiscard]] std::vector<PresentDevice> due() const;

    /// Nothing more is to be done with a device until it has been away. Precondition: it is there.
    void done(const PresentDevice& device);

    /// An acquire has failed. Precondition: the device is there.
    /// @param mostTries  how often it is tried at all
    /// @return           whether it is due again
    [[nodiscard]] bool failed(const PresentDevice& device, std::size_t mostTries);

private:
    struct Entry {
        PresentDevice device;
        std::size_t tries = 0;
        bool isDone = false;
    };

    [[nodiscard]] Entry* find(const PresentDevice& device);

    std::vector<Entry> entries_;
};

} // namespace host
