// SPDX-License-Identifier: MIT
// The colours of maps, those of the HTML page. Values. [any]

#pragma once

#include "host/window/map/LineColor.h"

#include <cairo.h>

namespace host {

using MapColor = LineColor;

struct MapColors {
    MapColor paper; ///< the land, and what sets lines and names off from it
    MapColor sea;
    MapColor ink;
    MapColor soft; ///< names of towns
    MapColor geocache;

    [[nodiscard]] static const MapColors& of(bool isDark);
};

inline void setColor(cairo_t* cairo, const MapColor& color, double opacity = 1)
{
    cairo_set_source_rgba(cairo, color.red, color.green, color.blue, opacity);
}

inline const MapColors& MapColors::of(bool isDark)
{
    static constexpr MapColors kLight{.paper = {0.984, 0.976, 0.953},
                                      .sea = {0.796, 0.875, 0.914},
                                      .ink = {0.13, 0.16, 0.19},
                                      .soft = {0.36, 0.4, 0.44},
                                      .geocache = {0.58, 0.376, 0}};
    static constexpr MapColors kDark{.paper = {0.157, 0.188, 0.22},
                                     .sea = {0.047, 0.094, 0.133},
                                     .ink = {0.9, 0.92, 0.94},
                                     .soft = {0.66, 0.7, 0.74},
                                     .geocache = {0.949, 0.722, 0.294}};
    return isDark ? kDark : kLight;
}

} // namespace host
