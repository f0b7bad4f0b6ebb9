// SPDX-License-Identifier: MIT
// RestoreText: backups and restores in words, for both front ends. Stateless. [any]

#pragma once

#include "host/transfer/BackupComparison.h"
#include "host/transfer/DeviceRestore.h"
#include "host/words/Message.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The time of a backup: "2026-11-23 05:01:55 UTC", or by this computer's clock, "2026-11-23
/// 06:01:55 UTC+01:00".
/// @param name  of the backup; anything else is returned as it is
[[nodiscard]] std::string backupTimeText(std::string_view name, bool isUtc);

/// "3 files, 12.5 kB"
[[nodiscard]] std::string backupSizeText(const Backup& backup);

/// Why a damaged backup is of no use, and what to do.
[[nodiscard]] std::string damagedBackupText(const DamagedBackup& backup);

/// What restoring a backup would change: one sentence about all files, and one for each of the
/// first of them.
[[nodiscard]] std::vector<std::string> comparisonLines(const BackupComparison& comparison);

/// What a restore did: a line for each backup and each file.
[[nodiscard]] std::vector<std::string> restoreLines(const RestoreReport& report);

/// Why a restore did not do everything.
[[nodiscard]] std::vector<Message> restoreMessages(const RestoreReport& report);

} // namespace host
