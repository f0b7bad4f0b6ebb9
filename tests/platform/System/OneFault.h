// SPDX-License-Identifier: MIT
// OneFault: the real file system, except that one call fails, and that it passes for vfat. Records
// the order of the calls that open, change, flush or close something.

#pragma once

#include <platform/System/FileSystem.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#include <linux/magic.h>

namespace support {

class OneFault : public gps::FileSystem {
public:
    OneFault() = default;

    /// @param call   the name of the function that fails
    /// @param error  the errno that it fails with
    /// @param which  which of its calls fails, from 1
    OneFault(std::string_view call, int error, int which = 1)
        : call_(call), error_(error), left_(which)
    {}

    /// Which file system it is to its callers, by its number in linux/magic.h.
    void setType(long type) { type_ = type; }

    [[nodiscard]] bool happened() const { return !call_.empty() && left_ <= 0; }
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }

    int open(const char* path, int flags, mode_t mode) override
    {
        return fails("open") ? -1 : FileSystem::open(path, flags, mode);
    }
    int openat(int folder, const char* name, int flags, mode_t mode) override
    {
        return fails("openat") ? -1 : FileSystem::openat(folder, name, flags, mode);
    }
    int close(int file) override
    {
        const bool isDue = fails("close"); // closes the file even if it fails, as the system does
        const int result = FileSystem::close(file);
        if (isDue)
            errno = error_;
        return isDue ? -1 : result;
    }
    ssize_t read(int file, void* buffer, std::size_t size) override
    {
        return fails("read") ? -1 : FileSystem::read(file, buffer, size);
    }
    ssize_t pread(int file, void* buffer, std::size_t size, off_t offset) override
    {
        return fails("pread") ? -1 : FileSystem::pread(file, buffer, size, offset);
    }
    ssize_t write(int file, const void* data, std::size_t size) override
    {
        return fails("write") ? -1 : FileSystem::write(file, data, size);
    }
    ssize_t pwrite(int file, const void* data, std::size_t size, off_t offset) override
    {
        return fails("pwrite") ? -1 : FileSystem::pwrite(file, data, size, offset);
    }
    off_t lseek(int file, off_t offset, int whence) override
    {
        return fails("lseek") ? -1 : FileSystem::lseek(file, offset, whence);
    }
    int ftruncate(int file, off_t size) override
    {
        return fails("ftruncate") ? -1 : FileSystem::ftruncate(file, size);
    }
    int fsync(int file) override { return fails("fsync") ? -1 : FileSystem::fsync(file); }
    int fchmod(int file, mode_t mode) override
    {
        return fails("fchmod") ? -1 : FileSystem::fchmod(file, mode);
    }
    int flock(int file, int operation) override
    {
        return fails("flock") ? -1 : FileSystem::flock(file, operation);
    }
    int fstat(int file, struct stat* out) override
    {
        return fails("fstat") ? -1 : FileSystem::fstat(file, out);
    }
    int fstatfs(int file, struct statfs* out) override
    {
        const int result = FileSystem::fstatfs(file, out);
        out->f_type = type_;
        return result;
    }
    int stat(const char* path, struct stat* out) override
    {
        return fails("stat") ? -1 : FileSystem::stat(path, out);
    }
    int mkdir(const char* path, mode_t mode) override
    {
        return fails("mkdir") ? -1 : FileSystem::mkdir(path, mode);
    }
    int rename(const char* from, const char* to) override
    {
        return fails("rename") ? -1 : FileSystem::rename(from, to);
    }
    int renameat(int folder, const char* from, const char* to) override
    {
        return fails("renameat") ? -1 : FileSystem::renameat(folder, from, to);
    }
    int renameNoReplace(int folder, const char* from, const char* to) override
    {
        return fails("renameNoReplace") ? -1 : FileSystem::renameNoReplace(folder, from, to);
    }
    int linkat(int folder, const char* from, const char* to) override
    {
        return fails("linkat") ? -1 : FileSystem::linkat(folder, from, to);
    }
    int realpath(const char* path, std::string& out) override
    {
        return fails("realpath") ? -1 : FileSystem::realpath(path, out);
    }
    int lstat(const char* path, struct stat* out) override
    {
        return fails("lstat") ? -1 : FileSystem::lstat(path, out);
    }
    int unlink(const char* path) override
    {
        return fails("unlink") ? -1 : FileSystem::unlink(path);
    }
    int unlinkat(int folder, const char* name) override
    {
        return fails("unlinkat") ? -1 : FileSystem::unlinkat(folder, name);
    }
    DIR* opendir(const char* path) override
    {
        return fails("opendir") ? nullptr : FileSystem::opendir(path);
    }
    dirent* readdir(DIR* folder) override
    {
        return fails("readdir") ? nullptr : FileSystem::readdir(folder);
    }
    int removeTree(const char* path) override
    {
        return fails("removeTree") ? -1 : FileSystem::removeTree(path);
    }

private:
    bool fails(std::string_view call)
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
    long type_ = MSDOS_SUPER_MAGIC;
    std::vector<std::string> calls_;
};

} // namespace support
