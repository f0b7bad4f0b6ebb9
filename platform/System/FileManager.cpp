// SPDX-License-Identifier: MIT

#include "FileManager.h"

#include "Ascii.h"
#include "AtomicWrite.h"
#include "FileSystem.h"
#include "OpenFile.h"
#include "Paths.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <system_error>

#include <fcntl.h>

namespace gps {
namespace {

constexpr std::size_t kPiece = std::size_t{256} << 10; ///< read at once: what a cache holds

const char* predicate(FileErrorCode code)
{
    switch (code) {
    case FileErrorCode::kNoSuchFolder:
        return "could not be found, or its folder does not exist.";
    case FileErrorCode::kReadUnknown:
        return "could not be read.";
    case FileErrorCode::kReadNoPermission:
        return "could not be read because permission was refused.";
    case FileErrorCode::kReadNoSuchFile:
        return "could not be opened because there is no such file.";
    case FileErrorCode::kReadNotAscii:
        return "could not be read because it is not plain ASCII text.";
    case FileErrorCode::kWriteUnknown:
        return "could not be written.";
    case FileErrorCode::kWriteNoPermission:
        return "could not be written because permission was refused.";
    case FileErrorCode::kWriteFileExists:
        return "could not be written because a file of that name exists.";
    case FileErrorCode::kWriteNotAscii:
        return "could not be written because its text is not plain ASCII.";
    case FileErrorCode::kWriteNoSpace:
        return "could not be written because there is no space left.";
    case FileErrorCode::kWriteReadOnlyVolume:
        break;
    }
    return "could not be written because the volume is read-only.";
}

Error readError(const std::string& path, int systemError)
{
    switch (systemError) {
    case EACCES:
    case EPERM:
        return makeFileError(FileErrorCode::kReadNoPermission, path, systemError);
    case ENOENT:
        return makeFileError(FileErrorCode::kReadNoSuchFile, path, systemError);
    default:
        return makeFileError(FileErrorCode::kReadUnknown, path, systemError);
    }
}

Error writeError(const std::string& path, int systemError)
{
    switch (systemError) {
    case ENOENT:
        return makeFileError(FileErrorCode::kNoSuchFolder, path, systemError);
    case EACCES:
    case EPERM:
        return makeFileError(FileErrorCode::kWriteNoPermission, path, systemError);
    case ENOSPC:
    case EDQUOT:
        return makeFileError(FileErrorCode::kWriteNoSpace, path, systemError);
    case EROFS:
        return makeFileError(FileErrorCode::kWriteReadOnlyVolume, path, systemError);
    default:
        return makeFileError(FileErrorCode::kWriteUnknown, path, systemError);
    }
}

/// Reads to the file's end, or up to the limit. @return  0 or errno
int readUpTo(FileSystem& files, int file, std::size_t expected, std::size_t limit,
             std::string& bytes)
{
    bytes.reserve(std::min(expected, limit));
    while (bytes.size() < limit) {
        const std::size_t used = bytes.size();
        // The last byte of a file's room stays free, and reading into it meets the end.
        const std::size_t wanted =
            std::clamp<std::size_t>(used < expected ? expected - used : kPiece, 1, kPiece);
        bytes.resize(std::min(used + wanted, limit));
        const ssize_t count = files.read(file, bytes.data() + used, bytes.size() - used);
        const int failure = count < 0 ? errno : 0;
        bytes.resize(used + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0)
            return 0;
        if (failure != 0 && failure != EINTR)
            return failure;
    }
    return 0;
}

enum class Extent { kWhole, kFront };

/// @return  0 or errno. A FIFO or a device is not waited for: the open does not block, and neither
/// is read.
int readRegularFile(FileSystem& files, const std::string& path, std::size_t limit, Extent extent,
                    std::string& bytes)
try {
    bytes.clear();
    const OpenFile file{files, files.open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY)};
    if (!file)
        return errno;
    struct stat status;
    if (files.fstat(file.get(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? EISDIR : ESPIPE;
    const auto size = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
    if (extent == Extent::kFront) {
        (void)readUpTo(files, file.get(), size + 1, limit,
                       bytes); // what came before a failure is the front
        return 0;
    }
    if (size > limit)
        return EFBIG;
    if (const int failure = readUpTo(files, file.get(), size + 1, limit + 1, bytes))
        return failure;
    return bytes.size() > limit ? EFBIG : 0; // it grew meanwhile, or tells no size
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

std::optional<Error> read(FileSystem& files, const std::string& path, std::size_t limit,
                          Extent extent, std::string& bytes)
{
    const int failure = readRegularFile(files, path, std::min(limit, kLargestFile), extent, bytes);
    if (failure == 0)
        return std::nullopt;
    bytes.clear();
    return readError(path, failure);
}

} // namespace

Error makeFileError(FileErrorCode code, const std::string& path, int systemError)
{
    Dictionary userInfo{{kErrorDescriptionKey, "The file \"" + std::string{lastComponent(path)} +
                                                   "\" " + predicate(code)},
                        {kErrorPathKey, path}};
    if (systemError != 0)
        userInfo.set(kErrorReasonKey, std::generic_category().message(systemError));
    return {kFileErrorDomain, static_cast<std::int32_t>(code), std::move(userInfo)};
}

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

std::optional<Error> FileManager::readAsciiFile(const std::string& path, std::string& text) const
{
    if (auto error = readFile(path, text))
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
    if (const int failure = writeAtomically(*files_, path, text))
        return writeError(path, failure);
    return std::nullopt;
}

std::optional<Error> FileManager::writeObstacle(const std::string& path) const
{
    if (const int obstacle = obstacleToWriting(*files_, path))
        return writeError(path, obstacle);
    return std::nullopt;
}

std::optional<Error> FileManager::removeItem(const std::string& path) const
{
    if (files_->removeTree(path.c_str()) != 0)
        return writeError(path, errno);
    return std::nullopt;
}

DirectoryEnumerator FileManager::enumerator(const std::string& folder) const
{
    return DirectoryEnumerator{folder, files_};
}

} // namespace gps
