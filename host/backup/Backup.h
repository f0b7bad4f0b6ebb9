// SPDX-License-Identifier: MIT
// Backups: copies of a device's data folders, made before a send and put back on wish. [host
// thread]
//
// A backup is a folder FOLDER/IDENTIFIER/YYYYMMDDTHHMMSSZ, in UTC, with "-1" and so on behind
// further ones of one second. It holds a manifest and, under "files", the data folders at their
// places on the device.

#pragma once

#include <gps/Error.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// Where backups are kept, and how many.
struct Keeping {
    static constexpr std::size_t kUsually = 10;

    std::string folder;          ///< all of them; made where it is missing
    std::size_t most = kUsually; ///< of a device, at least one; older ones go when a new one stands
    std::string spared{};        ///< the path of one that does not go; may be empty
};

/// What is copied.
struct DataFolders {
    std::string device;               ///< where the device is
    std::string identifier;           ///< its own; may be empty
    std::vector<std::string> folders; ///< whole paths, below the device
};

/// One backup.
struct Backup {
    std::string path;
    std::string name; ///< its time, as its folder is called
    std::size_t files = 0;
    std::uint64_t bytes = 0;
};

/// Where a user's backups are kept: below $XDG_STATE_HOME, or else ~/.local/state; none without a
/// home.
[[nodiscard]] std::optional<std::string> usualBackupFolder();

/// Copies the data folders and reads every copy back. The backup gets its name when it is whole and
/// on the medium; then the oldest ones beyond the kept number go.
/// @param made     out: the new backup
/// @param skipped  gets what is neither a file nor a folder, and so is not in it
/// @return         why there is no new backup; nothing older has changed then
[[nodiscard]] std::optional<gps::Error> makeBackup(const Keeping& keeping,
                                                   const DataFolders& source, Backup& made,
                                                   std::vector<std::string>& skipped);

/// A device's whole backups, the newest first.
[[nodiscard]] std::vector<Backup> listBackups(const std::string& folder,
                                              const std::string& identifier);

} // namespace host
