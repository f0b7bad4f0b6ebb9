// SPDX-License-Identifier: MIT
// MapView: which part of the world a picture shows, in which size and which colours. A value. [any]

#pragma once

#include "host/window/map/MapPath.h"

#include <cmath>

namespace host {

struct MapView {
    MapPosition center{0.5, 0.5};
    double scale = MapPath::kTileSize; ///< pixels of the world's width
    double width = 0;                  ///< pixels, of those that widgets are measured in
    double height = 0;
    int density = 1; ///< dots of the screen per pixel
    bool isDark = false;

    [[nodiscard]] double x(const MapPosition& position) const noexcept
    {
        return (position.x - center.x) * scale + width / 2;
    }
    [[nodiscard]] double y(const MapPosition& position) const noexcept
    {
        return (position.y - center.y) * scale + height / 2;
    }
    [[nodiscard]] int zoom() const noexcept
    {
        return static_cast<int>(std::floor(std::log2(scale / MapPath::kTileSize) + 1e-9));
    }

    /// What is seen, and some pixels around it.
    [[nodiscard]] Extent extent(double margin = 0) const noexcept
    {
        const double halfWidth = (width / 2 + margin) / scale;
        const double halfHeight = (height / 2 + margin) / scale;
        return {center.x - halfWidth, center.x + halfWidth, center.y - halfHeight,
                center.y + halfHeight};
    }
};

/// Calls a function with each number of worlds by which something has to be shifted to be seen.
template <typename Visit>
void visitShifts(const Extent& thing, const Extent& seen, const Visit& visit)
{
    if (thing.isEmpty() || thing.top > seen.bottom || thing.bottom < seen.top)
        return;
    const auto first = static_cast<int>(std::ceil(seen.left - thing.right));
    for (int shift = first; shift <= seen.right - thing.left; ++shift)
        visit(static_cast<double>(shift));
}

} // namespace host
