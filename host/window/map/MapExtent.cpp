// SPDX-License-Identifier: MIT
// The widest gap between the records is found in strips of the world, so that 100,000 of them need
// no sorting.

#include "host/window/map/MapExtent.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace host {
namespace {

constexpr long kStrips = 3600; // a tenth of a degree each

/// Strips of the world from west to east, each with something in it or not.
class Strips {
public:
    void include(const Extent& extent)
    {
        const auto first = static_cast<long>(std::floor(extent.left * kStrips));
        const auto last = static_cast<long>(std::floor(extent.right * kStrips));
        for (auto strip = first; strip <= std::min(last, first + kStrips - 1); ++strip)
            isUsed_[wrapped(strip)] = true;
    }

    // Where the widest gap ends, as a part of the world's width. The gap at the world's edge is
    // preferred to others as wide.
    [[nodiscard]] double endOfWidestGap() const
    {
        long widest = 0;
        long end = 0;
        long gap = 0;
        for (long strip = 0; strip < 2 * kStrips; ++strip) {
            gap = isUsed_[wrapped(strip)] ? 0 : std::min<long>(gap + 1, kStrips);
            if (gap > widest || (gap == widest && wrapped(strip + 1) == 0 && gap > 0)) {
                widest = gap;
                end = strip + 1;
            }
        }
        return static_cast<double>(wrapped(end)) / kStrips;
    }

private:
    static std::size_t wrapped(long strip)
    {
        return static_cast<std::size_t>(((strip % kStrips) + kStrips) % kStrips);
    }

    std::vector<bool> isUsed_ = std::vector<bool>(kStrips, false);
};

} // namespace

void Extent::include(const MapPosition& position) noexcept
{
    left = std::min(left, position.x);
    right = std::max(right, position.x);
    top = std::min(top, position.y);
    bottom = std::max(bottom, position.y);
}

void Extent::include(const Extent& other) noexcept
{
    left = std::min(left, other.left);
    right = std::max(right, other.right);
    top = std::min(top, other.top);
    bottom = std::max(bottom, other.bottom);
}

Extent extentOfAll(std::span<const Extent> extents)
{
    Strips strips;
    for (const auto& extent : extents) {
        if (!extent.isEmpty())
            strips.include(extent);
    }
    const double start = strips.endOfWidestGap();
    Extent all;
    for (const auto& extent : extents) {
        if (!extent.isEmpty())
            all.include(extent.shifted(-std::floor(extent.left - start)));
    }
    return all;
}

// The inverse of mapPositionOf().
double latitudeOf(const MapPosition& position) noexcept
{
    return std::atan(std::sinh((0.5 - position.y) * 2 * std::numbers::pi)) *
           (180 / std::numbers::pi);
}

double longitudeOf(const MapPosition& position) noexcept
{
    return (position.x - std::floor(position.x) - 0.5) * 360;
}

} // namespace host
