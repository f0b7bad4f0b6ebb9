// SPDX-License-Identifier: MIT
// The real system, but for one call that fails. Notes the order of the calls that change something.

#pragma once

#include <platform/System/FileSystem.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

namespace support {

class OneFault : public gps::FileSystem {
public:
    OneFault() = default;

    /// @param call   the operation's name
    /// @param error  the errno that it fails with
    /// @param which  which of the calls of that name fails, from 1
    OneFault(std::string_view call, int error, int which = 1)
        : call_(call), error_(error), left_(which)
    {}

    [[nodiscard]] bool happened() const { return !call_.empty() && left_ <= 0; }
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }

    int open(const char* path, int flags) override
    {
        return due("open") ? -1 : FileSystem::open(path, flags);
    }
    int openat(int folder, const char* name, int flags, mode_t mode) override
    {
        return due("openat") ? -1 : FileSystem::openat(folder, name, flags, mode);
    }
    ssize_t read(int file, void* buffer, std::size_t size) override
    {
        return due("read") ? -1 : FileSystem::read(file, buffer, size);
    }
    ssize_t write(int file, const void* data, std::size_t size) override
    {
        return due("write") ? -1 : FileSystem::write(file, data, size);
    }
    int fsync(int file) override { return due("fsync") ? -1 : FileSystem::fsync(file); }
    int fchmod(int file, mode_t mode) override
    {
        return due("fchmod") ? -1 : FileSystem::fchmod(file, mode);
    }
    int mkdir(const char* path, mode_t mode) override
    {
        return due("mkdir") ? -1 : FileSystem::mkdir(path, mode);
    }
    int renameat(int folder, const char* from, const char* to) override
    {
        return due("renameat") ? -1 : FileSystem::renameat(folder, from, to);
    }
    int unlinkat(int folder, const char* name) override
    {
        return due("unlinkat") ? -1 : FileSystem::unlinkat(folder, name);
    }
    int flock(int file, int operation) override
    {
        return due("flock") ? -1 : FileSystem::flock(file, operation);
    }
    int close(int file) override
    {
        const bool fails = due("close"); // closed all the same, as the system does
        const int result = FileSystem::close(file);
        if (fails)
            errno = error_;
        return fails ? -1 : result;
    }
    int fstat(int file, struct stat* out) override
    {
        return due("fstat") ? -1 : FileSystem::fstat(file, out);
    }
    int stat(const char* path, struct stat* out) override
    {
        return due("stat") ? -1 : FileSystem::stat(path, out);
    }
    DIR* opendir(const char* path) override
    {
        return due("opendir") ? nullptr : FileSystem::opendir(path);
    }
    dirent* readdir(DIR* folder) override
    {
        return due("readdir") ? nullptr : FileSystem::readdir(folder);
    }

private:
    bool due(std::string_view call)
    {
        calls_.emplace_back(call);
        if (call != call_ || --left_ != 0)
            return false;
        errno = error_;
        return true;
    }

    std::string call_;
    int error_ = 0;
    int left_ = 0;
    std::vector<std::string> calls_;
};

} // namespace support
