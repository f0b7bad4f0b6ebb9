// SPDX-License-Identifier: MIT
// WindowTable: the keys of the table with the desktop program's settings, and their values. Every
// program that reads the file checks them; the desktop program uses them. Stateless. [any]

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Errors as values.
#define TOML_EXCEPTIONS 0
#define TOML_ENABLE_FORMATTERS 0
#include <toml++/toml.h>

namespace host {

/// The name of the table. Its keys are not options.
inline constexpr std::string_view kWindowTable = "window";

inline constexpr std::array<std::string_view, 3> kUnitNames{"metric", "imperial", "nautical"};
inline constexpr std::array<std::string_view, 3> kTileNames{"none", "openstreetmap", "file"};

/// The largest number of backups to keep.
inline constexpr std::int64_t kMostWindowBackups = 10000;

struct TableMistake {
    std::uint32_t line; ///< from 1
    std::string what;   ///< a part of a sentence
};

/// Finds the first value that its key cannot have, or else the first key that there is not.
[[nodiscard]] std::optional<TableMistake> findWindowMistake(const toml::table& table);

} // namespace host
