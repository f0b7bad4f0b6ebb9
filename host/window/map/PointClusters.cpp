// SPDX-License-Identifier: MIT
// First cells of the world, then groups whose centres are too near to each other, across the edges
// of cells.

#include "host/window/map/PointClusters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>

namespace host {
namespace {

constexpr double kCell = 40; // pixels of a cell at a whole zoom level; up to twice as many between

double cellsOfWorld(const MapView& view)
{
    return MapPath::kTileSize * std::exp2(view.zoom()) / kCell;
}

void merge(PointCluster& into, const PointCluster& other)
{
    const double part =
        static_cast<double>(other.count) / static_cast<double>(into.count + other.count);
    into.center.x += (other.center.x - into.center.x) * part;
    into.center.y += (other.center.y - into.center.y) * part;
    into.first = std::min(into.first, other.first);
    into.count += other.count;
    into.extent.include(other.extent);
}

bool isNear(const PointCluster& a, const PointCluster& b)
{
    return std::hypot(a.center.x - b.center.x, a.center.y - b.center.y) < PointClusters::kRoom;
}

/// Groups that keep their distance, in squares of the size of that distance.
class Spread {
public:
    // Merges with groups that are too near, until none is.
    void add(PointCluster cluster)
    {
        for (auto near = findNear(cluster); near != squares_.end(); near = findNear(cluster)) {
            merge(cluster, near->second);
            squares_.erase(near);
        }
        squares_.emplace(squareOf(cluster.center), cluster);
    }

    [[nodiscard]] std::vector<PointCluster> all() const
    {
        std::vector<PointCluster> found;
        for (const auto& [square, cluster] : squares_)
            found.push_back(cluster);
        return found;
    }

private:
    using Square = std::pair<long, long>;
    using Squares = std::map<Square, PointCluster>;

    static Square squareOf(const PicturePoint& center)
    {
        // Two in one square would be nearer to each other than that.
        constexpr double kSide = PointClusters::kRoom / 1.5;
        return {std::lround(std::floor(center.x / kSide)),
                std::lround(std::floor(center.y / kSide))};
    }

    Squares::iterator findNear(const PointCluster& cluster)
    {
        const auto [column, row] = squareOf(cluster.center);
        for (long x = column - 2; x <= column + 2; ++x) {
            for (long y = row - 2; y <= row + 2; ++y) {
                const auto found = squares_.find({x, y});
                if (found != squares_.end() && isNear(found->second, cluster))
                    return found;
            }
        }
        return squares_.end();
    }

    Squares squares_;
};

} // namespace

void PointClusters::add(const MapPosition& position, std::size_t number)
{
    const double cells = cellsOfWorld(view_);
    points_.push_back({std::lround(std::floor(position.x * cells)),
                       std::lround(std::floor(position.y * cells)), number, position});
}

std::vector<PointCluster> PointClusters::find() const
{
    Spread spread;
    for (const auto& cluster : cells())
        spread.add(cluster);
    auto found = spread.all();
    std::sort(found.begin(), found.end(), [](const PointCluster& a, const PointCluster& b) {
        return std::pair{a.first, a.center.x} < std::pair{b.first, b.center.x};
    });
    return found;
}

std::vector<PointCluster> PointClusters::cells() const
{
    std::vector<PointCluster> found;
    std::unordered_map<std::uint64_t, std::size_t> indices; // by column and row
    for (const auto& point : points_) {
        const auto key = (static_cast<std::uint64_t>(point.column) << 32) ^
                         (static_cast<std::uint64_t>(point.row) & 0xFFFFFFFF);
        PointCluster one{{view_.x(point.position), view_.y(point.position)}, point.number, 1};
        one.extent.include(point.position);
        const auto [entry, isNew] = indices.try_emplace(key, found.size());
        if (isNew)
            found.push_back(one);
        else
            merge(found[entry->second], one);
    }
    return found;
}

} // namespace host
