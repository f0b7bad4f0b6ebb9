// SPDX-License-Identifier: MIT
// The list asks for the items of the rows that it has widgets for, and for no others. It keeps the
// widgets of a row as long as it is told of no change, so an item is only a position.

#include "host/window/base/PositionModel.h"

#include <algorithm>
#include <utility>

namespace host {

void PositionModel::setCount(guint count)
{
    count_ = count;
    step();
}

bool PositionModel::step()
{
    constexpr guint kWidgets = 200 + kStep; // that the list has at most
    if (shown_ < count_)
        resize(shown_ >= kWidgets ? count_ : std::min(shown_ + kStep, count_));
    else if (shown_ > count_)
        resize(std::max(shown_ > kWidgets ? kWidgets : shown_ - std::min(shown_, kStep), count_));
    return shown_ != count_;
}

void PositionModel::resize(guint count)
{
    const auto before = std::exchange(shown_, count);
    const auto same = std::min(before, count);
    items_changed(same, before - same, count - same);
}

GType PositionModel::get_item_type_vfunc()
{
    return G_TYPE_OBJECT;
}

guint PositionModel::get_n_items_vfunc()
{
    return shown_;
}

gpointer PositionModel::get_item_vfunc(guint position)
{
    return position < shown_ ? g_object_new(G_TYPE_OBJECT, nullptr) : nullptr;
}

} // namespace host
