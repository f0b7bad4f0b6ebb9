// SPDX-License-Identifier: MIT
// RecordPage: the list of records, the map, and the selected record's profile and details. They
// share one selection. Where there is no room for both, the map covers the list, and is itself
// covered by profile or details. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordSet.h"
#include "host/window/map/TrackMap.h"
#include "host/window/profile/ProfilePane.h"
#include "host/window/records/RecordDetails.h"
#include "host/window/records/RecordList.h"
#include "host/window/settings/WindowSettings.h"
#include "host/words/RecordDetail.h"

#include <memory>
#include <optional>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

class RecordPage : public Gtk::Box {
public:
    RecordPage();

    /// Shows other records, all of them ticked; none is selected.
    void setRecords(std::shared_ptr<const RecordSet> records);

    /// The records that are ticked.
    [[nodiscard]] const TickedRecords& ticked() const noexcept { return list_.ticked(); }

    /// Shows a sentence over the list; hides it if the text is empty.
    void setNote(const Glib::ustring& note);

    void setSettings(const WindowSettings& settings);

    /// Moves the keyboard to the search entry.
    void startSearch();

    /// For what concerns the map alone.
    [[nodiscard]] TrackMap& map() noexcept { return map_; }

private:
    [[nodiscard]] GtkWidget* mapColumn();
    void select(const RecordRow& row);
    void showSelected(const RecordRow& row);
    void showDetails(const StretchFigures* figures);
    void selectFromMap(RecordKind kind, std::size_t index);
    void showMap();
    void fold();
    void showPanel(bool wasTrack);

    std::shared_ptr<const RecordSet> records_ = std::make_shared<const RecordSet>();
    Presentation presentation_;
    std::optional<RecordRow> selected_;

    TrackMap map_;
    RecordList list_;
    ProfilePane profile_;
    RecordDetails details_;
    Gtk::Paned column_{Gtk::Orientation::VERTICAL}; // map and panel
    Gtk::Box toList_{Gtk::Orientation::HORIZONTAL};
    Gtk::Label selectedName_;
    Gtk::Label note_;
    Gtk::Label nothing_;
    Gtk::Stack panel_;
    Gtk::Box narrowMap_; // holds the map while the window is narrow
    bool isFolded_ = false;
    Gtk::StackSwitcher switcher_;
    Gtk::Button toMap_;
    AdwLeaflet* leaflet_;
};

} // namespace host
