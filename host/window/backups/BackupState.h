// SPDX-License-Identifier: MIT
// BackupState: the backups as the widgets see them, read on the device thread. Plain values: each
// thread may hold its own. [any]

#pragma once

#include "host/backup/Backup.h"

#include <optional>
#include <string>
#include <vector>

namespace host {

/// The backups of one device.
struct DeviceBackups {
    std::string identifier;               ///< the device's own, or else the name of its folder
    std::string location{};               ///< of the device; empty if it is not selected
    std::vector<Backup> complete{};       ///< the newest first
    std::vector<DamagedBackup> damaged{}; ///< by name
};

struct BackupState {
    std::string folder{};                 ///< that holds the backups; empty if there is none
    std::vector<DeviceBackups> devices{}; ///< the selected one first, even if it has no backups
};

/// Lists the backups. Those of other devices are ordered by the names of their folders.
/// @param selected  the device that is selected, without its backups; nullopt: none
[[nodiscard]] BackupState backupsIn(const std::string& folder,
                                    std::optional<DeviceBackups> selected);

} // namespace host
