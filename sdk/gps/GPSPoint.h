// SPDX-License-Identifier: MIT
// GPSPoint: a position and a time, the one packed value that crosses the boundary between a host
// and its plug-ins. A plain value: each thread may hold its own [any].

#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace gps {

/// 40 bytes with the layout of its type code: three doubles, then two 64-bit integers.
struct GPSPoint {
    double latitude = 0;       ///< degrees, north positive
    double longitude = 0;      ///< degrees, east positive
    double altitude = 0;       ///< metres; a NaN in a record to send: unknown
    std::int64_t time = 0;     ///< seconds since 1970-01-01 00:00 UTC; 0 means unknown
    std::int64_t reserved = 0; ///< belongs to the host; drivers never change it

    /// Compares all bits: a NaN equals itself and -0 differs from 0, so that a point is equal to
    /// another one only if it is an exact copy.
    friend bool operator==(const GPSPoint& a, const GPSPoint& b) noexcept
    {
        return std::memcmp(&a, &b, sizeof(GPSPoint)) == 0;
    }
};

/// The type code of a GPSPoint that is boxed in a dictionary.
inline constexpr char kGPSPointTypeCode[] = "{?=dddqq}";

/// The key of a record's boxed point.
inline constexpr char kPointKey[] = "point";

static_assert(sizeof(GPSPoint) == 40 && std::is_trivially_copyable_v<GPSPoint>);

} // namespace gps
