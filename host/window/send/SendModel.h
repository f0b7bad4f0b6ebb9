// SPDX-License-Identifier: MIT
// SendModel: the rows of the list of records to send. [main loop]

#pragma once

#include "host/records/Export.h"
#include "host/records/RecordRow.h"
#include "host/records/RecordSet.h"
#include "host/window/base/PositionModel.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include <gtkmm.h>

namespace host {

class SendModel : public PositionModel {
public:
    static Glib::RefPtr<SendModel> create();

    /// Lists the ticked records: tracks, routes, then points. Call step() until it returns false,
    /// and look at the rows on the screen again.
    void set(std::shared_ptr<const RecordSet> records, const TickedRecords& ticked);

    [[nodiscard]] bool isEmpty() const noexcept { return places_.empty(); }

    /// The record at a position, without its figures, although it need not be shown yet. nullopt
    /// for one that is about to be removed.
    [[nodiscard]] std::optional<RecordRow> row(guint position) const;

protected:
    SendModel();

private:
    struct Place {
        RecordKind kind;
        std::size_t index;
    };

    void add(RecordKind kind, const std::vector<bool>& isTicked);

    std::shared_ptr<const RecordSet> records_;
    std::vector<Place> places_;
};

} // namespace host
