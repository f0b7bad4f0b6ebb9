// SPDX-License-Identifier: MIT
// PathLayer: the layer of the map that draws tracks, routes and points. A widget. [main loop]

#pragma once

#include "host/window/MapPath.h"

#include <cstddef>
#include <optional>
#include <vector>

#include <shumate/shumate.h>

namespace host {

/// A line that the layer draws.
struct DrawnPath {
    MapPath path;
    std::size_t color = 0; ///< counts through the colours of tracks
    bool isDashed = false;
    bool isShown = true;
};

/// A waypoint or a geocache.
struct DrawnPoint {
    MapPosition position;
    std::size_t record = 0; ///< its index among the points of the records
    bool isShown = true;
};

/// What is highlighted: a path, or the point of a record.
struct DrawnSelection {
    bool isPoint = false;
    std::size_t index = 0;
};

struct MapContents {
    std::vector<DrawnPath> paths{};
    std::vector<DrawnPoint> points{};
    std::optional<DrawnSelection> selected{};
    std::optional<MapPosition> marker{};
};

/// Makes a layer that draws `contents`, which must outlive it. After a change of the contents call
/// gtk_widget_queue_draw().
/// @return  a floating reference
[[nodiscard]] ShumateLayer* newPathLayer(ShumateViewport* viewport, MapContents& contents);

} // namespace host
