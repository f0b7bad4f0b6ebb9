// SPDX-License-Identifier: MIT
// The lock belongs to the open folder, so it ends with the process, however that ends.

#include "host/files/FolderLock.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

namespace host {

// flock(), not fcntl(): its locks also exclude one another within one process, and closing another
// descriptor of the folder does not drop them.
FolderLock::FolderLock(const std::string& folder, gps::FileSystem& files)
    : files_(&files), folder_(files, files.open(folder.c_str(), O_RDONLY | O_DIRECTORY, 0)),
      isHeldByAnother_(folder_ && files.flock(folder_.get(), LOCK_EX | LOCK_NB) != 0 &&
                       errno == EWOULDBLOCK)
{}

bool FolderLock::isOfAny(const std::vector<std::string>& paths) const
{
    return std::any_of(paths.begin(), paths.end(),
                       [this](const std::string& path) { return isOf(path); });
}

bool FolderLock::isOf(const std::string& path) const
{
    struct stat locked;
    struct stat other;
    return folder_ && files_->fstat(folder_.get(), &locked) == 0 &&
           files_->stat(path.c_str(), &other) == 0 && locked.st_dev == other.st_dev &&
           locked.st_ino == other.st_ino;
}

} // namespace host
