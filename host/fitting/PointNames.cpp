// SPDX-License-Identifier: MIT
// A name whose owner has no valid coordinates belongs to no point, so every later claim to it is
// refused.

#include "host/fitting/PointNames.h"

namespace host {

void PointNames::addOnDevice(const std::string& name, const StoredRecord& point)
{
    const auto held = onDevice_.find(name);
    if (held == onDevice_.end())
        onDevice_.emplace(name, Held{point});
    else if (!held->second.point.isSameOnReceiver(point))
        held->second.isAmbiguous = true;
}

bool PointNames::isClaimable(const std::string& name, const StoredRecord& point) const
{
    if (const auto owner = claimed_.find(name); owner != claimed_.end())
        return owner->second.isSame(point);
    const auto held = onDevice_.find(name);
    return held == onDevice_.end() ||
           (!held->second.isAmbiguous && held->second.point.isSame(point));
}

bool PointNames::claim(const std::string& name, const StoredRecord& point)
{
    if (!isClaimable(name, point))
        return false;
    claimed_.emplace(name, point);
    return true;
}

} // namespace host
