// SPDX-License-Identifier: MIT
// A name whose owner has no valid coordinates belongs to no position, so every later claim to it is
// refused.

#include "host/fitting/PointNames.h"

namespace host {

void PointNames::addOnDevice(const std::string& name, const gps::GPSPoint& point)
{
    onDevice_[name].add(point);
}

bool PointNames::claim(const std::string& name, const gps::GPSPoint& point)
{
    const auto position = DevicePosition::of(point);
    if (const auto owner = claimed_.find(name); owner != claimed_.end())
        return position && owner->second && owner->second->matches(*position);
    if (const auto held = onDevice_.find(name);
        held != onDevice_.end() && !held->second.contains(point))
        return false;
    claimed_.emplace(name, position);
    return true;
}

} // namespace host
