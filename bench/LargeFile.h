// SPDX-License-Identifier: MIT
// Large sentence files for benchmarks: in memory if the system has a file system there, and removed
// afterwards.

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace bench {

enum class Kind { kTrack, kWaypoints, kGeocaches };

/// A file of a number of sentences. No two lines are equal, and all waypoints and geocaches have
/// different names.
class LargeFile {
public:
    LargeFile(Kind kind, std::size_t sentences);
    ~LargeFile();
    LargeFile(const LargeFile&) = delete;
    LargeFile& operator=(const LargeFile&) = delete;

    [[nodiscard]] std::string path() const { return (folder_ / name_).string(); }
    [[nodiscard]] std::filesystem::path folder() const { return folder_; }
    [[nodiscard]] std::size_t bytes() const { return bytes_; }

private:
    std::filesystem::path folder_;
    std::string name_;
    std::size_t bytes_ = 0;
};

} // namespace bench
