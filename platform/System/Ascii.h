// SPDX-License-Identifier: MIT
// Whether a text is plain ASCII, the only characters that receivers can store. [any]

#pragma once

#include <string_view>

namespace gps {

/// Whether no byte is above 127. [any]
[[nodiscard]] bool isAscii(std::string_view text) noexcept;

} // namespace gps
