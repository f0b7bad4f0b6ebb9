// SPDX-License-Identifier: MIT
// DataFolders: what a backup copies. A plain value. [host thread]

#pragma once

#include <gps/Error.h>
#include <gps/GPSFileDevice.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// The folders of a device, and what is known about them.
struct DataFolders {
    std::string device;               ///< the folder where the device is mounted
    std::string identifier;           ///< the device's own; may be empty
    std::vector<std::string> folders; ///< absolute paths, inside the device's folder

    /// Files that were read before and are not opened again; null if there are none.
    const std::vector<gps::DeviceFile>* known = nullptr;

    /// Why the identifier or the folders may be wrong; no backup is made then.
    std::optional<gps::Error> failure{};

    /// Asked before each file. Once it returns true, no backup is made. May be empty.
    std::function<bool()> stopRequested{};
};

} // namespace host
