// SPDX-License-Identifier: MIT
// TrackMap: the map with the records. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordKind.h"
#include "host/records/RecordSet.h"
#include "host/window/base/Background.h"
#include "host/window/map/MapRecords.h"
#include "host/window/map/PictureLayer.h"
#include "host/window/map/RecordPainter.h"
#include "host/window/settings/WindowSettings.h"
#include "host/words/FigureText.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <gtkmm.h>

namespace host {

class TrackMap : public Gtk::Box {
public:
    struct Handlers {
        /// The user has clicked a record. It is not highlighted before select() is called.
        std::function<void(RecordKind kind, std::size_t index)> selected;
    };

    explicit TrackMap(Handlers handlers);
    ~TrackMap() override;
    TrackMap(const TrackMap&) = delete;
    TrackMap& operator=(const TrackMap&) = delete;

    /// Shows other records, all of them, and moves so that they are seen. Nothing is selected.
    void setRecords(std::shared_ptr<const RecordSet> records);

    /// Hides what is not ticked. Precondition: these are ticks of the records that were set last.
    void setTicked(const TickedRecords& ticked);

    /// Highlights one of the records that were set last, and no other. The map does not move.
    void select(RecordKind kind, std::size_t index);
    void clearSelection();

    /// Moves so that one of the records that were set last is seen. Nothing happens if it has no
    /// valid coordinates.
    void show(RecordKind kind, std::size_t index);

    /// Moves so that all records are seen.
    void showEverything();

    /// Marks a position, for instance that of the pointer in a profile; nullopt: none.
    void setMarker(const std::optional<gps::GPSPoint>& position);

    /// Changes the units of the scale.
    void setUnits(UnitSystem units);

    /// Shows another map below the records. A file is opened first; if it cannot be used, the map
    /// says why, and stays as it is.
    /// @param file  the path of the file; only for that kind
    void setSource(WindowSettings::Tiles tiles, const std::string& file = {});
    [[nodiscard]] WindowSettings::Tiles source() const noexcept { return shownSource_; }

    /// Emitted once another map is shown, with what setSource() was called with.
    using SourceChanged = sigc::signal<void(WindowSettings::Tiles tiles, const std::string& file)>;
    [[nodiscard]] SourceChanged& signalSourceChanged() noexcept { return sourceChanged_; }

private:
    void addControls();
    void addInput();
    [[nodiscard]] Background::Result prepared(WindowSettings::Tiles tiles, const std::string& file);
    void changeSource(WindowSettings::Tiles tiles, const std::string& file,
                      ShumateMapSource* source, const std::string& attribution);
    void setTiles(ShumateMapSource* source);
    void setProjection();
    void setContents(std::shared_ptr<MapRecords> contents);
    void repaint();
    void updateNote();
    void click(double x, double y);
    [[nodiscard]] bool describe(double x, double y, const Glib::RefPtr<Gtk::Tooltip>& tooltip);
    [[nodiscard]] bool pressKey(guint key);
    void zoomBy(double levels);
    void moveBy(double x, double y);
    void moveTo(const Extent& extent);
    void fit();
    void resized();

    Handlers handlers_;
    ShumateMap* map_;
    ShumateViewport* viewport_; // owned by the map
    ShumateScale* scale_;
    ShumateLicense* license_;
    ShumateMapSource* source_ = nullptr; // null: coasts only
    ShumateLayer* tiles_ = nullptr;
    ShumateMarkerLayer* markers_;
    PictureLayer coasts_;
    PictureLayer drawn_;
    ShumateMarker* marker_ = nullptr; // owned by its layer
    Gtk::Overlay overlay_;
    Gtk::Box controls_{Gtk::Orientation::HORIZONTAL, 6}; // a low map has room for one row
    Gtk::Label note_;

    std::shared_ptr<const RecordSet> records_;
    RecordScene scene_;               // its records are those of records_, once they are ready
    std::optional<RecordRef> wanted_; // to be shown once they are
    Extent fitted_;                   // what the map has to show while the user does not move it
    bool isMoving_ = false;           // by us
    std::shared_ptr<RecordPainter> painter_ = std::make_shared<RecordPainter>(); // of the worker
    WindowSettings::Tiles shownSource_ = WindowSettings::Tiles::kNone;
    SourceChanged sourceChanged_;
    std::string sourceFailure_; // why the map that was chosen last is not shown
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true); // read and set by the main loop
    Background opening_;
    Background preparation_; // last: its work ends before the others are destroyed
};

} // namespace host
