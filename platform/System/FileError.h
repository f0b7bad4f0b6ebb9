// SPDX-License-Identifier: MIT
// File errors: the codes, and the mapping from errno that everything on this floor uses. [any]

#pragma once

#include <gps/Error.h>

#include <cstdint>
#include <string>

namespace gps {

/// The codes of file errors, in the domain "NSCocoaErrorDomain".
enum class FileErrorCode : std::int32_t {
    kNoSuchFolder = 4,
    kReadUnknown = 256,
    kReadNoPermission = 257,
    kReadNoSuchFile = 260,
    kReadNotAscii = 261,
    kWriteUnknown = 512,
    kWriteNoPermission = 513,
    kWriteFileExists = 516,
    kWriteNotAscii = 517,
    kWriteNoSpace = 640,
    kWriteReadOnlyVolume = 642,
};

/// Compares with the code of an error in that domain.
[[nodiscard]] constexpr bool operator==(FileErrorCode a, std::int32_t b) noexcept
{
    return static_cast<std::int32_t>(a) == b;
}

/// A file error with a description and the path, and with errno's text unless `systemError` is 0.
/// [any]
[[nodiscard]] Error makeFileError(FileErrorCode code, const std::string& path, int systemError = 0);

/// The error for a failed read. [any]
/// @return  257 for EACCES and EPERM, 260 for ENOENT, 256 for anything else
[[nodiscard]] Error makeReadError(const std::string& path, int systemError);

/// The error for a failed write. [any]
/// @return  4 for ENOENT, 513 for EACCES and EPERM, 640 for ENOSPC and EDQUOT, 642 for EROFS, 512
///          for anything else
[[nodiscard]] Error makeWriteError(const std::string& path, int systemError);

} // namespace gps
