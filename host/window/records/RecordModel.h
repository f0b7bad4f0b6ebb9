// SPDX-License-Identifier: MIT
// RecordModel: the rows of the list of records that are shown, in their order. Items are made for
// what is seen only. [main loop]

#pragma once

#include "host/records/RecordRow.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <gtkmm.h>

namespace host {

class RecordModel : public Gio::ListModel, public Glib::Object { // the interface comes first
public:
    using Rows = std::shared_ptr<const std::vector<RecordRow>>;

    static Glib::RefPtr<RecordModel> create();

    /// How many rows are added at a time. The list makes widgets for the first 200, which takes
    /// longer than a frame may.
    static constexpr guint kStep = 20;

    /// Shows other rows, or the same ones in another order: the first of them now, the others as
    /// grow() is called.
    /// @param order  indices of the rows that are shown
    void set(Rows rows, std::vector<std::uint32_t> order);

    /// Shows some more rows, or all if the list makes no widgets for them at once.
    /// @return  whether there are still others
    bool grow();

    [[nodiscard]] const std::vector<std::uint32_t>& order() const noexcept { return order_; }

    /// Precondition: there is a row at that position, although it need not be shown yet.
    [[nodiscard]] const RecordRow& row(guint position) const { return (*rows_)[order_[position]]; }

    /// The position of a record; nullopt if it is not shown.
    [[nodiscard]] std::optional<guint> find(RecordKind kind, std::size_t index) const;

protected:
    RecordModel();

    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    Rows rows_;
    std::vector<std::uint32_t> order_;
    guint shown_ = 0; // the first rows of order_
};

} // namespace host
