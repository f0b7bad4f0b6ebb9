// SPDX-License-Identifier: MIT
// FileSystem: the one place that calls the operating system about files. FileManager stands on it.
// A test derives from it and fails exactly one call. [any]

#pragma once

#include <cstddef>
#include <string>

#include <dirent.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace gps {

/// Each operation is the system call of that name: the same arguments, result and errno. Files are
/// opened close-on-exec.
class FileSystem {
public:
    [[nodiscard]] static FileSystem& system(); ///< the real one

    virtual ~FileSystem() = default;

    virtual int open(const char* path, int flags);
    virtual int openat(int folder, const char* name, int flags, mode_t mode);
    virtual ssize_t read(int file, void* buffer, std::size_t size);
    virtual ssize_t write(int file, const void* data, std::size_t size);
    virtual int fsync(int file);
    virtual int fchmod(int file, mode_t mode);
    virtual int mkdir(const char* path, mode_t mode);
    virtual int renameat(int folder, const char* from, const char* to);
    virtual int unlinkat(int folder, const char* name);
    virtual int flock(int file, int operation);
    virtual int close(int file);
    virtual int stat(const char* path, struct stat* out);
    virtual int lstat(const char* path, struct stat* out);
    virtual int access(const char* path, int mode); ///< for the rights that the process has now
    virtual int fstat(int file, struct stat* out);
    virtual int fstatat(int folder, const char* name, struct stat* out); ///< follows no link
    virtual DIR* opendir(const char* path);
    virtual dirent* readdir(DIR* folder);
    virtual int closedir(DIR* folder);
    virtual int removeTree(
        const char* path); ///< a file, or a folder with all that is in it; 0 or -1 with errno
};

} // namespace gps
