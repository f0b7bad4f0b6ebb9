// SPDX-License-Identifier: MIT
// A look-up in order compares with the next position. Once a point is not in order, all look-ups
// try the keys of the nine positions that are at most one unit away on each axis, the point's own
// first: what a device has not rounded differently is matched exactly.

#include "host/points/DevicePositionSet.h"

#include <algorithm>
#include <utility>

namespace host {

void DevicePositionSet::add(const gps::GPSPoint& point)
{
    if (const auto position = DevicePosition::of(point))
        positions_.push_back(*position);
}

bool DevicePositionSet::take(const gps::GPSPoint& point)
{
    const auto position = DevicePosition::of(point);
    return position && ((!isSorted_ && takeNext(*position)) || takeAnywhere(*position));
}

// Passes each position once in all calls, so that points in any order take linear time here.
bool DevicePositionSet::takeNext(const DevicePosition& position)
{
    while (next_ < positions_.size()) {
        const auto& passed = positions_[next_++];
        if (passed == position)
            return true;
        skipped_.push_back(passed);
    }
    return false;
}

bool DevicePositionSet::takeAnywhere(const DevicePosition& position)
{
    if (!std::exchange(isSorted_, true))
        sortRest();
    for (const auto key : position.matchingKeys()) {
        const auto place = std::lower_bound(
            places_.begin(), places_.end(), key,
            [](const Place& one, std::int64_t wanted) { return one.key < wanted; });
        if (place == places_.end() || place->key != key || place->count == 0)
            continue;
        --place->count;
        return true;
    }
    return false;
}

void DevicePositionSet::sortRest()
{
    std::vector<std::int64_t> keys;
    keys.reserve(skipped_.size());
    for (const auto& position : std::exchange(skipped_, {}))
        keys.push_back(position.key());
    std::sort(keys.begin(), keys.end());
    for (const auto key : keys) {
        if (places_.empty() || places_.back().key != key)
            places_.push_back({key, 0});
        ++places_.back().count;
    }
}

} // namespace host
