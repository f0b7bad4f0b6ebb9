// SPDX-License-Identifier: MIT
// The names in accounts are English, because scripts read them, too.

#include "host/words/KindText.h"

#include "host/base/Text.h"
#include "host/base/Translation.h"
#include "host/operations/Operation.h"

namespace host {

std::string kindText(const std::string& name)
{
    if (name == "tracks")
        return tr("tracks");
    if (name == "routes")
        return tr("routes");
    if (name == "waypoints")
        return tr("waypoints");
    return name == "geocaches" ? tr("geocaches") : name;
}

std::string kindsText(const std::vector<gps::TransferKind>& kinds)
{
    std::vector<std::string> names;
    names.reserve(kinds.size());
    for (const auto kind : kinds)
        names.push_back(kindText(std::string{kindName(kind)}));
    return joined(names, ", ");
}

} // namespace host
