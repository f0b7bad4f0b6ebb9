// SPDX-License-Identifier: MIT
// String tables: the texts of a bundle in the user's language. [any]

#pragma once

#include <gps/Value.h>

#include <string_view>

namespace gps {

/// Parses lines of the form `"key" = "value";` with the one-letter escapes of C, and comments.
/// [any]
/// @return  the entries before the first syntax error
[[nodiscard]] Dictionary parseStringTable(std::string_view text);

} // namespace gps
