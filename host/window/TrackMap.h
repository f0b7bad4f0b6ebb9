// SPDX-License-Identifier: MIT
// TrackMap: the map with the records. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordSet.h"
#include "host/window/PathLayer.h"

#include <cstddef>
#include <limits>

#include <gtkmm.h>

namespace host {

/// A part of the world's map; empty if left > right.
struct Extent {
    double left = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double top = std::numeric_limits<double>::infinity();
    double bottom = -std::numeric_limits<double>::infinity();

    void include(const MapPosition& position) noexcept;
    void include(const MapPath& path) noexcept;
};

class TrackMap : public Gtk::Box {
public:
    TrackMap();

    /// Shows other records, all of them, and moves so that they are seen.
    void setRecords(const RecordSet& records);

    /// Hides what is not ticked. Precondition: these are ticks of the records that are shown.
    void setTicked(const TickedRecords& ticked);

    /// Moves so that one of the records that are shown is seen. Nothing happens if it has no valid
    /// coordinates.
    void showTrack(std::size_t index);
    void showRoute(std::size_t index);
    void showPoint(std::size_t index);

private:
    void showPath(std::size_t index);
    void moveTo(const Extent& extent);

    std::size_t tracks_ = 0; ///< how many paths are tracks; routes follow

    MapContents contents_;
    ShumateSimpleMap* map_;
    ShumateLayer* layer_;
};

} // namespace host
