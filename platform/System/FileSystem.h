// SPDX-License-Identifier: MIT
// FileSystem: the system calls about files and folders, one virtual function each. FileManager,
// AtomicFile and everything else that reads or writes files calls them through this class, so that
// a test can derive from it and let exactly one call fail. Devices, pipes and terminals are not
// accessed through it. [any]

#pragma once

#include <cstddef>
#include <string>

#include <dirent.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/types.h>

namespace gps {

/// Each function is the system call of its name, with its arguments, result and errno, unless its
/// comment says otherwise. Files are opened close-on-exec.
class FileSystem {
public:
    [[nodiscard]] static FileSystem& system(); ///< the real one; lives as long as the process

    virtual ~FileSystem() = default;

    // Opening and closing. `mode` counts only where a file is created.
    virtual int open(const char* path, int flags, mode_t mode);
    virtual int openat(int folder, const char* name, int flags, mode_t mode);
    virtual int close(int file);

    // Open files.
    virtual ssize_t read(int file, void* buffer, std::size_t size);
    virtual ssize_t pread(int file, void* buffer, std::size_t size, off_t offset);
    virtual ssize_t write(int file, const void* data, std::size_t size);
    virtual ssize_t pwrite(int file, const void* data, std::size_t size, off_t offset);
    virtual off_t lseek(int file, off_t offset, int whence);
    virtual int ftruncate(int file, off_t size);
    virtual int fsync(int file);
    virtual int fchmod(int file, mode_t mode);
    virtual int flock(int file, int operation);
    virtual int fstat(int file, struct stat* out);
    virtual int fstatfs(int file, struct statfs* out);

    // Names.
    virtual int mkdir(const char* path, mode_t mode);
    virtual int rename(const char* from, const char* to);
    virtual int renameat(int folder, const char* from, const char* to); ///< within one folder
    /// renameat2 with RENAME_NOREPLACE, within one folder.
    virtual int renameNoReplace(int folder, const char* from, const char* to);
    virtual int linkat(int folder, const char* from, const char* to); ///< within one folder
    virtual int unlink(const char* path);
    virtual int unlinkat(int folder, const char* name); ///< files only
    virtual int stat(const char* path, struct stat* out);
    virtual int lstat(const char* path, struct stat* out);
    virtual int fstatat(int folder, const char* name, struct stat* out); ///< does not follow links
    virtual int access(const char* path, int mode); ///< checks the effective user and group

    /// The path without links. @return  0, or -1 with errno; `out` is unchanged then
    virtual int realpath(const char* path, std::string& out);

    // Folders.
    virtual DIR* opendir(const char* path);
    virtual dirent* readdir(DIR* folder);
    virtual int closedir(DIR* folder);

    /// Removes a file, or a folder with all its contents. Not a system call of its own.
    /// @return  0, or -1 with errno, also if nothing exists at the path
    virtual int removeTree(const char* path);
};

} // namespace gps
