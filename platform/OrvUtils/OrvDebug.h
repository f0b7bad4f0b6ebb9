// SPDX-License-Identifier: MIT
// The framework-wide debug level. [any]

#pragma once

#include <cstdint>

namespace gps {

/// Sets the level; 0 is off.
void OrvSetDebugLevel(std::int32_t level);

/// Whether debugging is on at a level: the level set is at least as high, and not 0.
[[nodiscard]] bool OrvDebugLevelIs(std::int32_t level);

} // namespace gps
