// SPDX-License-Identifier: MIT
// A hundred thousand rows at once would take longer than several frames, so each is made when it is
// seen.

#include "host/window/send/SendModel.h"

#include "host/base/RecordText.h"

#include <gps/Geocache.h>

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
    records_ = std::move(records);
    places_.clear();
    add(RecordKind::kTrack, ticked.tracks);
    add(RecordKind::kRoute, ticked.routes);
    add(RecordKind::kPoint, ticked.points);
    setCount(static_cast<guint>(places_.size()));
}

void SendModel::add(RecordKind kind, const std::vector<bool>& isTicked)
{
    for (std::size_t i = 0; i < isTicked.size(); ++i) {
        if (isTicked[i])
            places_.push_back({kind, i});
    }
}

std::optional<RecordRow> SendModel::row(guint position) const
{
    if (position >= places_.size())
        return std::nullopt;
    const auto [kind, index] = places_[position];
    const auto& record = kind == RecordKind::kTrack   ? records_->tracks[index].record
                         : kind == RecordKind::kRoute ? records_->routes[index].record
                                                      : records_->points[index].record;
    return rowOf(kind, index, record);
}

} // namespace host
