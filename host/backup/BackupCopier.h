// SPDX-License-Identifier: MIT
// BackupCopier: copies a device's data folders into the folder of one backup. Used by Backup, which
// makes a backup of the copies. [host thread]

#pragma once

#include "host/backup/DataFolders.h"
#include "host/backup/Manifest.h"

#include <gps/Error.h>
#include <gps/GPSFileDevice.h>
#include <platform/System/FileSystem.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {
struct FolderEntry;
}

namespace host {

class BackupCopier {
public:
    /// @param source   must outlive this object, like the next two references
    /// @param folder   the backup's folder; created if missing
    /// @param skipped  the paths of entries that are neither files nor folders are added
    BackupCopier(const DataFolders& source, std::string folder, std::vector<std::string>& skipped,
                 gps::FileSystem& files);

    /// Copies every file and compares the copy with its original.
    /// @param manifest  out: what was copied; untouched after a failure. Its sequence is 0
    [[nodiscard]] std::optional<gps::Error> copyAll(Manifest& manifest);

private:
    [[nodiscard]] std::optional<gps::Error> copyFolder(const std::string& folder);
    [[nodiscard]] std::optional<gps::Error> copyEntry(const gps::FolderEntry& entry,
                                                      const std::string& folder,
                                                      const std::string& relative);
    [[nodiscard]] std::optional<gps::Error> copyFile(const std::string& from, const std::string& to,
                                                     BackedUpFile& file);
    [[nodiscard]] std::optional<gps::Error> read(const std::string& path,
                                                 gps::SharedText& content) const;
    [[nodiscard]] bool isLink(const std::string& path) const;
    [[nodiscard]] std::string target(const std::string& relative) const;

    const DataFolders& source_;
    std::string folder_;
    std::vector<std::string>& skipped_;
    gps::FileSystem& files_;
    std::map<std::string_view, const gps::DeviceFile*> known_; // by path
    Manifest manifest_{};
};

} // namespace host
