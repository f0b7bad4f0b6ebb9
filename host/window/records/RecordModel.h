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

    /// How many rows are added or removed at a time. The list makes widgets for the first 200,
    /// which takes longer than a frame may.
    static constexpr guint kStep = 10;

    /// Shows other rows, or the same ones in another order. The number of rows on the screen
    /// follows with each step(). Nothing is reported about rows that have other records now:
    /// whoever shows them looks at them again.
    /// @param order  indices of the rows that are shown
    void set(Rows rows, std::vector<std::uint32_t> order);

    /// Adds or removes some rows, or all at once that the list has no widgets for.
    /// @return  whether there are still others
    bool step();

    [[nodiscard]] const std::vector<std::uint32_t>& order() const noexcept { return order_; }

    /// The row at a position, although it need not be shown yet. Null for one that is about to be
    /// removed.
    [[nodiscard]] const RecordRow* row(guint position) const;

    /// The position of a record; nullopt if it is not shown.
    [[nodiscard]] std::optional<guint> find(RecordKind kind, std::size_t index) const;

protected:
    RecordModel();

    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    void resize(guint count);

    Rows rows_;
    std::vector<std::uint32_t> order_;
    guint shown_ = 0; // positions
};

} // namespace host
