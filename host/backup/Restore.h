// SPDX-License-Identifier: MIT
// Puts a backup back onto a device. [host thread]

#pragma once

#include "host/backup/Manifest.h"

#include <optional>
#include <string>
#include <vector>

namespace host {

/// A backup that was looked through: every file is there and undamaged.
class Restore {
public:
    /// Reads the whole backup. @return  it is none, or damaged, with the file
    [[nodiscard]] std::optional<gps::Error> open(const std::string& backup);

    /// Whether each file is on the device as the backup has it.
    [[nodiscard]] bool isOn(const std::string& device) const;

    /// Writes each file, atomically, where it does not hold the same already, and stops at the
    /// first one that cannot be written.
    /// @param device   where the device is now
    /// @param written  gets the paths, from the device's place, of the files written
    [[nodiscard]] std::optional<gps::Error> write(const std::string& device,
                                                  std::vector<std::string>& written) const;

    /// The files that lie in the backup's folders on the device but are not in the backup, by their
    /// paths from the device's place.
    [[nodiscard]] std::vector<std::string> strangers(const std::string& device) const;

private:
    [[nodiscard]] std::string pathOf(const BackedUpFile& file) const;
    static bool isOn(const std::string& device, const BackedUpFile& file);

    std::string backup_;
    Manifest manifest_;
};

} // namespace host
