// SPDX-License-Identifier: MIT
// The list makes rows for what is seen only, and another thread searches and sorts: 100,000
// waypoints are as quick as ten.

#include "host/window/records/RecordList.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Disposal.h"
#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

struct SortingName {
    const char* name; ///< of the action's state
    const char* title;
    RecordSorting sorting;
};

constexpr std::array kSortings{
    SortingName{"received", marked("As Received"), RecordSorting::kAsReceived},
    SortingName{"name", marked("Name"), RecordSorting::kName},
    SortingName{"kind", marked("Kind"), RecordSorting::kKind},
    SortingName{"date", marked("Date"), RecordSorting::kDate},
    SortingName{"length", marked("Length"), RecordSorting::kLength},
    SortingName{"distance", marked("Distance from the Selected"), RecordSorting::kDistance},
};

RecordSorting sortingNamed(const Glib::ustring& name)
{
    for (const auto& sorting : kSortings) {
        if (name == sorting.name)
            return sorting.sorting;
    }
    return RecordSorting::kAsReceived;
}

Glib::RefPtr<Gio::Menu> sortMenu()
{
    const auto keys = Gio::Menu::create();
    for (const auto& sorting : kSortings)
        keys->append(tr(sorting.title), std::string{"records.sort::"} + sorting.name);
    const auto direction = Gio::Menu::create();
    direction->append(tr("Reverse Order"), "records.reverse");
    auto menu = Gio::Menu::create();
    menu->append_section(keys);
    menu->append_section(direction);
    return menu;
}

Gtk::Button* flatButton(const char* text, const std::function<void()>& clicked)
{
    auto* const button = Gtk::make_managed<Gtk::Button>(text);
    button->add_css_class("flat");
    button->signal_clicked().connect(clicked);
    return button;
}

RecordRowWidget& widgetOf(Gtk::ListItem& row)
{
    return dynamic_cast<RecordRowWidget&>(*row.get_child());
}

} // namespace

RecordList::RecordList(Handlers handlers)
    : Gtk::Box(Gtk::Orientation::VERTICAL), handlers_(std::move(handlers))
{
    addTools();
    addRows();
    ticksChanged();
}

void RecordList::addTools()
{
    search_.set_hexpand(true);
    search_.property_placeholder_text() = tr("Search");
    nameForReaders(search_, tr("Search the records"));
    search_.signal_search_changed().connect([this] {
        arrangement_.search = search_.get_text();
        arrange();
    });
    search_.signal_stop_search().connect([this] {
        search_.set_text("");
        view_.grab_focus();
    });
    const auto actions = Gio::SimpleActionGroup::create();
    const auto sort = actions->add_action_radio_string("sort", kSortings[0].name);
    sort->signal_change_state().connect([this, sort = sort.get()](const Glib::VariantBase& state) {
        sort->set_state(state);
        arrangement_.sorting = sortingNamed(
            Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(state).get());
        arrangement_.reference.reset();
        arrange();
    });
    const auto reverse = actions->add_action_bool("reverse", false);
    reverse->signal_change_state().connect(
        [this, reverse = reverse.get()](const Glib::VariantBase& state) {
            reverse->set_state(state);
            arrangement_.isDescending =
                Glib::VariantBase::cast_dynamic<Glib::Variant<bool>>(state).get();
            arrange();
        });
    insert_action_group("records", actions);
    auto* const sorting = Gtk::make_managed<Gtk::MenuButton>();
    sorting->set_icon_name("view-sort-descending-symbolic");
    sorting->set_menu_model(sortMenu());
    sorting->set_tooltip_text(tr("Sort"));
    nameForReaders(*sorting, tr("Sort"));
    auto* const searching = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kSmallGap);
    searching->set_margin(kSmallGap);
    searching->append(search_);
    searching->append(*sorting);
    append(*searching);

    auto* const ticking = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kSmallGap);
    ticking->set_margin_start(kSmallGap);
    ticking->set_margin_end(2 * kSmallGap);
    ticking->append(*flatButton(tr("Tick All"), [this] { tickShown(true); }));
    ticking->append(*flatButton(tr("None"), [this] { tickShown(false); }));
    count_.set_hexpand(true);
    count_.set_halign(Gtk::Align::END);
    count_.set_ellipsize(Pango::EllipsizeMode::END);
    count_.add_css_class("dim-label");
    ticking->append(count_);
    append(*ticking);
}

void RecordList::addRows()
{
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect(
        [](const Row& row) { row->set_child(*Gtk::make_managed<RecordRowWidget>()); });
    factory->signal_bind().connect([this](const Row& row) { bind(row); });
    factory->signal_unbind().connect([this](const Row& row) {
        bound_.erase(row.get());
        stale_.erase(row.get());
    });
    selection_->set_autoselect(false);
    selection_->set_can_unselect(true);
    selection_->property_selected().signal_changed().connect([this] { selectionChanged(); });
    view_.set_model(selection_);
    view_.set_factory(factory);
    view_.signal_activate().connect([this](guint position) {
        if (const auto* const row = model_->row(position))
            handlers_.activated(*row);
    });
    nameForReaders(view_, tr("Records"));
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE); // before the list takes it
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            return keyPressed(key, modifiers);
        },
        false);
    view_.add_controller(keys);

    nothing_.set_visible(false);
    nothing_.set_margin(4 * kSmallGap);
    nothing_.set_wrap(true);
    nothing_.add_css_class("dim-label");
    append(nothing_);
    auto* const scrolled = Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolled->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scrolled->set_vexpand(true);
    scrolled->set_child(view_);
    append(*scrolled);
}

void RecordList::setRecords(std::shared_ptr<const RecordSet> records)
{
    selected_.reset();
    arrangement_.reference.reset();
    show({}, {});
    records_ = std::move(records);
    ticks_ = RecordTicks{*records_};
    ticksChanged();
    arrange();
}

// A search that begins while the rows are computed computes them again: the result of the first
// computation is dropped.
void RecordList::arrange()
{
    if (arrangement_.sorting == RecordSorting::kDistance && !arrangement_.reference && rows_) {
        const auto* const from = selected_        ? find(selected_->kind, selected_->index)
                                 : rows_->empty() ? nullptr
                                                  : &rows_->front();
        if (from != nullptr)
            arrangement_.reference = from->position;
    }
    background_.run([this, records = records_, rows = rows_, arrangement = arrangement_]() mutable {
        if (!rows)
            rows = freedElsewhere(
                std::make_unique<const std::vector<RecordRow>>(recordRows(*records)));
        auto order = arranged(*rows, arrangement);
        return [this, rows = std::move(rows), order = std::move(order)] { show(rows, order); };
    });
}

// Without rows, the boxes on the screen belong to records that are not there any more.
void RecordList::show(RecordModel::Rows rows, std::vector<std::uint32_t> order)
{
    rows_ = rows;
    nothing_.set_visible(rows_ && order.empty() && !rows_->empty());
    nothing_.set_text(tr("No record has these words in its name or its details."));
    if (!rows_) {
        for (auto* const row : bound_)
            widgetOf(*row).disarm();
    }
    isSelecting_ = true;
    selection_->set_selected(GTK_INVALID_LIST_POSITION);
    model_->set(std::move(rows), std::move(order));
    isSelecting_ = false;
    stale_ = bound_; // now, since a row whose selection changes is bound once more
    isArranged_ = false;
    refillSoon();
}

// Making, filling and laying out a row takes up to half a millisecond, and the list has 200. The
// layout is part of the next frame, so only a few rows may change for each.
void RecordList::refillSoon()
{
    if (std::exchange(isArranging_, true))
        return;
    view_.add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
        isArranging_ = arrangeSome();
        return isArranging_;
    });
}

// A part of what is to be done; returns whether there is more.
bool RecordList::arrangeSome()
{
    if (!stale_.empty()) {
        refillSome();
        return true;
    }
    if (model_->step())
        return true;
    if (!std::exchange(isArranged_, true)) {
        isSelecting_ = true;
        selectPlace();
        isSelecting_ = false;
    }
    return false;
}

// The rows on the screen first.
void RecordList::refillSome()
{
    constexpr std::size_t kRows = 20;
    const auto middle = middleOfView();
    const auto distance = [middle](const Gtk::ListItem* row) {
        const auto position = row->get_position();
        return position > middle ? position - middle : middle - position;
    };
    std::vector<Gtk::ListItem*> rows{stale_.begin(), stale_.end()};
    std::sort(rows.begin(), rows.end(), [&](const Gtk::ListItem* a, const Gtk::ListItem* b) {
        return distance(a) < distance(b);
    });
    rows.resize(std::min(rows.size(), kRows));
    for (auto* const row : rows) {
        stale_.erase(row);
        fill(*row);
    }
}

// The position of the row there, more or less: rows differ in height.
guint RecordList::middleOfView() const
{
    const auto adjustment = view_.get_vadjustment();
    if (!adjustment || adjustment->get_upper() <= 0)
        return 0;
    const double middle = adjustment->get_value() + adjustment->get_page_size() / 2;
    return static_cast<guint>(std::max(0.0, middle / adjustment->get_upper()) *
                              model_->get_n_items());
}

void RecordList::selectPlace()
{
    const auto position =
        selected_ ? model_->find(selected_->kind, selected_->index) : std::nullopt;
    selection_->set_selected(position.value_or(GTK_INVALID_LIST_POSITION));
    if (position)
        gtk_widget_activate_action(GTK_WIDGET(view_.gobj()), "list.scroll-to-item", "u", *position);
}

void RecordList::select(RecordKind kind, std::size_t index)
{
    selected_ = {kind, index};
    isSelecting_ = true;
    selectPlace();
    isSelecting_ = false;
}

void RecordList::selectionChanged()
{
    const auto position = selection_->get_selected();
    if (isSelecting_ || position == GTK_INVALID_LIST_POSITION)
        return;
    const auto* const row = model_->row(position);
    if (row == nullptr)
        return;
    selected_ = {row->kind, row->index};
    handlers_.selected(*row);
}

// The rows are those of all tracks, then of all routes, then of all points.
const RecordRow* RecordList::find(RecordKind kind, std::size_t index) const
{
    if (!rows_)
        return nullptr;
    auto at = index;
    if (kind != RecordKind::kTrack)
        at += records_->tracks.size();
    if (kind == RecordKind::kPoint)
        at += records_->routes.size();
    return &(*rows_)[at];
}

void RecordList::bind(const Row& row)
{
    bound_.insert(row.get());
    stale_.erase(row.get());
    fill(*row.get());
}

void RecordList::fill(Gtk::ListItem& row)
{
    const auto* const record = model_->row(row.get_position());
    if (record == nullptr) // it is about to be removed
        return;
    widgetOf(row).show(lookOf(*record), ticks_.isTicked(record->kind, record->index),
                       [this, kind = record->kind, index = record->index](bool isTicked) {
                           tick(kind, index, isTicked);
                       });
}

RecordRowWidget::Look RecordList::lookOf(const RecordRow& row) const
{
    RecordRowWidget::Look look{.name = rowName(row),
                               .detail = rowDetail(*records_, row, presentation_),
                               .icon = row.isGeocache ? "package-x-generic-symbolic"
                                                      : "mark-location-symbolic"};
    if (row.kind == RecordKind::kTrack)
        look.line = lineColor(row.index);
    else if (row.kind == RecordKind::kRoute)
        look.line = lineColor(records_->tracks.size() + row.index);
    look.isDashed = row.kind == RecordKind::kRoute;
    return look;
}

// In the list itself, the key would select what is selected already.
bool RecordList::keyPressed(guint key, Gdk::ModifierType modifiers)
{
    const auto others = Gdk::ModifierType::CONTROL_MASK | Gdk::ModifierType::ALT_MASK;
    auto* const focus = get_root() != nullptr ? get_root()->get_focus() : nullptr;
    if (key != GDK_KEY_space || (modifiers & others) != Gdk::ModifierType{} || focus == nullptr)
        return false;
    auto* const row = dynamic_cast<RecordRowWidget*>(focus->get_first_child());
    if (row != nullptr)
        row->toggle();
    return row != nullptr;
}

void RecordList::tick(RecordKind kind, std::size_t index, bool isTicked)
{
    ticks_.tick(kind, index, isTicked);
    ticksChanged();
    handlers_.ticked();
}

void RecordList::tickShown(bool isTicked)
{
    if (!rows_)
        return;
    for (const auto i : model_->order())
        ticks_.tick((*rows_)[i].kind, (*rows_)[i].index, isTicked);
    stale_ = bound_;
    refillSoon();
    ticksChanged();
    handlers_.ticked();
}

void RecordList::ticksChanged()
{
    count_.set_text(Glib::ustring::compose(tr("%1 of %2 ticked"),
                                           numberText(static_cast<double>(ticks_.count()), 0),
                                           numberText(static_cast<double>(ticks_.total()), 0)));
}

void RecordList::setPresentation(const Presentation& presentation)
{
    presentation_ = presentation;
    stale_ = bound_;
    refillSoon();
}

void RecordList::startSearch()
{
    search_.grab_focus();
}

} // namespace host
