// SPDX-License-Identifier: MIT
// MapPath: a line on the map, in the coordinates of a web map, with as many points as a zoom level
// can show. One thread at a time.

#pragma once

#include "host/window/map/MapExtent.h"

#include <gps/GPSPoint.h>

#include <array>
#include <cstddef>
#include <vector>

namespace host {

/// Latitudes beyond it are drawn at the edge: 85.0511 degrees, where the map is as high as wide.
/// Source: the spherical Mercator projection, EPSG:3857.
inline constexpr double kMostLatitude = 85.0511287798066;

[[nodiscard]] MapPosition mapPositionOf(const gps::GPSPoint& point) noexcept;

/// An unbroken line. Its extents tell which parts of it can be skipped.
struct MapLine {
    static constexpr std::size_t kPart = 128; ///< points

    std::vector<MapPosition> positions{};
    std::vector<Extent> parts{}; ///< of kPart points each, and of the point after them
};

class MapPath {
public:
    static constexpr int kMostZoom = 22;
    static constexpr double kTileSize = 256; ///< pixels of the world's width at zoom level 0

    /// Appends a point. Points without valid coordinates are ignored.
    void add(const gps::GPSPoint& point);

    /// No line leads from the last point to the next one.
    void breakHere() { isBroken_ = true; }

    /// The unbroken lines of the path, without the points that are less than a pixel from the one
    /// before them at this zoom level. The first call for a level takes time.
    /// @return  valid until a point is added
    [[nodiscard]] const std::vector<MapLine>& linesAt(int zoom);

    /// The part of the world that the path is in; it may go on beyond the edges. Empty if there are
    /// no points.
    [[nodiscard]] const Extent& extent() const noexcept { return extent_; }

private:
    using Lines = std::vector<MapLine>;

    struct Level {
        bool isMade = false;
        bool isWhole = false; ///< the path's own lines do: hardly a point can be left out
        Lines lines{};
    };

    [[nodiscard]] Level levelAt(double pixel) const;
    void completeParts();

    Lines lines_;
    std::size_t points_ = 0;
    bool isBroken_ = true;
    bool hasLevels_ = false;
    Extent extent_;
    std::array<Level, kMostZoom + 1> levels_; // by zoom level
};

} // namespace host
