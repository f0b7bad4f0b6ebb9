// SPDX-License-Identifier: MIT
// SettingsFile: the window's settings in the user's configuration file, which the command line
// reads, too, and which people write by hand. Stateless. [any]
//
// The table is [window]; its keys are "units", "utc", "tiles", "tile-file", "folder",
// "keep-backups", "new-only", "save-new" and "save-folder".

#pragma once

#include "host/window/settings/WindowSettings.h"

#include <gps/Error.h>

#include <optional>
#include <string>

namespace host {

/// Reads the settings. Those that the file lacks have their default; the number of backups, whether
/// times are in UTC, and whether a download is of what is new only, also those that the file gives
/// the command line.
/// @param settings  out: also after a failure everything that could be read
/// @return          the first mistake in the file, with its line; nullopt for a missing file
[[nodiscard]] std::optional<gps::Error> readSettings(const std::string& path,
                                                     WindowSettings& settings);

/// Changes the settings in the text of a configuration file. Everything else stays as it is:
/// comments, other keys and tables, their order. Settings that the text has already, and defaults
/// that it lacks, are not written.
/// @return  nullopt if the text is not TOML, or has the table in a form that cannot be changed
[[nodiscard]] std::optional<std::string> withSettings(const std::string& text,
                                                      const WindowSettings& settings);

/// Changes the settings in the file, atomically. Creates it if it is missing; where it is a link,
/// changes what it leads to.
/// @return  why it was not changed
[[nodiscard]] std::optional<gps::Error> writeSettings(const std::string& path,
                                                      const WindowSettings& settings);

} // namespace host
