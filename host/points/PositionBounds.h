// SPDX-License-Identifier: MIT
// PositionBounds: the smallest rectangle that holds some positions. Updated for each point of a
// download. A plain value: any thread may hold its own.

#pragma once

#include <algorithm>
#include <limits>

namespace host {

/// In degrees. Positions on both sides of the 180 degree meridian give a rectangle around the
/// globe.
struct PositionBounds {
    double south = std::numeric_limits<double>::infinity();
    double west = std::numeric_limits<double>::infinity();
    double north = -std::numeric_limits<double>::infinity();
    double east = -std::numeric_limits<double>::infinity();

    [[nodiscard]] bool isEmpty() const noexcept { return south > north; }

    /// Precondition: neither is a NaN.
    void add(double latitude, double longitude) noexcept
    {
        south = std::min(south, latitude);
        north = std::max(north, latitude);
        west = std::min(west, longitude);
        east = std::max(east, longitude);
    }
};

} // namespace host
