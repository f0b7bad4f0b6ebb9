// SPDX-License-Identifier: MIT
// A match can be one unit away on each axis, so a look-up tries nine keys.

#include "host/points/DevicePositionSet.h"

#include <algorithm>
#include <cstdint>

namespace host {

void DevicePositionSet::add(const gps::GPSPoint& point)
{
    if (const auto position = DevicePosition::of(point))
        keys_.insert(position->key());
}

bool DevicePositionSet::contains(const gps::GPSPoint& point) const
{
    const auto position = DevicePosition::of(point);
    if (!position)
        return false;
    const auto keys = position->matchingKeys();
    return std::any_of(keys.begin(), keys.end(),
                       [this](std::int64_t key) { return keys_.contains(key); });
}

} // namespace host
