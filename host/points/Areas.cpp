// SPDX-License-Identifier: MIT
// Keeps the bounds of the points of each cell.

#include "host/points/Areas.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {
namespace {

constexpr int kAround = 360;

// 180 degrees is where the cell of -180 begins.
int columnOf(int x) noexcept
{
    return x >= kAround / 2 ? x - kAround : x < -kAround / 2 ? x + kAround : x;
}

} // namespace

void Areas::add(const gps::GPSPoint& point, std::uint64_t weight)
{
    const Key key{columnOf(static_cast<int>(std::floor(point.longitude))),
                  static_cast<int>(std::floor(point.latitude))};
    if (last_ == nullptr || key != lastKey_) {
        const auto [found, isNew] = cells_.try_emplace(key);
        last_ = &found->second;
        lastKey_ = key;
        if (isNew) {
            last_->area.first = point;
            last_->order = cells_.size();
        }
    }
    const bool isAtEdge = key.first < 0 && point.longitude > 0; // 180 degrees are those of -180
    last_->area.bounds.extend(isAtEdge ? point.longitude - kAround : point.longitude,
                              point.latitude);
    last_->area.weight += weight;
}

std::vector<Area> Areas::find() const
{
    std::vector<Area> areas;
    std::set<Key> seen;
    for (const auto& start : cells_) {
        if (seen.insert(start.first).second)
            areas.push_back(areaFrom(start, seen));
    }
    std::stable_sort(areas.begin(), areas.end(),
                     [](const Area& a, const Area& b) { return a.weight > b.weight; });
    return areas;
}

/// Collects the cells that are connected with one through neighbours, diagonal ones included.
Area Areas::areaFrom(const Entry& start, std::set<Key>& seen) const
{
    // A cell to look at, and by how much its longitudes are shifted so that they continue those of
    // the cell that led to it.
    struct Step {
        const Entry* cell;
        int shift;
    };
    Area area;
    auto earliest = std::numeric_limits<std::size_t>::max();
    for (std::vector<Step> open{{&start, 0}}; !open.empty();) {
        const auto [entry, shift] = open.back();
        open.pop_back();
        const auto& [key, cell] = *entry;
        area.bounds.extend(cell.area.bounds.west + shift, cell.area.bounds.south);
        area.bounds.extend(cell.area.bounds.east + shift, cell.area.bounds.north);
        area.weight += cell.area.weight;
        if (cell.order < earliest) {
            earliest = cell.order;
            area.first = cell.area.first;
        }
        for (int i = 0; i < 9; ++i) {
            const int x = key.first + i % 3 - 1;
            const auto next = cells_.find({columnOf(x), key.second + i / 3 - 1});
            if (next != cells_.end() && seen.insert(next->first).second)
                open.push_back({&*next, shift + x - columnOf(x)});
        }
    }
    if (area.bounds.west < -180) {
        area.bounds.west += kAround;
        area.bounds.east += kAround;
    }
    return area;
}

} // namespace host
