// SPDX-License-Identifier: MIT
// Positions on the map of the world, and rectangles of it. Values. [any]

#pragma once

#include <limits>
#include <span>

namespace host {

/// A position on the map of the world: both coordinates go from 0 to 1, y southward. A line across
/// the 180th meridian goes on beyond 0 or 1.
struct MapPosition {
    double x = 0;
    double y = 0;
};

/// A rectangle; empty if left > right.
struct Extent {
    double left = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double top = std::numeric_limits<double>::infinity();
    double bottom = -std::numeric_limits<double>::infinity();

    [[nodiscard]] bool isEmpty() const noexcept { return left > right; }
    [[nodiscard]] MapPosition center() const noexcept
    {
        return {(left + right) / 2, (top + bottom) / 2};
    }
    [[nodiscard]] Extent shifted(double worlds) const noexcept
    {
        return {left + worlds, right + worlds, top, bottom};
    }
    [[nodiscard]] bool overlaps(const Extent& other) const noexcept
    {
        return left <= other.right && right >= other.left && top <= other.bottom &&
               bottom >= other.top;
    }

    void include(const MapPosition& position) noexcept;
    void include(const Extent& other) noexcept;
};

/// The extent of all of them. If it is the shorter way, it leads across the 180th meridian, beyond
/// the right edge of the world.
[[nodiscard]] Extent extentOfAll(std::span<const Extent> extents);

/// The latitude of a position, in degrees.
[[nodiscard]] double latitudeOf(const MapPosition& position) noexcept;

/// The longitude of a position, in degrees; within 180, whichever world it is in.
[[nodiscard]] double longitudeOf(const MapPosition& position) noexcept;

} // namespace host
