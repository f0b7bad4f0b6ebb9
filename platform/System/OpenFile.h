// SPDX-License-Identifier: MIT
// OpenFile: an open file that is closed at the end of its scope. Private to this room. [any]

#pragma once

#include "FileSystem.h"

#include <utility>

namespace gps {

class OpenFile {
public:
    /// @param file  what an open answered; negative: none
    OpenFile(FileSystem& files, int file) noexcept : files_(files), file_(file) {}
    ~OpenFile() { (void)close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] explicit operator bool() const noexcept { return file_ >= 0; }
    [[nodiscard]] int get() const noexcept { return file_; }

    /// Closes it now. @return  what the system answered; 0 if it is closed already
    int close() { return file_ >= 0 ? files_.close(std::exchange(file_, -1)) : 0; }

private:
    FileSystem& files_;
    int file_;
};

} // namespace gps
