// SPDX-License-Identifier: MIT
// StateFolder: where the host keeps backups and saved state, and the names of what it keeps there;
// where the user's configuration is.
// Stateless, but reads the environment. [any]

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The program's folder for state: below $XDG_STATE_HOME if that is an absolute path, otherwise
/// below
/// ~/.local/state.
/// @return  nullopt if the user has no home folder either
[[nodiscard]] std::optional<std::string> stateFolder();

/// The program's folder for files that can be made again: below $XDG_CACHE_HOME or ~/.cache,
/// likewise.
[[nodiscard]] std::optional<std::string> cacheFolder();

/// The user's file with defaults of options: magellangps/config.toml below $XDG_CONFIG_HOME if that
/// is an absolute path, otherwise below ~/.config. It need not exist.
/// @return  nullopt if the user has no home folder either
[[nodiscard]] std::optional<std::string> configurationFile();

/// A device's identifier as a file name: at most 64 letters, digits and "-"; any other byte becomes
/// "_". An empty identifier becomes "device".
[[nodiscard]] std::string nameOfDevice(std::string_view identifier);

/// The present time in UTC, as YYYYMMDDTHHMMSSZ.
[[nodiscard]] std::string nameOfNow();

} // namespace host
