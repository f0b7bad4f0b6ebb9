// SPDX-License-Identifier: MIT
// The invented places of the sample files: four regions, one in each quarter of the globe, with
// stops and geocaches. Constant tables.

#pragma once

#include <string_view>
#include <vector>

namespace samples {

/// A waypoint of a region.
struct Stop {
    std::string_view name; ///< at most 20 characters, as a receiver's field holds them
    std::string_view comment;
    std::string_view icon; ///< the receiver's icon code
    double east;           ///< metres from the region's origin
    double north;
    double altitude; ///< metres
};

/// A geocache of a region.
struct Cache {
    std::string_view name;
    std::string_view comment;
    std::string_view owner;
    std::string_view hint;
    std::string_view type;
    std::string_view placed; ///< "DDMMYY", or empty
    std::string_view found;  ///< "DDMMYY", or empty
    std::string_view difficulty;
    std::string_view terrain;
    double east; ///< metres from the region's origin
    double north;
    double altitude; ///< metres
};

struct Region {
    double latitude; ///< of the origin, degrees
    double longitude;
    std::vector<Stop> stops;
    std::vector<Cache> caches;
};

[[nodiscard]] const Region& mountains(); ///< north and east
[[nodiscard]] const Region& coast();     ///< north and west
[[nodiscard]] const Region& saddle();    ///< south and east
[[nodiscard]] const Region& fjord();     ///< south and west

} // namespace samples
