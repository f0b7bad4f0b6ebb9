// SPDX-License-Identifier: MIT
// TrackMap: the map with the records. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordKind.h"
#include "host/records/RecordSet.h"
#include "host/window/PathLayer.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

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
    struct Handlers {
        /// The user has clicked a record. It is not highlighted before select() is called.
        std::function<void(RecordKind kind, std::size_t index)> selected;
    };

    explicit TrackMap(Handlers handlers);

    /// Shows other records, all of them, and moves so that they are seen. Nothing is selected.
    void setRecords(std::shared_ptr<const RecordSet> records);

    /// Hides what is not ticked. Precondition: these are ticks of the records that are shown.
    void setTicked(const TickedRecords& ticked);

    /// Highlights one of the records that are shown, and no other. The map does not move.
    void select(RecordKind kind, std::size_t index);
    void clearSelection();

    /// Moves so that one of the records that are shown is seen. Nothing happens if it has no valid
    /// coordinates.
    void show(RecordKind kind, std::size_t index);

    /// Marks a position, for instance that of the pointer in a profile; nullopt: none.
    void setMarker(const std::optional<gps::GPSPoint>& position);

private:
    [[nodiscard]] std::size_t pathOf(RecordKind kind, std::size_t index) const;
    void moveTo(const Extent& extent);

    Handlers handlers_;
    std::size_t tracks_ = 0; ///< how many paths are tracks; routes follow

    MapContents contents_;
    ShumateSimpleMap* map_;
    ShumateLayer* layer_;
};

} // namespace host
