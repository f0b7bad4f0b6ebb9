// SPDX-License-Identifier: MIT
// BackupComparison: what restoring a backup would change on a device. [host thread]

#pragma once

#include "host/backup/DataFolders.h"
#include "host/transfer/RecordCounts.h"

#include <gps/Error.h>
#include <gps/GPSFileDevice.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// A file that a restore would write. Its path is relative to the device.
struct RestoredFile {
    std::string path;
    bool isOnDevice = false; ///< otherwise it is missing there now
    RecordCounts now{};      ///< its records on the device
    RecordCounts then{};     ///< its records in the backup
};

struct BackupComparison {
    /// Why the backup cannot be restored to this device. The rest is empty then.
    std::optional<gps::Error> error{};

    std::vector<RestoredFile> files{};     ///< in the backup's order
    std::size_t unchangedFiles = 0;        ///< of the backup, which the device holds as they are
    std::vector<std::string> extraFiles{}; ///< that are not in the backup; they would stay
};

/// Compares a backup with a device, and changes neither.
/// @param backup   the path of the backup's folder
/// @param decoder  counts the records in files
[[nodiscard]] BackupComparison compareBackup(const DataFolders& device, const std::string& backup,
                                             const gps::GPSFileDevice& decoder);

} // namespace host
