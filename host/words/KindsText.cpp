// SPDX-License-Identifier: MIT
// The names of kinds are English, because scripts read them, too; termText() translates them.

#include "host/words/KindsText.h"

#include "host/base/TermText.h"
#include "host/base/Text.h"
#include "host/operations/Operation.h"

namespace host {

std::string kindsText(const std::vector<gps::TransferKind>& kinds)
{
    std::vector<std::string> names;
    names.reserve(kinds.size());
    for (const auto kind : kinds)
        names.push_back(termText(kindName(kind)));
    return joined(names, ", ");
}

} // namespace host
