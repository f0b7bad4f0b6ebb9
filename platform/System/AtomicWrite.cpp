// SPDX-License-Identifier: MIT

#include "AtomicWrite.h"

#include "FileSystem.h"
#include "OpenFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace gps {
namespace {

/// One name a folder, so that the next write sweeps up what a killed process left. Short: the final
/// name may be as long as names can be.
constexpr char kTemporaryName[] = ".~write.tmp";

constexpr mode_t kModeBits = 0777;

struct Place {
    std::string folder;
    std::string name;
};

Place placeOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return {".", path};
    return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

int errnoOf(int result)
{
    return result == 0 ? 0 : errno;
}

int writeAll(FileSystem& files, int file, std::string_view data)
{
    while (!data.empty()) {
        const ssize_t written = files.write(file, data.data(), data.size());
        if (written > 0)
            data.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0)
            return EIO;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

/// Gives the new file the mode of the one that it replaces. A volume without modes refuses; then
/// there is none to keep.
void keepMode(FileSystem& files, int folder, const char* name, int file)
{
    struct stat present;
    if (files.fstatat(folder, name, &present) == 0 && S_ISREG(present.st_mode))
        (void)files.fchmod(file, present.st_mode & kModeBits);
}

/// Fills the temporary file and moves it to its name. A failed flush is final: a second try could
/// succeed over lost data.
int writeAndRename(FileSystem& files, int folder, int file, const char* name, std::string_view data)
{
    if (const int failure = writeAll(files, file, data))
        return failure;
    keepMode(files, folder, name, file);
    if (files.fsync(file) != 0)
        return errno;
    return errnoOf(files.renameat(folder, kTemporaryName, name));
}

/// On vfat the renamed file's folder entry stays without size and first cluster until the file is
/// flushed once more.
int flushAfterRename(FileSystem& files, int folder, OpenFile& file)
{
    if (files.fsync(file.get()) != 0)
        return errno;
    if (files.fsync(folder) != 0 &&
        errno != EINVAL) // EINVAL: a volume whose folders cannot be flushed
        return errno;
    return file.close() == 0 || errno == EINTR ? 0 : errno;
}

} // namespace

int writeAtomically(FileSystem& files, const std::string& path, std::string_view data)
{
    const Place place = placeOf(path);
    if (place.name.empty())
        return EISDIR;
    const OpenFile folder{files, files.open(place.folder.c_str(), O_RDONLY | O_DIRECTORY)};
    if (!folder)
        return errno;
    // Any other refusal comes from a volume without locks.
    if (files.flock(folder.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return EWOULDBLOCK;

    (void)files.unlinkat(folder.get(), kTemporaryName);
    OpenFile file{files, files.openat(folder.get(), kTemporaryName,
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0666)};
    if (!file)
        return errno;
    if (const int failure =
            writeAndRename(files, folder.get(), file.get(), place.name.c_str(), data)) {
        (void)files.unlinkat(folder.get(), kTemporaryName);
        return failure;
    }
    return flushAfterRename(files, folder.get(), file);
}

int obstacleToWriting(FileSystem& files, const std::string& path)
{
    if (files.access(placeOf(path).folder.c_str(), W_OK | X_OK) != 0)
        return errno;
    struct stat status;
    return files.stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? EISDIR : 0;
}

} // namespace gps
