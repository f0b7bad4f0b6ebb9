// SPDX-License-Identifier: MIT
// SendItem: a row of the list of records to send. [main loop]

#pragma once

#include "host/records/RecordRow.h"
#include "host/words/RecordDetail.h"

#include <cstddef>
#include <string>

#include <glibmm.h>

namespace host {

class SendItem : public Glib::Object {
public:
    static Glib::RefPtr<SendItem> create(const RecordRow& row)
    {
        return Glib::make_refptr_for_instance(new SendItem{row});
    }

    const RecordKind kind;
    const std::size_t index;    ///< among the records of its kind
    const std::string name;     ///< as in the list of records
    const std::string kindText; ///< likewise

private:
    explicit SendItem(const RecordRow& row)
        : kind(row.kind), index(row.index), name(rowName(row)), kindText(kindName(row))
    {}
};

} // namespace host
