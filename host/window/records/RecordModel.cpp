// SPDX-License-Identifier: MIT
// The list asks for the items of the rows that it has widgets for, and for no others.

#include "host/window/records/RecordModel.h"

#include "host/window/records/RecordItem.h"

#include <algorithm>
#include <utility>

namespace host {

// A name makes a type of its own, which the interface's functions are added to.
RecordModel::RecordModel() : Glib::ObjectBase("HostRecordModel") {}

Glib::RefPtr<RecordModel> RecordModel::create()
{
    return Glib::make_refptr_for_instance(new RecordModel);
}

// In two steps: in one, the toolkit would make an item of each new row to find the selected one.
void RecordModel::set(Rows rows, std::vector<std::uint32_t> order)
{
    const auto before = std::exchange(shown_, 0);
    items_changed(0, before, 0);
    rows_ = std::move(rows);
    order_ = std::move(order);
    grow();
}

bool RecordModel::grow()
{
    constexpr guint kWidgets = 200; // that the list has
    const auto all = static_cast<guint>(order_.size());
    const auto before = shown_;
    shown_ = before > kWidgets ? all : std::min(before + kStep, all);
    items_changed(before, 0, shown_ - before);
    return shown_ < all;
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
    if (position >= shown_)
        return nullptr;
    const auto item = RecordItem::create(std::shared_ptr<const RecordRow>{rows_, &row(position)});
    return item->gobj_copy();
}

} // namespace host
