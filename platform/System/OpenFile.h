// SPDX-License-Identifier: MIT
// OpenFile: owns a file descriptor and closes it at the end of its scope. [any]

#pragma once

#include "FileSystem.h"

#include <utility>

namespace gps {

class OpenFile {
public:
    /// Takes over a descriptor. @param file  the result of an open; negative if it failed
    OpenFile(FileSystem& files, int file) noexcept : files_(&files), file_(file) {}
    ~OpenFile() { (void)close(); }
    OpenFile(OpenFile&& other) noexcept
        : files_(other.files_), file_(std::exchange(other.file_, -1))
    {}
    OpenFile& operator=(OpenFile&& other) noexcept
    {
        std::swap(files_, other.files_);
        std::swap(file_, other.file_);
        return *this;
    }

    [[nodiscard]] explicit operator bool() const noexcept { return file_ >= 0; }
    [[nodiscard]] int get() const noexcept { return file_; }

    /// Closes the file now. @return  the result of the system call; 0 if nothing is open
    int close() { return file_ >= 0 ? files_->close(std::exchange(file_, -1)) : 0; }

private:
    FileSystem* files_;
    int file_;
};

} // namespace gps
