// SPDX-License-Identifier: MIT
// Leaving out points that are near the one before takes one pass, and moves no line by more than a
// pixel.

#include "host/window/MapPath.h"

#include "host/points/Points.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace host {
namespace {

std::vector<MapPosition> simplified(const std::vector<MapPosition>& line, double nearest)
{
    std::vector<MapPosition> kept;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isEnd = i == 0 || i + 1 == line.size();
        if (isEnd || std::hypot(line[i].x - kept.back().x, line[i].y - kept.back().y) >= nearest)
            kept.push_back(line[i]);
    }
    return kept;
}

} // namespace

MapPosition mapPositionOf(const gps::GPSPoint& point) noexcept
{
    const double latitude = point.latitude * (std::numbers::pi / 180);
    const double y = 0.5 - std::asinh(std::tan(latitude)) / (2 * std::numbers::pi);
    return {point.longitude / 360 + 0.5, std::clamp(y, 0.0, 1.0)};
}

void MapPath::add(const gps::GPSPoint& point)
{
    if (!isOnGlobe(point))
        return;
    auto position = mapPositionOf(point);
    if (isBroken_)
        lines_.emplace_back();
    else // the shorter way, across the 180th meridian if need be
        position.x -= std::round(position.x - lines_.back().back().x);
    isBroken_ = false;
    lines_.back().push_back(position);
    simplified_.fill({});
}

const std::vector<std::vector<MapPosition>>& MapPath::linesAt(int zoom)
{
    const auto level = static_cast<std::size_t>(std::clamp(zoom, 0, kMostZoom));
    auto& lines = simplified_[level];
    if (lines.empty()) {
        const double pixel = 1 / (kTileSize * std::exp2(static_cast<double>(level)));
        for (const auto& line : lines_)
            lines.push_back(simplified(line, pixel));
    }
    return lines;
}

} // namespace host
