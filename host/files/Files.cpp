// SPDX-License-Identifier: MIT
// The platform's atomic write does the hard part; this adds folders and the host's own errors.

#include "host/files/Files.h"

#include "host/base/HostError.h"

#include <platform/System/AtomicFile.h>
#include <platform/System/OpenFile.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>

namespace host {
namespace {

constexpr mode_t kFolderMode = 0777; // the user's mask applies

std::string parentOf(const std::string& path)
{
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string{} : path.substr(0, slash);
}

bool isFolder(gps::FileSystem& files, const std::string& path)
{
    struct stat status;
    return files.stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

int makeFolder(gps::FileSystem& files, const std::string& path)
{
    if (path.empty() || isFolder(files, path))
        return 0;
    if (const int failure = makeFolder(files, parentOf(path)))
        return failure;
    if (files.mkdir(path.c_str(), kFolderMode) == 0)
        return 0;
    const int failure = errno;
    return failure == EEXIST && isFolder(files, path) ? 0 : failure; // another process was faster
}

} // namespace

std::optional<gps::Error> makeFolders(const std::string& path, gps::FileSystem& files)
{
    const int failure = makeFolder(files, path);
    if (failure == 0)
        return std::nullopt;
    const bool isFileInTheWay = failure == EEXIST || failure == ENOTDIR;
    return systemError("A folder cannot be created",
                       isFileInTheWay
                           ? "There is a file where a folder is needed. Choose another one"
                           : "Check its permissions and the free space there",
                       path, failure);
}

std::optional<gps::Error> writeFile(const std::string& path, std::string_view bytes,
                                    gps::FileSystem& files)
{
    if (auto failure = makeFolders(parentOf(path), files))
        return failure;
    if (const int failure = gps::writeAtomically(files, path, bytes))
        return systemError("A file cannot be written",
                           "Check its permissions and the free space there", path, failure);
    return std::nullopt;
}

bool isOneOfFiles(const std::string& path, const std::vector<std::string>& files)
{
    return std::any_of(files.begin(), files.end(), [&](const std::string& file) {
        std::error_code ignored;
        return std::filesystem::equivalent(path, file, ignored);
    });
}

// Both names are relative to the open folder, so the folder that is flushed is the one that was
// changed, even if its path leads elsewhere by then.
int renameInFolder(gps::FileSystem& files, const std::string& folder, const std::string& from,
                   const std::string& to)
{
    const gps::OpenFile open{files, files.open(folder.c_str(), O_RDONLY | O_DIRECTORY, 0)};
    if (!open || files.renameat(open.get(), from.c_str(), to.c_str()) != 0)
        return errno;
    // EINVAL: a volume whose folders cannot be flushed.
    return files.fsync(open.get()) == 0 || errno == EINVAL ? 0 : errno;
}

} // namespace host
