// SPDX-License-Identifier: MIT
// RecordPainter: paints tracks, routes, waypoints and geocaches, with their names where there is
// room. Used by one worker at a time.

#pragma once

#include "host/records/Export.h"
#include "host/window/map/MapPicture.h"
#include "host/window/map/MapRecords.h"
#include "host/window/map/PointIcons.h"

#include <memory>
#include <optional>

namespace host {

/// What is painted.
struct RecordScene {
    std::shared_ptr<MapRecords> records{};
    std::shared_ptr<const TickedRecords> ticked{}; ///< the others are hidden
    std::optional<RecordRef> selected{};           ///< on top of the others, and wider
};

class RecordPainter {
public:
    [[nodiscard]] MapPicture paint(const RecordScene& scene, const MapView& view);

private:
    PointIcons icons_;
};

} // namespace host
