// SPDX-License-Identifier: MIT
// The framework-wide debug level. [any]

#pragma once

#include <cstdint>

namespace gps {

/// Sets the level; 0 disables debugging. [any]
void OrvSetDebugLevel(std::int32_t level);

/// Whether the level that was set is not 0 and at least as high as this one. [any]
[[nodiscard]] bool OrvDebugLevelIs(std::int32_t level);

} // namespace gps
