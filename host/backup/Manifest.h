// SPDX-License-Identifier: MIT
// Manifest: the list of a backup's files, stored beside them as JSON. Used by Backup and Restore.
// Stateless. [any]

#pragma once

#include <gps/Error.h>
#include <platform/System/FileSystem.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct BackedUpFile {
    std::string path; ///< relative to the device's folder
    std::uint64_t size = 0;
    std::string hash; ///< by hashOf
};

struct Manifest {
    std::string device;               ///< the folder where the device was mounted
    std::vector<std::string> folders; ///< relative to the device's folder
    std::vector<BackedUpFile> files{};
};

inline constexpr char kManifestName[] = "manifest.json";
inline constexpr char kFilesName[] = "files"; ///< the folder that contains the files

/// The manifest file's content.
[[nodiscard]] std::string manifestText(const Manifest& manifest);

/// Reads a backup's manifest. One with a path that leads out of the device's folder is rejected,
/// because a restore would write there. Unfinished files, which older versions backed up, are left
/// out.
/// @param folder    the backup's folder
/// @param manifest  out: untouched after a failure
[[nodiscard]] std::optional<gps::Error>
readManifest(const std::string& folder, Manifest& manifest,
             gps::FileSystem& files = gps::FileSystem::system());

} // namespace host
