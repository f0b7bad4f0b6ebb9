// SPDX-License-Identifier: MIT
// The list makes rows for what is seen only, so 100,000 waypoints take no longer than ten.

#include "host/window/RecordList.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/points/TrackFigures.h"
#include "host/window/Accessible.h"

#include <fmt/format.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

std::string nameOf(const gps::Dictionary& record, const char* unnamed)
{
    constexpr std::size_t kMostShown = 60; // characters, so that the details keep their place
    const auto name = displayText(textIn(record, "name"), kMostShown);
    return name.empty() ? unnamed : name;
}

std::string countText(std::size_t points)
{
    return fmt::format("{} {}", points, points == 1 ? "point" : "points");
}

Glib::RefPtr<RecordItem> itemOf(const KeptTrack& track, std::size_t index)
{
    PathLength length;
    for (const auto& point : track.points)
        length.add(point);
    return RecordItem::create(
        RecordItem::Kind::kTrack, index, nameOf(track.record, "Track without a name"),
        fmt::format("Track, {:.1f} km, {}", length.kilometres(), countText(track.points.size())));
}

Glib::RefPtr<RecordItem> itemOf(const KeptRoute& route, std::size_t index)
{
    return RecordItem::create(RecordItem::Kind::kRoute, index,
                              nameOf(route.record, "Route without a name"),
                              fmt::format("Route, {}", countText(route.points.size())));
}

Glib::RefPtr<RecordItem> itemOf(const KeptPoint& point, std::size_t index)
{
    return RecordItem::create(RecordItem::Kind::kPoint, index,
                              nameOf(point.record, "Waypoint without a name"),
                              displayText(textIn(point.record, "symbol")));
}

template <typename Record>
void addItems(const std::vector<Record>& records, std::vector<Glib::RefPtr<RecordItem>>& items)
{
    for (std::size_t i = 0; i < records.size(); ++i)
        items.push_back(itemOf(records[i], i));
}

std::vector<bool>& valuesOf(TickedRecords& ticked, RecordItem::Kind kind)
{
    switch (kind) {
    case RecordItem::Kind::kTrack:
        return ticked.tracks;
    case RecordItem::Kind::kRoute:
        return ticked.routes;
    case RecordItem::Kind::kPoint:
        break;
    }
    return ticked.points;
}

// The widgets of one row. The list uses them for one record after another.
class Row : public Gtk::Box {
public:
    Row() : Gtk::Box(Gtk::Orientation::HORIZONTAL, 12)
    {
        box_.set_hexpand(true);
        set_margin_start(6);
        set_margin_end(12);
        detail_.add_css_class("dim-label");
        append(box_);
        append(detail_);
    }

    void show(const RecordItem& item, std::function<void(bool isTicked)> toggled)
    {
        toggled_.disconnect(); // the record that was shown before must not hear of the change
        box_.set_label(item.name);
        box_.set_active(item.isTicked);
        detail_.set_text(item.detail);
        toggled_ = box_.signal_toggled().connect(
            [this, toggled = std::move(toggled)] { toggled(box_.get_active()); });
    }

private:
    Gtk::CheckButton box_;
    Gtk::Label detail_;
    sigc::connection toggled_;
};

} // namespace

RecordList::RecordList(Handlers handlers) : handlers_(std::move(handlers))
{
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect(
        [](const Glib::RefPtr<Gtk::ListItem>& row) { row->set_child(*Gtk::make_managed<Row>()); });
    factory->signal_bind().connect([this](const Glib::RefPtr<Gtk::ListItem>& row) { bind(row); });
    selection_->set_autoselect(false);
    selection_->property_selected().signal_changed().connect([this] {
        if (selection_->get_selected() != GTK_INVALID_LIST_POSITION)
            handlers_.selected(*items_->get_item(selection_->get_selected()));
    });
    view_.set_model(selection_);
    view_.set_factory(factory);
    nameForReaders(view_, "Records");
    set_child(view_);
}

void RecordList::setRecords(const RecordSet& records)
{
    ticked_ = TickedRecords::all(records);
    std::vector<Glib::RefPtr<RecordItem>> items;
    addItems(records.tracks, items);
    addItems(records.routes, items);
    addItems(records.points, items);
    items_->splice(0, items_->get_n_items(), items);
}

void RecordList::bind(const Glib::RefPtr<Gtk::ListItem>& row)
{
    const auto item = std::dynamic_pointer_cast<RecordItem>(row->get_item());
    dynamic_cast<Row&>(*row->get_child()).show(*item, [this, item](bool isTicked) {
        tick(*item, isTicked);
    });
}

void RecordList::tick(RecordItem& item, bool isTicked)
{
    item.isTicked = isTicked;
    valuesOf(ticked_, item.kind)[item.index] = isTicked;
    handlers_.ticked();
}

} // namespace host
