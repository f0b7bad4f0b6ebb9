// SPDX-License-Identifier: MIT
// SendItem: a row of the list of records to send. [main loop]

#pragma once

#include "host/records/RecordKind.h"

#include <cstddef>
#include <utility>

#include <glibmm.h>

namespace host {

class SendItem : public Glib::Object {
public:
    static Glib::RefPtr<SendItem> create(RecordKind kind, std::size_t index, Glib::ustring name)
    {
        return Glib::make_refptr_for_instance(new SendItem{kind, index, std::move(name)});
    }

    const RecordKind kind;
    const std::size_t index; ///< among the records of its kind
    const Glib::ustring name;

private:
    SendItem(RecordKind itsKind, std::size_t itsIndex, Glib::ustring itsName)
        : kind(itsKind), index(itsIndex), name(std::move(itsName))
    {}
};

} // namespace host
