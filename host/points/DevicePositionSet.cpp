// SPDX-License-Identifier: MIT
// A look-up in order compares with the next position. Any other tries the keys of the nine
// positions that are at most one unit away on each axis.

#include "host/points/DevicePositionSet.h"

#include <algorithm>

namespace host {

void DevicePositionSet::add(const gps::GPSPoint& point)
{
    if (const auto position = DevicePosition::of(point))
        positions_.push_back(*position);
}

bool DevicePositionSet::contains(const gps::GPSPoint& point)
{
    const auto position = DevicePosition::of(point);
    return position && (follows(*position) || isAnywhere(*position));
}

// Passes each position once in all calls, so that points in any order take linear time here.
bool DevicePositionSet::follows(const DevicePosition& position) noexcept
{
    while (next_ < positions_.size()) {
        if (positions_[next_++].matches(position))
            return true;
    }
    return false;
}

bool DevicePositionSet::isAnywhere(const DevicePosition& position)
{
    if (sortedKeys_.size() != positions_.size()) {
        sortedKeys_.reserve(positions_.size());
        for (const auto& added : positions_)
            sortedKeys_.push_back(added.key());
        std::sort(sortedKeys_.begin(), sortedKeys_.end());
    }
    const auto keys = position.matchingKeys();
    return std::any_of(keys.begin(), keys.end(), [this](std::int64_t key) {
        return std::binary_search(sortedKeys_.begin(), sortedKeys_.end(), key);
    });
}

} // namespace host
