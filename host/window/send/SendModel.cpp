// SPDX-License-Identifier: MIT
// A hundred thousand items at once would take longer than several frames.

#include "host/window/send/SendModel.h"

#include "host/base/RecordText.h"
#include "host/window/send/SendItem.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <string>
#include <utility>

namespace host {
namespace {

RecordRow rowOf(RecordKind kind, std::size_t index, const gps::Dictionary& record)
{
    return {.kind = kind,
            .index = index,
            .isGeocache = kind == RecordKind::kPoint && gps::isGeocache(record),
            .name = std::string{textIn(record, "name")}};
}

} // namespace

// A name makes a type of its own, which the interface's functions are added to.
SendModel::SendModel() : Glib::ObjectBase("HostSendModel") {}

Glib::RefPtr<SendModel> SendModel::create()
{
    return Glib::make_refptr_for_instance(new SendModel);
}

void SendModel::set(std::shared_ptr<const RecordSet> records, const TickedRecords& ticked)
{
    const auto before = std::exchange(shown_, 0);
    items_changed(0, before, 0);
    records_ = std::move(records);
    places_.clear();
    add(RecordKind::kTrack, ticked.tracks);
    add(RecordKind::kRoute, ticked.routes);
    add(RecordKind::kPoint, ticked.points);
    step();
}

void SendModel::add(RecordKind kind, const std::vector<bool>& isTicked)
{
    for (std::size_t i = 0; i < isTicked.size(); ++i) {
        if (isTicked[i])
            places_.push_back({kind, i});
    }
}

bool SendModel::step()
{
    constexpr guint kWidgets = 200; // that the list has
    const auto all = static_cast<guint>(places_.size());
    const auto before = shown_;
    shown_ = before > kWidgets ? all : std::min(before + kStep, all);
    items_changed(before, 0, shown_ - before);
    return shown_ < all;
}

GType SendModel::get_item_type_vfunc()
{
    return G_TYPE_OBJECT;
}

guint SendModel::get_n_items_vfunc()
{
    return shown_;
}

gpointer SendModel::get_item_vfunc(guint position)
{
    if (position >= shown_)
        return nullptr;
    const auto [kind, index] = places_[position];
    const auto& record = kind == RecordKind::kTrack   ? records_->tracks[index].record
                         : kind == RecordKind::kRoute ? records_->routes[index].record
                                                      : records_->points[index].record;
    return SendItem::create(rowOf(kind, index, record))->gobj_copy();
}

} // namespace host
