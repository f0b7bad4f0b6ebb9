// SPDX-License-Identifier: MIT
// Forwards every function to the system call of its name.

#include "FileSystem.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace gps {

FileSystem& FileSystem::system()
{
    // Never destroyed: workers may use it until the process has ended.
    static FileSystem& theSystem = *new FileSystem;
    return theSystem;
}

int FileSystem::open(const char* path, int flags, mode_t mode)
{
    return ::open(path, flags | O_CLOEXEC, mode);
}

int FileSystem::openat(int folder, const char* name, int flags, mode_t mode)
{
    return ::openat(folder, name, flags | O_CLOEXEC, mode);
}

int FileSystem::close(int file)
{
    return ::close(file);
}

ssize_t FileSystem::read(int file, void* buffer, std::size_t size)
{
    return ::read(file, buffer, size);
}

ssize_t FileSystem::pread(int file, void* buffer, std::size_t size, off_t offset)
{
    return ::pread(file, buffer, size, offset);
}

ssize_t FileSystem::write(int file, const void* data, std::size_t size)
{
    return ::write(file, data, size);
}

ssize_t FileSystem::pwrite(int file, const void* data, std::size_t size, off_t offset)
{
    return ::pwrite(file, data, size, offset);
}

off_t FileSystem::lseek(int file, off_t offset, int whence)
{
    return ::lseek(file, offset, whence);
}

int FileSystem::ftruncate(int file, off_t size)
{
    return ::ftruncate(file, size);
}

int FileSystem::fsync(int file)
{
    return ::fsync(file);
}

int FileSystem::fchmod(int file, mode_t mode)
{
    return ::fchmod(file, mode);
}

int FileSystem::flock(int file, int operation)
{
    return ::flock(file, operation);
}

int FileSystem::fstat(int file, struct stat* out)
{
    return ::fstat(file, out);
}

int FileSystem::fstatfs(int file, struct statfs* out)
{
    return ::fstatfs(file, out);
}

int FileSystem::mkdir(const char* path, mode_t mode)
{
    return ::mkdir(path, mode);
}

int FileSystem::rename(const char* from, const char* to)
{
    return ::rename(from, to);
}

int FileSystem::renameat(int folder, const char* from, const char* to)
{
    return ::renameat(folder, from, folder, to);
}

int FileSystem::renameNoReplace(int folder, const char* from, const char* to)
{
    return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE);
}

int FileSystem::linkat(int folder, const char* from, const char* to)
{
    return ::linkat(folder, from, folder, to, 0);
}

int FileSystem::unlink(const char* path)
{
    return ::unlink(path);
}

int FileSystem::unlinkat(int folder, const char* name)
{
    return ::unlinkat(folder, name, 0);
}

int FileSystem::stat(const char* path, struct stat* out)
{
    return ::stat(path, out);
}

int FileSystem::lstat(const char* path, struct stat* out)
{
    return ::lstat(path, out);
}

int FileSystem::fstatat(int folder, const char* name, struct stat* out)
{
    return ::fstatat(folder, name, out, AT_SYMLINK_NOFOLLOW);
}

int FileSystem::access(const char* path, int mode)
{
    return ::faccessat(AT_FDCWD, path, mode, AT_EACCESS);
}

int FileSystem::realpath(const char* path, std::string& out)
{
    const std::unique_ptr<char, decltype(&std::free)> real{::realpath(path, nullptr), &std::free};
    if (!real)
        return -1;
    out = real.get();
    return 0;
}

DIR* FileSystem::opendir(const char* path)
{
    return ::opendir(path);
}

dirent* FileSystem::readdir(DIR* folder)
{
    return ::readdir(folder);
}

int FileSystem::closedir(DIR* folder)
{
    return ::closedir(folder);
}

int FileSystem::removeTree(const char* path)
{
    // remove_all() does not report a missing path as a failure.
    struct stat present;
    if (::lstat(path, &present) != 0)
        return -1;
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    if (!failure)
        return 0;
    errno = failure.value();
    return -1;
}

} // namespace gps
