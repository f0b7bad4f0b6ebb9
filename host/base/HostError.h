// SPDX-License-Identifier: MIT
// The host's own failures, in the form that drivers' failures have. Stateless: [any] thread.

#pragma once

#include <gps/Error.h>

#include <string>
#include <string_view>

namespace host {

/// The domain of what the operating system refused the host.
inline constexpr char kSystemErrorDomain[] = "NSPOSIXErrorDomain";

/// The domain of every other failure of the host's own.
inline constexpr char kHostErrorDomain[] = "magellangps";

/// A failure of the host's own. @param path  the file or folder it is about; may be empty
[[nodiscard]] gps::Error hostError(std::string description, std::string suggestion,
                                   std::string path = {});

/// A refusal by the operating system: `what`, a colon and the system's own text.
[[nodiscard]] gps::Error systemError(std::string_view what, std::string suggestion,
                                     std::string path, int code);

} // namespace host
