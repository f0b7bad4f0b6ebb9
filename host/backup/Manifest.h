// SPDX-License-Identifier: MIT
// Manifest: what a backup holds, as a JSON file beside its files. Stateless: [any] thread.

#pragma once

#include <gps/Error.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One file of a backup.
struct BackedUpFile {
    std::string path; ///< from the device's place
    std::uint64_t size = 0;
    std::string hash; ///< as `hashOf` gives it
};

struct Manifest {
    std::string device;               ///< where the device was
    std::vector<std::string> folders; ///< from the device's place
    std::vector<BackedUpFile> files{};
};

inline constexpr char kManifestName[] = "manifest.json";
inline constexpr char kFilesName[] = "files"; ///< the folder with the files

[[nodiscard]] std::string manifestText(const Manifest& manifest);

/// Reads a backup's manifest. Paths that would lead outside the device make it none.
/// @param folder    the backup's
/// @param manifest  out: untouched after a failure
[[nodiscard]] std::optional<gps::Error> readManifest(const std::string& folder, Manifest& manifest);

} // namespace host
