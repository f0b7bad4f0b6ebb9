// SPDX-License-Identifier: MIT
// RecordSet: all records of a download or an import, kept in memory, for a front end that shows
// them before anything is saved. Plain values: each thread may hold its own. [any]

#pragma once

#include <gps/GPSPoint.h>
#include <gps/Value.h>

#include <cstddef>
#include <vector>

namespace host {

/// A waypoint, a geocache or a point of a route.
struct KeptPoint {
    gps::GPSPoint point;
    gps::Dictionary record;
};

struct KeptRoute {
    gps::Dictionary record;
    std::vector<KeptPoint> points{};
};

struct KeptTrack {
    gps::Dictionary record;
    std::vector<gps::GPSPoint> points{};
    std::vector<std::size_t> segments{}; ///< where a new one begins: ascending indices above 0
    std::vector<std::size_t> gaps{};     ///< those of them that the host found; not in the data
};

struct RecordSet {
    std::vector<KeptPoint> points{}; ///< waypoints and geocaches
    std::vector<KeptRoute> routes{};
    std::vector<KeptTrack> tracks{};

    [[nodiscard]] bool isEmpty() const noexcept
    {
        return points.empty() && routes.empty() && tracks.empty();
    }
};

} // namespace host
