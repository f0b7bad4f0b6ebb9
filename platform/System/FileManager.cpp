// SPDX-License-Identifier: MIT
// Turns the errno results of this folder's lower parts into errors.

#include "FileManager.h"

#include "Ascii.h"
#include "AtomicFile.h"
#include "FileSystem.h"
#include "FullTransfer.h"
#include "OpenFile.h"

#include <algorithm>
#include <cerrno>
#include <new>

#include <fcntl.h>

namespace gps {
namespace {

enum class Extent { kWhole, kFront };

/// @return  0 or errno. The open does not block, so that a FIFO cannot hold up a driver.
int readRegularFile(FileSystem& files, const std::string& path, std::size_t limit, Extent extent,
                    std::string& bytes)
try {
    struct stat status;
    if (files.stat(path.c_str(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode)) // opening a device can have effects
        return S_ISDIR(status.st_mode) ? EISDIR : ESPIPE;
    const OpenFile file{files, files.open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY, 0)};
    if (!file || files.fstat(file.get(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode)) // replaced since
        return ESPIPE;
    const auto size = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
    if (extent == Extent::kFront) {
        (void)readAll(files, file.get(), size, limit, bytes);
        return 0;
    }
    if (size > limit)
        return EFBIG;
    if (const int failure = readAll(files, file.get(), size, limit + 1, bytes))
        return failure;
    // The file may have grown since fstat(), and files in /proc report no size at all.
    return bytes.size() > limit ? EFBIG : 0;
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

std::optional<Error> read(FileSystem& files, const std::string& path, std::size_t limit,
                          Extent extent, std::string& bytes)
{
    bytes.clear();
    const int failure = readRegularFile(files, path, std::min(limit, kLargestFile), extent, bytes);
    if (failure == 0)
        return std::nullopt;
    bytes.clear();
    return makeReadError(path, failure);
}

std::optional<Error> writeResult(const std::string& path, int failure)
{
    return failure != 0 ? std::optional{makeWriteError(path, failure)} : std::nullopt;
}

} // namespace

FileManager::FileManager(FileSystem* files)
    : files_(files != nullptr ? files : &FileSystem::system())
{}

bool FileManager::fileExists(const std::string& path, bool* isFolder) const
{
    struct stat status;
    const bool exists = files_->stat(path.c_str(), &status) == 0;
    if (isFolder != nullptr)
        *isFolder = exists && S_ISDIR(status.st_mode);
    return exists;
}

std::optional<Error> FileManager::lookUpFolder(const std::string& path, bool& isFolder) const
{
    struct stat status;
    const int failure = files_->stat(path.c_str(), &status) == 0 ? 0 : errno;
    isFolder = failure == 0 && S_ISDIR(status.st_mode);
    const bool isKnown = failure == 0 || failure == ENOENT || failure == ENOTDIR;
    return isKnown ? std::nullopt : std::optional{makeReadError(path, failure)};
}

bool FileManager::isFree(const std::string& path) const
{
    struct stat status;
    return files_->lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

bool FileManager::leadsOutOf(const std::string& folder, const std::string& path) const
{
    std::string realFolder;
    std::string realPath;
    if (files_->realpath(folder.c_str(), realFolder) != 0)
        return false;
    auto existing = path;
    while (files_->realpath(existing.c_str(), realPath) != 0) {
        const auto slash = existing.rfind('/');
        if (errno != ENOENT || slash == std::string::npos || slash < folder.size())
            return false;
        existing.resize(slash);
    }
    if (!realFolder.ends_with('/'))
        realFolder += '/';
    return !(realPath + '/').starts_with(realFolder);
}

std::optional<Error> FileManager::readAsciiFile(const std::string& path, std::string& text,
                                                std::size_t limit) const
{
    if (auto error = readFile(path, text, limit))
        return error;
    if (isAscii(text))
        return std::nullopt;
    text.clear();
    return makeFileError(FileErrorCode::kReadNotAscii, path);
}

std::optional<Error> FileManager::readFile(const std::string& path, std::string& bytes,
                                           std::size_t limit) const
{
    return read(*files_, path, limit, Extent::kWhole, bytes);
}

std::optional<Error> FileManager::readFront(const std::string& path, std::string& bytes,
                                            std::size_t limit) const
{
    return read(*files_, path, limit, Extent::kFront, bytes);
}

std::optional<Error> FileManager::writeAsciiFileAtomically(const std::string& path,
                                                           std::string_view text) const
{
    if (!isAscii(text))
        return makeFileError(FileErrorCode::kWriteNotAscii, path);
    return writeResult(path, writeAtomically(*files_, path, text));
}

std::optional<Error> FileManager::writeNewAsciiFile(const std::string& path,
                                                    std::string_view text) const
{
    if (!isAscii(text))
        return makeFileError(FileErrorCode::kWriteNotAscii, path);
    const int failure = writeNewAtomically(*files_, path, text);
    if (failure == EEXIST)
        return makeFileError(FileErrorCode::kWriteFileExists, path, failure);
    return writeResult(path, failure);
}

std::optional<Error> FileManager::writeObstacle(const std::string& path) const
{
    return writeResult(path, obstacleToWriting(*files_, path));
}

std::optional<Error> FileManager::removeItem(const std::string& path) const
{
    return writeResult(path, files_->removeTree(path.c_str()) == 0 ? 0 : errno);
}

DirectoryEnumerator FileManager::enumerator(const std::string& folder) const
{
    return DirectoryEnumerator{folder, files_};
}

} // namespace gps
