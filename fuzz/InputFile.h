// SPDX-License-Identifier: MIT
// An input as the content of a file, for readers that take a path. One thread.

#pragma once

#include <platform/System/FileSystem.h>

#include <string>
#include <string_view>

namespace fuzz {

/// Writes the text to the process's one memory file, replacing the previous text.
/// @return  a path to read it from
std::string asFile(std::string_view text);

/// A file system in which every path leads to one file with the given text. Nothing is renamed.
class InputFileSystem final : public gps::FileSystem {
public:
    explicit InputFileSystem(std::string_view text) : path_(asFile(text)) {}

    int open(const char* /*path*/, int flags, mode_t mode) override
    {
        return FileSystem::open(path_.c_str(), flags, mode);
    }
    int stat(const char* /*path*/, struct stat* out) override
    {
        return FileSystem::stat(path_.c_str(), out);
    }
    int rename(const char* /*from*/, const char* /*to*/) override { return 0; }

private:
    std::string path_;
};

} // namespace fuzz
