// SPDX-License-Identifier: MIT
// Values for tests of several sentence kinds.

#pragma once

#include <gps/Value.h>

namespace support {

/// A point whose fields all have values, so that a change shows.
inline constexpr gps::GPSPoint kBefore{1, 2, 3, 1204243205, 77}; // 2008-02-29 00:00:05

/// A text that is longer than any field.
inline constexpr char kThirty[] = "abcdefghijklmnopqrstuvwxyz1234";

} // namespace support
