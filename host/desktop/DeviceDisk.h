// SPDX-License-Identifier: MIT
// DeviceDisk: chooses the device of a command, mounts its disk first if the user asked for that,
// and unmounts or ejects it after the transfer. [host thread]

#pragma once

#include "host/bundle/DeviceChoice.h"
#include "host/desktop/DiskService.h"
#include "host/desktop/MountedDisks.h"

#include <gps/Error.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// What the user wants done with the device's disk.
struct DiskOptions {
    bool mount = false;          ///< mount it if it is not mounted, and unmount it afterwards
    bool eject = false;          ///< unmount it after a transfer, and switch the device off
    bool isEjectDefault = false; ///< only if the device is a disk: nobody has typed it
};

class DeviceDisk {
public:
    /// How the disk was left.
    struct Release {
        std::optional<gps::Error> error{};
        std::string note{}; ///< what the user should know; may be empty
    };

    /// @param service  must outlive this object
    DeviceDisk(DiskOptions options, DiskService& service)
        : options_(options), service_(service), mounted_(service)
    {}

    /// chooseDevice(), after mounting what it needs. Without a request, and if no receiver is
    /// mounted, each unmounted disk is mounted until a driver finds a receiver on it; the others
    /// are unmounted at once.
    /// @param chosen  out: unchanged after a failure
    [[nodiscard]] std::optional<gps::Error> choose(const std::vector<Driver>& drivers,
                                                   DeviceRequest request, ChosenDevice& chosen);

    /// Whether this object has mounted the device's disk.
    [[nodiscard]] bool hasMounted() const noexcept { return !mounted_.all().empty(); }

    /// Unmounts or ejects the disk, as the options say. A device whose transfer failed is not
    /// ejected: the user will try again.
    [[nodiscard]] Release release(bool succeeded);

private:
    [[nodiscard]] gps::Error withDiskService(const gps::Error& failure);
    [[nodiscard]] std::optional<gps::Error> mountFor(const std::vector<Driver>& drivers,
                                                     DeviceRequest& request);
    [[nodiscard]] std::optional<gps::Error> findReceiver(const std::vector<Driver>& drivers);
    [[nodiscard]] Release unmount();
    [[nodiscard]] Release eject();

    DiskOptions options_;
    DiskService& service_;
    MountedDisks mounted_;  // one at most after choose()
    std::string folder_{};  // of the device that is to be ejected
    std::string ejected_{}; // the node of its disk
};

} // namespace host
