// SPDX-License-Identifier: MIT
// RecordList: the records by name, each with a box to tick. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordSet.h"
#include "host/window/RecordItem.h"

#include <functional>

#include <gtkmm.h>

namespace host {

class RecordList : public Gtk::ScrolledWindow {
public:
    struct Handlers {
        std::function<void()> ticked;                         ///< a record was ticked or unticked
        std::function<void(const RecordItem& item)> selected; ///< to be shown on the map
    };

    explicit RecordList(Handlers handlers);

    /// Lists other records, all of them ticked.
    void setRecords(const RecordSet& records);

    /// The records that are ticked.
    [[nodiscard]] const TickedRecords& ticked() const noexcept { return ticked_; }

private:
    void bind(const Glib::RefPtr<Gtk::ListItem>& row);
    void tick(RecordItem& item, bool isTicked);

    Handlers handlers_;
    TickedRecords ticked_;
    Glib::RefPtr<Gio::ListStore<RecordItem>> items_ = Gio::ListStore<RecordItem>::create();
    Glib::RefPtr<Gtk::SingleSelection> selection_ = Gtk::SingleSelection::create(items_);
    Gtk::ListView view_;
};

} // namespace host
