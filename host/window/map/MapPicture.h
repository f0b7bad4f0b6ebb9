// SPDX-License-Identifier: MIT
// MapPicture: what a worker has painted, and what is where in it. Made by one thread, then read by
// another one.

#pragma once

#include "host/records/RecordKind.h"
#include "host/window/map/MapView.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include <cairo.h>

namespace host {

/// A position in a picture, in pixels from its upper left corner.
struct PicturePoint {
    double x = 0;
    double y = 0;
};

/// What is at a position: a record, or a group of points that have no room beside each other.
struct MapHit {
    RecordRef record;      ///< the first one of a group
    std::size_t count = 1; ///< of the points in the group
    Extent extent{};       ///< of a point or a group
};

struct MapPicture {
    /// A point or a group, as a disc.
    struct Spot {
        PicturePoint center;
        double radius = 0;
        MapHit hit;
    };
    /// A piece of a track or a route.
    struct Trace {
        RecordRef record;
        std::vector<PicturePoint> points{};
    };

    MapView view{};
    std::shared_ptr<cairo_surface_t> surface{}; ///< ARGB32, of the view's size and density
    std::vector<Spot> spots{};                  ///< those on top last
    std::vector<Trace> traces{};                ///< those on top last

    /// What is nearest to a position, within a few pixels. Points are found before lines.
    [[nodiscard]] std::optional<MapHit> hitAt(const PicturePoint& position) const;
};

/// An empty picture, and how to draw on it: in pixels of the view.
[[nodiscard]] MapPicture newPicture(const MapView& view);
[[nodiscard]] std::shared_ptr<cairo_t> drawingOn(const MapPicture& picture);

} // namespace host
