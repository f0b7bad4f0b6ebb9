// SPDX-License-Identifier: MIT
// RecordItem: a row of the list of records. [main loop]

#pragma once

#include "host/records/RecordRow.h"

#include <memory>
#include <utility>

#include <glibmm.h>

namespace host {

class RecordItem : public Glib::Object {
public:
    static Glib::RefPtr<RecordItem> create(std::shared_ptr<const RecordRow> row)
    {
        return Glib::make_refptr_for_instance(new RecordItem{std::move(row)});
    }

    [[nodiscard]] const RecordRow& row() const noexcept { return *row_; }

private:
    explicit RecordItem(std::shared_ptr<const RecordRow> row) : row_(std::move(row)) {}

    std::shared_ptr<const RecordRow> row_;
};

} // namespace host
