// SPDX-License-Identifier: MIT
// The rows stay where they are; another order is only other indices.

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
    setCount(static_cast<guint>(order_.size()));
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

} // namespace host
