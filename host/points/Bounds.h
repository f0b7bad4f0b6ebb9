// SPDX-License-Identifier: MIT
// Bounds: a rectangle of latitudes and longitudes. A value. [any]

#pragma once

#include <algorithm>
#include <limits>

namespace host {

/// In degrees. A rectangle across the 180th meridian has an `east` above 180, never a `west` below
/// -180; so west <= east always holds, unless the rectangle is empty.
struct Bounds {
    double west = std::numeric_limits<double>::infinity();
    double east = -std::numeric_limits<double>::infinity();
    double south = std::numeric_limits<double>::infinity();
    double north = -std::numeric_limits<double>::infinity();

    [[nodiscard]] bool isEmpty() const noexcept { return west > east; }

    /// Includes a point. Knows nothing of the 180th meridian: points on both sides of it get bounds
    /// around the globe, unless their longitudes go on above 180.
    void extend(double longitude, double latitude) noexcept
    {
        west = std::min(west, longitude);
        east = std::max(east, longitude);
        south = std::min(south, latitude);
        north = std::max(north, latitude);
    }
};

} // namespace host
