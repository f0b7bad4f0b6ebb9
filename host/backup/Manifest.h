// SPDX-License-Identifier: MIT
// Manifest: the list of a backup's files, stored beside them as JSON. Used by Backup and Restore.
// Stateless. [any]

#pragma once

#include <gps/Error.h>
#include <platform/System/FileSystem.h>

#include <cstddef>
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

    friend bool operator==(const BackedUpFile& a, const BackedUpFile& b) noexcept = default;
};

struct Manifest {
    std::string device;               ///< the folder where the device was mounted
    std::vector<std::string> folders; ///< relative to the device's folder
    std::vector<BackedUpFile> files{};

    /// Grows with each backup of a device, so that their order does not depend on a clock. 0: made
    /// by a version that did not count them.
    std::uint64_t sequence = 0;

    /// The sequence with which the backup was first made: an equal state later gives it a new one.
    /// 0: the same as `sequence`.
    std::uint64_t firstSequence = 0;

    /// The day on which the device last had this state, as YYYYMMDD in UTC; empty if not known.
    std::string day{};

    /// The device's own identifier; nullopt if it has none, or in older versions.
    std::optional<std::string> identifier{};
};

inline constexpr std::uint64_t kLargestSequence = std::uint64_t{1} << 53;

inline constexpr char kManifestName[] = "manifest.json";
inline constexpr char kFilesName[] = "files"; ///< the folder that contains the files

/// Larger manifests are neither written nor read; in bytes. Enough for about 80,000 files.
inline constexpr std::size_t kLargestManifest = std::size_t{8} << 20;

/// The manifest file's content.
[[nodiscard]] std::string manifestText(const Manifest& manifest);

/// The error for a device of which no backup can be made, whatever is tried.
[[nodiscard]] gps::Error noBackupPossible(std::string why, const std::string& path);

/// Writes a backup's manifest.
/// @param folder  the backup's folder
/// @return        why it cannot be written, or that it would be too large
[[nodiscard]] std::optional<gps::Error>
writeManifest(const std::string& folder, const Manifest& manifest,
              gps::FileSystem& files = gps::FileSystem::system());

/// Whether an error of readManifest() means that the backup may be complete: its manifest could not
/// be read, but perhaps it can be later.
[[nodiscard]] bool mayBeReadLater(const gps::Error& failure);

/// Reads a backup's manifest. It is rejected unless every member has its type and form: paths of at
/// most 4095 bytes that stay inside the device's folder and hold no NUL byte, sizes that a
/// backed-up file can have, and hashes by hashOf. Unfinished files, which older versions backed up,
/// are left out.
/// @param folder    the backup's folder
/// @param manifest  out: untouched after a failure
[[nodiscard]] std::optional<gps::Error>
readManifest(const std::string& folder, Manifest& manifest,
             gps::FileSystem& files = gps::FileSystem::system());

} // namespace host
