// SPDX-License-Identifier: MIT
// DiskService: what the system's disk service does for this program. Tests use one of their own.
// [host thread]

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>

namespace host {

class DiskService {
public:
    virtual ~DiskService() = default;

    /// Why no disk can be mounted or unmounted at all; nullopt if nothing is known against it.
    [[nodiscard]] virtual std::optional<gps::Error> whyUnavailable() = 0;

    /// Mounts a disk.
    /// @param node    a disk with a file system, or a partition
    /// @param folder  out: where it is mounted; unchanged after a failure
    [[nodiscard]] virtual std::optional<gps::Error> mount(const std::string& node,
                                                          std::string& folder) = 0;

    /// Writes out what is still to be written, and unmounts a disk.
    [[nodiscard]] virtual std::optional<gps::Error> unmount(const std::string& node) = 0;

    /// Switches the device off that an unmounted disk belongs to. One that cannot be switched off,
    /// such as a card reader, ejects its medium, if it can.
    /// @param isOff  out: whether the device is off now; unchanged after a failure
    [[nodiscard]] virtual std::optional<gps::Error> powerOff(const std::string& node,
                                                             bool& isOff) = 0;
};

} // namespace host
