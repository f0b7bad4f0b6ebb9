// SPDX-License-Identifier: MIT
// Whether a text is plain ASCII, which is all that receivers' files and texts can hold. Stateless:
// [any] thread.

#pragma once

#include <string_view>

namespace gps {

/// Whether no byte is above 127. Looks at 32 bytes at a time: whole files go through it.
[[nodiscard]] bool isAscii(std::string_view text) noexcept;

} // namespace gps
