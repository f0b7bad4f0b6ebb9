// SPDX-License-Identifier: MIT
// Puts a backup back onto a device, after a backup of what the device holds now. [host thread]

#pragma once

#include "host/backup/Backup.h"
#include "host/backup/Restore.h"
#include "host/bundle/DeviceChoice.h"
#include "host/transfer/TransferProgress.h"

#include <functional>
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

    /// Called once before anything is written, the new backup included. May be empty.
    std::function<void()> beforeWriting{};

    /// Asked before each file, once anything may be written. True stops the restore. May be empty.
    std::function<bool()> stopRequested{};
};

/// What a restore did. All paths are relative to the device.
struct RestoreReport {
    /// What ended the restore. The files in `restored` were written before.
    std::optional<gps::Error> error{};
    bool wasStopped = false;  ///< the user stopped it; `asBefore` has the files that are missing
    bool wasUpToDate = false; ///< the device held the backup's files, so nothing was written
    std::optional<Backup> previous{};          ///< the backup of the files before the restore
    std::vector<std::string> deletedBackups{}; ///< names of older ones beyond the number to keep
    std::vector<std::string> restored{};       ///< files that were written
    std::vector<std::string> asBefore{};       ///< files that it did not reach, because it ended
                                               ///< early; they are as they were
    std::vector<std::string> extraFiles{};     ///< files that are not in the backup; they stay

    /// Whether the device holds every file of the backup.
    [[nodiscard]] bool isComplete() const noexcept { return !error && !wasStopped; }
};

/// The folders that a backup copies; nullopt if the driver's devices are not folders of files, or
/// if it has no device.
[[nodiscard]] std::optional<DataFolders> dataFoldersOf(const ChosenDevice& device);

/// Opens and checks a backup that is to be put back.
/// @param isForced  whether it may be of another device
/// @param restore   out: the opened backup
/// @return          why it cannot be restored
[[nodiscard]] std::optional<gps::Error>
checkRestore(const DataFolders& device, const std::string& backup, bool isForced, Restore& restore);

/// Puts a backup back.
[[nodiscard]] RestoreReport restoreBackup(const DataFolders& device, const RestoreRequest& request);

} // namespace host
