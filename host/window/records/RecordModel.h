// SPDX-License-Identifier: MIT
// RecordModel: the rows of the list of records that are shown, in their order. [main loop]

#pragma once

#include "host/records/RecordRow.h"
#include "host/window/base/PositionModel.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <gtkmm.h>

namespace host {

class RecordModel : public PositionModel {
public:
    using Rows = std::shared_ptr<const std::vector<RecordRow>>;

    static Glib::RefPtr<RecordModel> create();

    /// Shows other rows, or the same ones in another order. Call step() until it returns
    /// false, and look at the rows on the screen again.
    /// @param order  indices of the rows that are shown
    void set(Rows rows, std::vector<std::uint32_t> order);

    [[nodiscard]] const std::vector<std::uint32_t>& order() const noexcept { return order_; }

    /// The row at a position, although it need not be shown yet. Null for one that is about to be
    /// removed.
    [[nodiscard]] const RecordRow* row(guint position) const;

    /// The position of a record; nullopt if it is not shown.
    [[nodiscard]] std::optional<guint> find(RecordKind kind, std::size_t index) const;

protected:
    RecordModel();

private:
    Rows rows_;
    std::vector<std::uint32_t> order_;
};

} // namespace host
