// SPDX-License-Identifier: MIT
// Opens a file with the browser of the user's desktop. Reads the environment. [host thread]

#pragma once

#include <gps/Error.h>

#include <optional>
#include <string>

namespace host {

/// Whether the user has a desktop here, and not only a terminal.
[[nodiscard]] bool hasDesktop();

/// Opens a file as the desktop does, with the program "xdg-open". Does not wait until the browser
/// ends.
/// @param path  absolute
/// @return      why it was not opened, as far as that shows within a few seconds
[[nodiscard]] std::optional<gps::Error> openInBrowser(const std::string& path);

} // namespace host
