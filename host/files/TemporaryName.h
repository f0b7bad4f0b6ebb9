// SPDX-License-Identifier: MIT
// The names of files that are being written. A killed process leaves one behind. Used where files
// are written, and by backups, which copy data only. Stateless. [any]

#pragma once

#include <string_view>

namespace host {

/// The names of the host's own unfinished and temporary files begin with this, followed by the
/// number of the process, "-" and a counter.
inline constexpr std::string_view kHiddenPrefix = ".magellangps-";

/// Whether a file of this name is one that the host or the plug-in had not finished writing.
/// @param name  without the folder
[[nodiscard]] bool isTemporaryName(std::string_view name) noexcept;

} // namespace host
