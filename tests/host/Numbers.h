// SPDX-License-Identifier: MIT
// Numbers that tests of positions and times have in common.

#pragma once

#include <cstdint>
#include <limits>

namespace support {

/// Degrees: the last digit of a coordinate that a device stores.
inline constexpr double kUnit = 1e-5 / 60;

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

inline constexpr std::int64_t kTen = 1717236000; ///< 2024-06-01 10:00:00 UTC

} // namespace support
