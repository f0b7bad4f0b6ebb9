// SPDX-License-Identifier: MIT
// Creates the errors of the host itself. They have the same type as the errors of drivers, so that
// one function can print both. Stateless. [any]

#pragma once

#include <gps/Error.h>

#include <string>
#include <string_view>

namespace host {

/// The domain of errors from the operating system. Their code is the errno.
inline constexpr char kSystemErrorDomain[] = "NSPOSIXErrorDomain";

/// The domain of all other errors of the host. Their code is 1.
inline constexpr char kHostErrorDomain[] = "magellangps";

/// An error of the host.
/// @param description  what happened; a sentence without its full stop
/// @param suggestion   what to do next; likewise; may be empty
/// @param path         the file or folder that it concerns; may be empty
[[nodiscard]] gps::Error hostError(std::string description, std::string suggestion,
                                   std::string path = {});

/// An error of the operating system, described by `what`, a colon and the system's text for it.
/// @param code  the errno
[[nodiscard]] gps::Error systemError(std::string_view what, std::string suggestion,
                                     std::string path, int code);

/// The error for std::bad_alloc.
[[nodiscard]] gps::Error lackOfMemory();

} // namespace host
