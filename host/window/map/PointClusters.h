// SPDX-License-Identifier: MIT
// PointClusters: which points of a map have room for a picture of their own, and which are drawn as
// one group. Stateless. [any]

#pragma once

#include "host/window/map/MapPicture.h"

#include <cstddef>
#include <vector>

namespace host {

/// One point, or several that are too near to each other.
struct PointCluster {
    PicturePoint center;
    std::size_t first = 0; ///< the number of its first point
    std::size_t count = 0;
    Extent extent{};
};

/// Groups points by cells of the world, so that groups stay what they are while the map is moved.
class PointClusters {
public:
    static constexpr double kRoom = 22;   ///< pixels from one centre to another one, at least
    static constexpr double kMargin = 80; ///< pixels around a view: the largest cell

    explicit PointClusters(const MapView& view) : view_(view) {}

    /// Adds a point that is seen, or would be in a group with one that is.
    void add(const MapPosition& position, std::size_t number);

    /// The groups, by their first points. No two centres are nearer to each other than kRoom.
    [[nodiscard]] std::vector<PointCluster> find() const;

private:
    struct Point {
        long column;
        long row;
        std::size_t number;
        MapPosition position;
    };

    [[nodiscard]] std::vector<PointCluster> cells() const;

    MapView view_;
    std::vector<Point> points_;
};

} // namespace host
