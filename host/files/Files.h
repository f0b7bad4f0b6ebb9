// SPDX-License-Identifier: MIT
// Creates folders, replaces whole files, and renames. After success the change is on the medium, so
// that it survives a power cut. Used for backups and saved state. Stateless. [any]
//
// Every function takes the system to work on, so that a test can make single calls fail.

#pragma once

#include <gps/Error.h>
#include <platform/System/FileSystem.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Creates a folder and the missing folders above it. A folder that exists already is not an error.
[[nodiscard]] std::optional<gps::Error>
makeFolders(const std::string& path, gps::FileSystem& files = gps::FileSystem::system());

/// Writes a whole file atomically: at any time, its name refers to the old content or the new one.
/// Creates the folder if it is missing.
/// @return  why the file could not be written; the old file is untouched then
[[nodiscard]] std::optional<gps::Error>
writeFile(const std::string& path, std::string_view bytes,
          gps::FileSystem& files = gps::FileSystem::system());

/// Whether a path leads to one of some files, by whatever name. False if it leads nowhere.
[[nodiscard]] bool isOneOfFiles(const std::string& path, const std::vector<std::string>& files);

/// Gives a file or folder another name in the same folder.
/// @param folder  the folder that contains it
/// @return        0, or the errno. If only the last step failed, which is to flush the folder, the
///                entry has its new name already
[[nodiscard]] int renameInFolder(gps::FileSystem& files, const std::string& folder,
                                 const std::string& from, const std::string& to);

} // namespace host
