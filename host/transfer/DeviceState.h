// SPDX-License-Identifier: MIT
// DeviceState: recognises whether a device's files have changed since they were read. A send looks
// before it reads the device for its plan, and again before it writes. A value. [any]

#pragma once

#include <platform/System/FileSystem.h>

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace host {

/// What shows a change without opening a file: which files there are, and the size and the times of
/// each. Unfinished files that a write has left behind do not count.
class DeviceState {
public:
    /// Looks at the device. What cannot be looked at counts as missing.
    /// @param location  the folder where the device is mounted
    /// @param folders   absolute paths of those that hold its data
    [[nodiscard]] static DeviceState of(const std::string& location,
                                        const std::vector<std::string>& folders,
                                        gps::FileSystem& files = gps::FileSystem::system());

    /// Whether the same volume was mounted at both looks.
    [[nodiscard]] bool isOfSameVolume(const DeviceState& other) const noexcept
    {
        return volume_ == other.volume_ && root_ == other.root_;
    }

    /// Whether nothing has changed between two looks.
    [[nodiscard]] bool operator==(const DeviceState& other) const noexcept = default;

private:
    struct File {
        std::string path;
        off_t size;
        std::int64_t modified; // nanoseconds since 1970
        std::int64_t changed;  // likewise; also of a file that was renamed to this path

        bool operator==(const File& other) const noexcept = default;
    };

    void addFolder(const std::string& folder, gps::FileSystem& files);

    dev_t volume_ = 0;
    ino_t root_ = 0;
    std::vector<std::string> folders_;
    std::vector<File> files_; // in the order of the walk, which is that of their names
};

} // namespace host
