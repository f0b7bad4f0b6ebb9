// SPDX-License-Identifier: MIT
// Restore: puts a backup back onto a device. Used by the `restore` command. [host thread]

#pragma once

#include "host/backup/Manifest.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What a restore did with the files of a backup. All paths are relative to the device.
struct WrittenFiles {
    std::vector<std::string> written{};
    std::vector<std::string> asBefore{}; ///< those that were not reached, because it ended early
};

/// A backup that was checked: every file exists and is undamaged.
class Restore {
public:
    explicit Restore(gps::FileSystem& files = gps::FileSystem::system()) : files_(files) {}

    /// Reads and checks the whole backup. The other operations require that this succeeded.
    /// @return  why it cannot be restored, with the path of the damaged file
    [[nodiscard]] std::optional<gps::Error> open(const std::string& backup);

    /// Whether the backup is of a device with this identifier. Devices without one are told apart
    /// by their files: one file that both have is enough.
    /// @param device  the folder where the device is mounted
    [[nodiscard]] bool isOf(const std::string& identifier, const std::string& device) const;

    /// The folders of the backup, as absolute paths.
    /// @param device  the folder where the device is mounted now
    [[nodiscard]] std::vector<std::string> folders(const std::string& device) const;

    /// The paths of the backup's files that the device does not hold unchanged, relative to it:
    /// what write() would write.
    [[nodiscard]] std::vector<std::string> changedFiles(const std::string& device) const;

    /// How many bytes some of the backup's files have.
    [[nodiscard]] std::uint64_t bytesOf(const std::vector<std::string>& paths) const;

    /// Checks that no folder of the backup leads out of the device, through links that are on the
    /// device now. The operations below require that.
    [[nodiscard]] std::optional<gps::Error> checkFolders(const std::string& device) const;

    /// Writes each file that the device does not hold unchanged. Stops at the first one that cannot
    /// be written; every file is old or new then, never half of each.
    /// @param device         the folder where the device is mounted now
    /// @param result         out: which files were written
    /// @param stopRequested  asked before each file; true ends the restore without an error
    [[nodiscard]] std::optional<gps::Error>
    write(const std::string& device, WrittenFiles& result,
          const std::function<bool()>& stopRequested = {}) const;

    /// The paths of the backup's files, relative to the device.
    [[nodiscard]] std::vector<std::string> files() const;

    /// The files in the device's data folders that are not in the backup, apart from unfinished
    /// ones. Their paths are relative to `device`.
    [[nodiscard]] std::vector<std::string> extraFiles(const std::string& device) const;

private:
    [[nodiscard]] std::string pathOf(const BackedUpFile& file) const;
    [[nodiscard]] bool matches(const std::string& device, const BackedUpFile& file) const;
    [[nodiscard]] std::optional<gps::Error> write(const std::string& device,
                                                  const BackedUpFile& file) const;

    gps::FileSystem& files_;
    std::string backup_;
    Manifest manifest_;
};

} // namespace host
