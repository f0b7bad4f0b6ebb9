// SPDX-License-Identifier: MIT
// hashOf: the checksum that backups and saved state carry, to detect damage. Stateless. [any]

#pragma once

#include <string>
#include <string_view>

namespace host {

/// A 64-bit checksum as 16 hexadecimal digits. Detects damage, not forgery.
/// Source: FNV-1a, 64 bits, draft-eastlake-fnv.
[[nodiscard]] std::string hashOf(std::string_view bytes);

/// Whether a text has the form that hashOf() returns.
[[nodiscard]] bool isHash(std::string_view text) noexcept;

} // namespace host
