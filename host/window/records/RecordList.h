// SPDX-License-Identifier: MIT
// RecordList: the records by name, each with a box to tick; searched and sorted. [main loop]

#pragma once

#include "host/records/RecordOrder.h"
#include "host/records/RecordSet.h"
#include "host/records/RecordTicks.h"
#include "host/window/base/Background.h"
#include "host/window/records/RecordModel.h"
#include "host/window/records/RecordRowWidget.h"
#include "host/words/RecordDetail.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include <gtkmm.h>

namespace host {

class RecordList : public Gtk::Box {
public:
    struct Handlers {
        std::function<void()> ticked;                        ///< records were ticked or unticked
        std::function<void(const RecordRow& row)> selected;  ///< by the user
        std::function<void(const RecordRow& row)> activated; ///< with Enter or two clicks
    };

    explicit RecordList(Handlers handlers);
    RecordList(const RecordList&) = delete;
    RecordList& operator=(const RecordList&) = delete;

    /// Lists other records, all of them ticked; none is selected.
    void setRecords(std::shared_ptr<const RecordSet> records);

    /// The records that are ticked.
    [[nodiscard]] const TickedRecords& ticked() const noexcept { return ticks_.records(); }

    /// Selects a record, if the list shows it, without a call of the handler.
    void select(RecordKind kind, std::size_t index);

    /// The row of a record; null while the list is being made.
    [[nodiscard]] const RecordRow* find(RecordKind kind, std::size_t index) const;

    void setPresentation(const Presentation& presentation);

    /// Moves the keyboard to the search entry.
    void startSearch();

private:
    using Row = Glib::RefPtr<Gtk::ListItem>;

    struct Place {
        RecordKind kind = RecordKind::kPoint;
        std::size_t index = 0;
    };

    void addTools();
    void addRows();
    void bind(const Row& row);
    void fill(Gtk::ListItem& row);
    void refillSoon();
    void refillSome();
    [[nodiscard]] guint middleOfView() const;
    [[nodiscard]] bool arrangeSome();
    [[nodiscard]] RecordRowWidget::Look lookOf(const RecordRow& row) const;
    [[nodiscard]] bool keyPressed(guint key, Gdk::ModifierType modifiers);
    void tick(RecordKind kind, std::size_t index, bool isTicked);
    void tickShown(bool isTicked);
    void ticksChanged();
    void arrange();
    void show(RecordModel::Rows rows, std::vector<std::uint32_t> order);
    void selectPlace();
    void selectionChanged();

    Handlers handlers_;
    Presentation presentation_;
    std::shared_ptr<const RecordSet> records_ = std::make_shared<const RecordSet>();
    RecordModel::Rows rows_; // null while they are computed
    RecordTicks ticks_;
    RecordArrangement arrangement_;
    std::optional<Place> selected_;
    bool isArranged_ = true;   // the selected row was looked for since the last change
    bool isSelecting_ = false; // the selection changes, but not by the user

    std::set<Gtk::ListItem*> bound_; // the rows that have widgets
    std::set<Gtk::ListItem*> stale_; // those of them that still show what was there before
    Gtk::SearchEntry search_;
    Gtk::Label count_;
    Gtk::Label nothing_;
    Gtk::ListView view_;
    Glib::RefPtr<RecordModel> model_ = RecordModel::create();
    Glib::RefPtr<Gtk::SingleSelection> selection_ = Gtk::SingleSelection::create(model_);
    bool isArranging_ = false; // rows are added, removed or filled, some for each frame
    Background background_;
};

} // namespace host
