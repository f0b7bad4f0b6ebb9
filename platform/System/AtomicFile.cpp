// SPDX-License-Identifier: MIT
// The order of the steps matters: content, flush, rename, flush of the folder. On vfat, the file
// system of memory cards, a renamed file has neither size nor first cluster in its folder entry
// until it is flushed once more.

#include "AtomicFile.h"

#include "FileSystem.h"
#include "FullTransfer.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <unistd.h>

namespace gps {
namespace {

constexpr mode_t kModeBits = 0777;

/// File systems that keep a file's size and place apart from its names: once the file is flushed, a
/// new name refers to all of it. ext2, ext3 and ext4 have one number.
constexpr std::array<long, 5> kTypesWithInodes{EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
                                               F2FS_SUPER_MAGIC, TMPFS_MAGIC};
constexpr int kNothingOpen = -1;

struct SplitPath {
    std::string folder; // with a "/" at its end
    std::string name;
};

SplitPath split(const std::string& path)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return {"./", path};
    return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

/// Whether a renamed file may have to be flushed again. True for a file system that is not known.
bool mayKeepSizesInFolders(FileSystem& files, int file)
{
    struct statfs status;
    return files.fstatfs(file, &status) != 0 ||
           std::find(kTypesWithInodes.begin(), kTypesWithInodes.end(), status.f_type) ==
               kTypesWithInodes.end();
}

std::atomic<std::uint64_t> bytesWritten{0};

/// In pieces, so that the counter shows how far a large file is.
int writeCounted(FileSystem& files, int file, std::string_view data)
{
    constexpr std::size_t kPiece = std::size_t{4} << 20;
    int failure = 0;
    while (failure == 0 && !data.empty()) {
        const auto piece = data.substr(0, kPiece);
        failure = writeAll(files, file, piece);
        bytesWritten += piece.size();
        data.remove_prefix(piece.size());
    }
    return failure;
}

int writeTemporary(FileSystem& files, AtomicFile& file, const std::string& path,
                   std::string_view data)
{
    const int failure = file.open(path);
    return failure != 0 ? failure : writeCounted(files, file.descriptor(), data);
}

} // namespace

std::uint64_t fileBytesWritten() noexcept
{
    return bytesWritten;
}

AtomicFile::AtomicFile(FileSystem& files)
    : files_(files), folder_(files, kNothingOpen), file_(files, kNothingOpen)
{}

AtomicFile::~AtomicFile()
{
    discard();
}

int AtomicFile::open(const std::string& path)
{
    if (const int failure = openFolder(path))
        return failure;
    // Any other failure means that the volume has no locks.
    if (files_.flock(folder_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return EWOULDBLOCK;
    (void)files_.unlinkat(folder_.get(), kTemporaryName);
    return create(kTemporaryName);
}

int AtomicFile::openUnlocked(const std::string& path, std::string_view prefix)
{
    if (const int failure = openFolder(path))
        return failure;
    for (int attempt = 0;; ++attempt) {
        std::string name{prefix};
        appendInteger(name, attempt);
        const int failure = create(std::move(name));
        if (failure == 0) // shows others that the file is in use; a killed process has no locks
            (void)files_.flock(file_.get(), LOCK_EX | LOCK_NB);
        if (failure != EEXIST)
            return failure;
    }
}

int AtomicFile::openFolder(const std::string& path)
{
    auto [folder, name] = split(path);
    if (name.empty())
        return EISDIR;
    folder_ = OpenFile{files_, files_.open(folder.c_str(), O_RDONLY | O_DIRECTORY, 0)};
    if (!folder_)
        return errno;
    name_ = std::move(name);
    folderPath_ = std::move(folder);
    return 0;
}

int AtomicFile::create(std::string name)
{
    auto path = folderPath_ + name; // nothing may throw between the file and its name
    file_ = OpenFile{files_, files_.openat(folder_.get(), name.c_str(),
                                           O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0666)};
    if (!file_)
        return errno;
    temporaryPath_ = std::move(path);
    temporaryName_ = std::move(name);
    keepMode();
    return 0;
}

/// A volume without modes refuses fchmod(); then there is no mode to keep.
void AtomicFile::keepMode()
{
    struct stat present;
    if (files_.fstatat(folder_.get(), name_.c_str(), &present) == 0 && S_ISREG(present.st_mode))
        (void)files_.fchmod(file_.get(), present.st_mode & kModeBits);
}

int AtomicFile::commit()
{
    return commitAs(name_);
}

int AtomicFile::commitAs(const std::string& name)
{
    // A failed flush is final: a second one could succeed although data was lost.
    const bool isFlushed = files_.fsync(file_.get()) == 0;
    return finish(isFlushed ? renameTo(name) : errno);
}

int AtomicFile::commitNew()
{
    const bool isFlushed = files_.fsync(file_.get()) == 0;
    return finish(isFlushed ? renameToFree(name_) : errno);
}

int AtomicFile::renameTo(const std::string& name)
{
    return files_.renameat(folder_.get(), temporaryName_.c_str(), name.c_str()) == 0 ? 0 : errno;
}

int AtomicFile::renameToFree(const std::string& name)
{
    const int folder = folder_.get();
    if (files_.renameNoReplace(folder, temporaryName_.c_str(), name.c_str()) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS) // those two: the volume cannot do it
        return errno;
    if (files_.linkat(folder, temporaryName_.c_str(), name.c_str()) == 0) {
        (void)files_.unlinkat(folder, temporaryName_.c_str());
        return 0;
    }
    if (errno == EEXIST)
        return EEXIST;
    // The volume has no links either. Writes of this library hold the folder's lock, so only
    // another program could create the file between these two calls.
    struct stat present;
    if (files_.fstatat(folder, name.c_str(), &present) == 0)
        return EEXIST;
    return errno == ENOENT ? renameTo(name) : errno;
}

/// @param failure  of the flush or the rename
int AtomicFile::finish(int failure)
{
    if (failure != 0) {
        discard();
        return failure;
    }
    isRenamed_ = true;
    temporaryName_.clear();
    temporaryPath_.clear();
    return flushAfterRename();
}

int AtomicFile::flushAfterRename()
{
    if (mayKeepSizesInFolders(files_, file_.get()) && files_.fsync(file_.get()) != 0)
        return errno;
    // EINVAL: the volume cannot flush folders.
    if (files_.fsync(folder_.get()) != 0 && errno != EINVAL)
        return errno;
    return file_.close() == 0 || errno == EINTR ? 0 : errno;
}

void AtomicFile::discard()
{
    if (temporaryName_.empty())
        return;
    (void)files_.unlinkat(folder_.get(), temporaryName_.c_str());
    temporaryName_.clear();
    temporaryPath_.clear();
    (void)file_.close();
    (void)folder_.close();
}

int writeAtomically(FileSystem& files, const std::string& path, std::string_view data)
{
    AtomicFile file{files};
    const int failure = writeTemporary(files, file, path, data);
    return failure != 0 ? failure : file.commit();
}

int writeNewAtomically(FileSystem& files, const std::string& path, std::string_view data)
{
    AtomicFile file{files};
    const int failure = writeTemporary(files, file, path, data);
    return failure != 0 ? failure : file.commitNew();
}

int obstacleToWriting(FileSystem& files, const std::string& path)
{
    if (files.access(split(path).folder.c_str(), W_OK | X_OK) != 0)
        return errno;
    struct stat status;
    return files.stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? EISDIR : 0;
}

} // namespace gps
