// SPDX-License-Identifier: MIT
// RecordItem: a row of the list of records. [main loop]

#pragma once

#include "host/records/RecordKind.h"

#include <cstddef>
#include <utility>

#include <glibmm.h>

namespace host {

class RecordItem : public Glib::Object {
public:
    using Kind = RecordKind;

    static Glib::RefPtr<RecordItem> create(Kind kind, std::size_t index, Glib::ustring name,
                                           Glib::ustring detail)
    {
        return Glib::make_refptr_for_instance(
            new RecordItem{kind, index, std::move(name), std::move(detail)});
    }

    const Kind kind;
    const std::size_t index; ///< among the records of its kind
    const Glib::ustring name;
    const Glib::ustring detail;
    bool isTicked = true;

private:
    RecordItem(Kind itsKind, std::size_t itsIndex, Glib::ustring itsName, Glib::ustring itsDetail)
        : kind(itsKind), index(itsIndex), name(std::move(itsName)), detail(std::move(itsDetail))
    {}
};

} // namespace host
