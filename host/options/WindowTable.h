// SPDX-License-Identifier: MIT
// WindowTable: the keys of the table with the desktop program's settings, and their values. Every
// program that shares the file checks them; the desktop program reads them. Stateless. [any]

#pragma once

#include "host/commandline/Configuration.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace host {

inline constexpr std::array<std::string_view, 3> kUnitNames{"metric", "imperial", "nautical"};
inline constexpr std::array<std::string_view, 3> kTileNames{"none", "openstreetmap", "file"};

/// The largest number of backups to keep.
inline constexpr std::int64_t kMostWindowBackups = 10000;

/// What is wrong with a key of the table, as a part of a sentence; empty if nothing is.
[[nodiscard]] std::string windowMistake(const ConfiguredOption& setting);

} // namespace host
