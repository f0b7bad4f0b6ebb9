// SPDX-License-Identifier: MIT
// The list asks for the items of the rows that it has widgets for, and for no others. It keeps the
// widgets of a row as long as it is told of no change, so an item is only a position.

#include "host/window/records/RecordModel.h"

#include <algorithm>
#include <utility>

namespace host {

// A name makes a type of its own, which the interface's functions are added to.
RecordModel::RecordModel() : Glib::ObjectBase("HostRecordModel") {}

Glib::RefPtr<RecordModel> RecordModel::create()
{
    return Glib::make_refptr_for_instance(new RecordModel);
}

void RecordModel::set(Rows rows, std::vector<std::uint32_t> order)
{
    rows_ = std::move(rows);
    order_ = std::move(order);
    step();
}

bool RecordModel::step()
{
    constexpr guint kWidgets = 200 + kStep; // that the list has at most
    const auto all = static_cast<guint>(order_.size());
    if (shown_ < all)
        resize(shown_ >= kWidgets ? all : std::min(shown_ + kStep, all));
    else if (shown_ > all)
        resize(std::max(shown_ > kWidgets ? kWidgets : shown_ - std::min(shown_, kStep), all));
    return shown_ != all;
}

void RecordModel::resize(guint count)
{
    const auto before = std::exchange(shown_, count);
    const auto same = std::min(before, count);
    items_changed(same, before - same, count - same);
}

const RecordRow* RecordModel::row(guint position) const
{
    return position < order_.size() ? &(*rows_)[order_[position]] : nullptr;
}

std::optional<guint> RecordModel::find(RecordKind kind, std::size_t index) const
{
    const auto found = std::find_if(order_.begin(), order_.end(), [&](std::uint32_t i) {
        return (*rows_)[i].kind == kind && (*rows_)[i].index == index;
    });
    return found == order_.end() ? std::nullopt
                                 : std::optional{static_cast<guint>(found - order_.begin())};
}

GType RecordModel::get_item_type_vfunc()
{
    return G_TYPE_OBJECT;
}

guint RecordModel::get_n_items_vfunc()
{
    return shown_;
}

gpointer RecordModel::get_item_vfunc(guint position)
{
    return position < shown_ ? g_object_new(G_TYPE_OBJECT, nullptr) : nullptr;
}

} // namespace host
