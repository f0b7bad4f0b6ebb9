// SPDX-License-Identifier: MIT
// SendModel: the rows of the list of records to send. Items are made for what is seen only. [main
// loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordKind.h"
#include "host/records/RecordSet.h"

#include <cstddef>
#include <memory>
#include <vector>

#include <gtkmm.h>

namespace host {

class SendModel : public Gio::ListModel, public Glib::Object { // the interface comes first
public:
    static Glib::RefPtr<SendModel> create();

    /// How many rows are added at a time: to make and to lay out the widgets of all takes longer
    /// than a frame may.
    static constexpr guint kStep = 10;

    /// Lists the ticked records: tracks, routes, then points. The first of them now, the others as
    /// step() is called.
    void set(std::shared_ptr<const RecordSet> records, const TickedRecords& ticked);

    /// Adds some more rows, or all that the list has no widgets for.
    /// @return  whether there are still others
    bool step();

    [[nodiscard]] bool isEmpty() const noexcept { return places_.empty(); }

protected:
    SendModel();

    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    struct Place {
        RecordKind kind;
        std::size_t index;
    };

    void add(RecordKind kind, const std::vector<bool>& isTicked);

    std::shared_ptr<const RecordSet> records_;
    std::vector<Place> places_;
    guint shown_ = 0; // the first of them
};

} // namespace host
