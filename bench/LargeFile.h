// SPDX-License-Identifier: MIT
// Large files of sentences to measure with: in memory where the system has a file system there, and
// gone afterwards.

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace bench {

enum class Kind { kTrack, kWaypoints, kGeocaches };

/// A file of that many sentences. Each line differs from the others, and each waypoint and geocache
/// has a name of its own.
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
