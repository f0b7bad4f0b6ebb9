// SPDX-License-Identifier: MIT
// MapPath: a line on the map, in the coordinates of a web map, with as many points as a zoom level
// can show. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace host {

/// A position on the map of the world: both coordinates go from 0 to 1, y southward.
struct MapPosition {
    double x = 0;
    double y = 0;
};

/// Latitudes beyond it are drawn at the edge: 85.0511 degrees, where the map is as high as wide.
/// Source: the spherical Mercator projection, EPSG:3857.
[[nodiscard]] MapPosition mapPositionOf(const gps::GPSPoint& point) noexcept;

class MapPath {
public:
    static constexpr int kMostZoom = 22;
    static constexpr double kTileSize = 256; ///< pixels of the world's width at zoom level 0

    /// Appends a point. Points without valid coordinates are ignored.
    void add(const gps::GPSPoint& point);

    /// No line leads from the last point to the next one.
    void breakHere() { isBroken_ = true; }

    /// The unbroken lines of the path, without the points that are less than a pixel from the one
    /// before them at this zoom level.
    /// @return  valid until a point is added
    [[nodiscard]] const std::vector<std::vector<MapPosition>>& linesAt(int zoom);

    /// All points, line by line.
    [[nodiscard]] const std::vector<std::vector<MapPosition>>& lines() const noexcept
    {
        return lines_;
    }

private:
    using Lines = std::vector<std::vector<MapPosition>>;

    Lines lines_;
    bool isBroken_ = true;
    std::array<Lines, kMostZoom + 1> simplified_; // by zoom level; empty until it is needed
};

} // namespace host
