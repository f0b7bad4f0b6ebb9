// SPDX-License-Identifier: MIT
// SlowFiles: the real file system, except that each read or write transfers at most seven bytes and
// every second one is interrupted by a signal.

#pragma once

#include <platform/System/FileSystem.h>

#include <algorithm>
#include <cerrno>

namespace support {

class SlowFiles : public gps::FileSystem {
public:
    ssize_t read(int file, void* buffer, std::size_t size) override
    {
        return isInterrupted() ? -1 : FileSystem::read(file, buffer, few(size));
    }
    ssize_t pread(int file, void* buffer, std::size_t size, off_t offset) override
    {
        return isInterrupted() ? -1 : FileSystem::pread(file, buffer, few(size), offset);
    }
    ssize_t write(int file, const void* data, std::size_t size) override
    {
        return isInterrupted() ? -1 : FileSystem::write(file, data, few(size));
    }
    ssize_t pwrite(int file, const void* data, std::size_t size, off_t offset) override
    {
        return isInterrupted() ? -1 : FileSystem::pwrite(file, data, few(size), offset);
    }

private:
    static std::size_t few(std::size_t size) { return std::min<std::size_t>(size, 7); }

    bool isInterrupted()
    {
        interrupted_ = !interrupted_;
        errno = EINTR;
        return interrupted_;
    }

    bool interrupted_ = false;
};

} // namespace support
