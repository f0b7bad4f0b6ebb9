// SPDX-License-Identifier: MIT
// Backups: copies of a device's data folders. `send` makes one before it writes, and `restore`
// lists them and puts one back. [host thread]
//
// A backup is the folder FOLDER/IDENTIFIER/YYYYMMDDTHHMMSSZ, in UTC; further backups within the
// same second end in "-1" and so on. It holds a manifest and the folder "files", in which every
// file has the path that it has on the device.

#pragma once

#include "host/backup/DataFolders.h"

#include <gps/Error.h>
#include <gps/GPSFileDevice.h>
#include <platform/System/FileSystem.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// Where backups are kept, and how many. The oldest beyond `count` are deleted, but never the first
/// of the device, the first of the present day, or the one just made.
struct BackupPolicy {
    static constexpr std::size_t kDefaultCount = 10;

    std::string folder;                ///< of the backups of all devices; created if missing
    std::size_t count = kDefaultCount; ///< of each device
    std::string protectedPath{};       ///< a backup that is never deleted; may be empty
};

struct Backup {
    std::string path;
    std::string name; ///< of its folder, which is its time
    std::size_t files = 0;
    std::uint64_t bytes = 0;
    std::uint64_t sequence = 0;      ///< the manifest's
    std::uint64_t firstSequence = 0; ///< the manifest's, or else `sequence`
    std::string day{};               ///< the manifest's, or else that of the name
};

/// What makeBackup() did.
struct MadeBackup {
    Backup backup;
    bool isNew = true;                  ///< false: an older backup holds the same and now counts as
                                        ///< the newest
    std::vector<std::string> skipped{}; ///< paths of entries that are neither files nor folders,
                                        ///< and so were not copied
    std::vector<std::string> deleted{}; ///< the names of the older backups that were deleted
};

/// Where backups are kept by default, in the user's state folder.
/// @return  nullopt if the user has no home folder
[[nodiscard]] std::optional<std::string> defaultBackupFolder();

/// Copies the data folders and compares every copy with its original. Unfinished files that an
/// interrupted write left behind are not copied. The backup gets its name after everything is on
/// the medium. If an older backup holds the same, that one is kept instead. Then the oldest backups
/// beyond the policy's count are deleted. Which are the oldest does not depend on the clock.
/// Of a device without an identifier, only backups that have a file in common with the new one are
/// deleted: others may be those of another device.
/// @param made     out: the backup; unspecified after a failure
/// @return         why there is no new backup, or why it may not survive a power cut. Older backups
///                 are untouched then
[[nodiscard]] std::optional<gps::Error>
makeBackup(const BackupPolicy& policy, const DataFolders& source, MadeBackup& made,
           gps::FileSystem& files = gps::FileSystem::system());

/// A device's complete backups, the newest first.
[[nodiscard]] std::vector<Backup> listBackups(const std::string& folder,
                                              const std::string& identifier,
                                              gps::FileSystem& files = gps::FileSystem::system());

/// The names of the folders that may hold the backups of a device, in no particular order.
/// The other functions accept each of them in place of the device's identifier.
[[nodiscard]] std::vector<std::string>
listBackedUpDevices(const std::string& folder, gps::FileSystem& files = gps::FileSystem::system());

/// A folder with a backup's name whose list of files is missing or damaged, or cannot be read now.
struct DamagedBackup {
    std::string path;
    std::string name;
};

/// A device's damaged backups, by name. They are never deleted.
[[nodiscard]] std::vector<DamagedBackup>
listDamagedBackups(const std::string& folder, const std::string& identifier,
                   gps::FileSystem& files = gps::FileSystem::system());

} // namespace host
