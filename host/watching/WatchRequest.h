// SPDX-License-Identifier: MIT
// WatchRequest: everything that a front end decides before it starts to watch for receivers. A
// plain value; what it points to must outlive the watching. [host thread]

#pragma once

#include "host/desktop/DiskService.h"
#include "host/formats/Formats.h"
#include "host/transfer/DownloadRequest.h"

#include <functional>
#include <optional>
#include <string>

namespace host {

struct WatchRequest {
    std::optional<std::string> driver{}; ///< watch only the devices of the driver with this name
    bool isSerialIncluded = false;       ///< without `driver`: ask on serial ports, too

    std::string folder{};           ///< where the files go; it is created if it is missing
    const Format* format = nullptr; ///< of the files; required

    /// Where to keep the list of each device's saved records, so that only new ones are saved.
    /// nullopt: every record is saved each time.
    std::optional<std::string> knownRecordsFolder{};

    /// Mounts the disks that appear; null: only what is mounted by somebody else is watched.
    DiskService* disks = nullptr;

    /// Whether to stop, asked now and then, on the thread of the looks and on those of operations.
    /// May be empty.
    std::function<bool()> stopRequested{};

    /// What all downloads share. The device and the output are set for each.
    DownloadRequest download{};
};

} // namespace host
