// SPDX-License-Identifier: MIT
// GPSPoint: the one packed value that crosses the boundary between a host and its plug-ins.
// A plain value: any thread may hold its own.

#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace gps {

/// A place and a moment. 40 bytes, laid out as its type code says: three doubles, then two 64-bit
/// integers.
struct GPSPoint {
    double latitude = 0;       ///< degrees, north positive
    double longitude = 0;      ///< degrees, east positive
    double altitude = 0;       ///< metres
    std::int64_t time = 0;     ///< seconds since 1970-01-01 00:00 UTC; 0: no time
    std::int64_t reserved = 0; ///< the host's own; carried through untouched

    /// Bit for bit, so that a NaN equals itself and -0 differs from 0: a boxed point comes back
    /// exactly as it went in.
    friend bool operator==(const GPSPoint& a, const GPSPoint& b) noexcept
    {
        return std::memcmp(&a, &b, sizeof(GPSPoint)) == 0;
    }
};

/// The type code under which a GPSPoint is boxed in a dictionary.
inline constexpr char kGPSPointTypeCode[] = "{?=dddqq}";

/// The record key under which a point is boxed.
inline constexpr char kPointKey[] = "point";

static_assert(sizeof(GPSPoint) == 40 && std::is_trivially_copyable_v<GPSPoint>);

} // namespace gps
