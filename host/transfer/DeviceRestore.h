// SPDX-License-Identifier: MIT
// Puts a backup back onto a device, after a backup of what the device holds now. [host thread]

#pragma once

#include "host/backup/Backup.h"
#include "host/bundle/DeviceChoice.h"
#include "host/transfer/TransferProgress.h"

#include <optional>
#include <string>
#include <vector>

namespace host {

/// What to put back.
struct RestoreRequest {
    std::string backup;    ///< the path of the backup's folder
    BackupPolicy policy;   ///< for the backup of the present files
    bool isForced = false; ///< whether to restore the backup of another device
    ProgressCallback progress{};
};

/// What a restore did. All paths are relative to the device.
struct RestoreReport {
    /// What stopped the restore. The files in `restored` were written before.
    std::optional<gps::Error> error{};
    bool wasUpToDate = false; ///< the device held the backup's files, so nothing was written
    std::optional<Backup> previous{};          ///< the backup of the files before the restore
    std::vector<std::string> deletedBackups{}; ///< names of older ones beyond the number to keep
    std::vector<std::string> restored{};       ///< files that were written
    std::vector<std::string> extraFiles{};     ///< files that are not in the backup; they stay
};

/// The folders that a backup copies; nullopt if the driver's devices are not folders of files, or
/// if it has no device.
[[nodiscard]] std::optional<DataFolders> dataFoldersOf(const ChosenDevice& device);

/// Puts a backup back.
[[nodiscard]] RestoreReport restoreBackup(const DataFolders& device, const RestoreRequest& request);

} // namespace host
