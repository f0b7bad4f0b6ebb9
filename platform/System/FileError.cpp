// SPDX-License-Identifier: MIT
// The descriptions name the file without its folders: hosts show the path separately.

#include "FileError.h"

#include "Paths.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace gps {
namespace {

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

FileErrorCode readCode(int systemError)
{
    switch (systemError) {
    case EACCES:
    case EPERM:
        return FileErrorCode::kReadNoPermission;
    case ENOENT:
        return FileErrorCode::kReadNoSuchFile;
    default:
        return FileErrorCode::kReadUnknown;
    }
}

FileErrorCode writeCode(int systemError)
{
    switch (systemError) {
    case ENOENT:
        return FileErrorCode::kNoSuchFolder;
    case EACCES:
    case EPERM:
        return FileErrorCode::kWriteNoPermission;
    case ENOSPC:
    case EDQUOT:
        return FileErrorCode::kWriteNoSpace;
    case EROFS:
        return FileErrorCode::kWriteReadOnlyVolume;
    default:
        return FileErrorCode::kWriteUnknown;
    }
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

Error makeReadError(const std::string& path, int systemError)
{
    return makeFileError(readCode(systemError), path, systemError);
}

Error makeWriteError(const std::string& path, int systemError)
{
    return makeFileError(writeCode(systemError), path, systemError);
}

} // namespace gps
