// SPDX-License-Identifier: MIT
// Areas: the parts of the world in which points are. People travel, and on a map of the whole world
// a hike is invisible. Points are added one by one and are not stored. One thread at a time.

#pragma once

#include "host/points/Bounds.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace host {

struct Area {
    Bounds bounds;
    gps::GPSPoint first;      ///< the first point that was added
    std::uint64_t weight = 0; ///< of all points
};

class Areas {
public:
    /// A track shows where somebody was; a waypoint may be far from there.
    static constexpr std::uint64_t kTrackPointWeight = 10;

    /// Precondition: the point has valid coordinates.
    void add(const gps::GPSPoint& point, std::uint64_t weight = 1);

    /// Groups the points that are within about a degree of each other: those of cells of one by one
    /// degree that touch, also at a corner or across the 180th meridian. The heaviest group first.
    [[nodiscard]] std::vector<Area> find() const;

private:
    struct Cell {
        Area area;
        std::size_t order = 0; ///< of the first point, among those of all cells
    };
    using Key = std::pair<int, int>; ///< the whole degrees of longitude and latitude
    using Entry = std::pair<const Key, Cell>;

    [[nodiscard]] Area areaFrom(const Entry& start, std::set<Key>& seen) const;

    std::map<Key, Cell> cells_;
    Key lastKey_{};
    Cell* last_ = nullptr; ///< of the point before: most points are in its cell
};

} // namespace host
