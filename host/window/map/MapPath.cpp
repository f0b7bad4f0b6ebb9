// SPDX-License-Identifier: MIT
// Leaving out points that are near the one before takes one pass, and moves no line by more than a
// pixel.

#include "host/window/map/MapPath.h"

#include "host/points/Points.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace host {
namespace {

std::vector<MapPosition> simplified(const std::vector<MapPosition>& line, double nearest)
{
    std::vector<MapPosition> kept;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isEnd = i == 0 || i + 1 == line.size();
        if (isEnd ||
            std::pow(line[i].x - kept.back().x, 2) + std::pow(line[i].y - kept.back().y, 2) >=
                nearest * nearest)
            kept.push_back(line[i]);
    }
    return kept;
}

std::vector<Extent> partsOf(const std::vector<MapPosition>& line)
{
    std::vector<Extent> parts;
    for (std::size_t begin = 0; begin < line.size(); begin += MapLine::kPart) {
        const auto end = std::min(begin + MapLine::kPart + 1, line.size());
        Extent part;
        for (auto i = begin; i < end; ++i)
            part.include(line[i]);
        parts.push_back(part);
    }
    return parts;
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
        position.x -= std::round(position.x - lines_.back().positions.back().x);
    isBroken_ = false;
    lines_.back().positions.push_back(position);
    ++points_;
    extent_.include(position);
    if (std::exchange(hasLevels_, false)) {
        levels_.fill({});
        lines_.back().parts.clear();
    }
}

const std::vector<MapLine>& MapPath::linesAt(int zoom)
{
    auto& level = levels_[static_cast<std::size_t>(std::clamp(zoom, 0, kMostZoom))];
    if (!level.isMade) {
        const auto index = std::distance(levels_.data(), &level);
        level = levelAt(1 / (kTileSize * std::exp2(static_cast<double>(index))));
        if (level.isWhole)
            completeParts();
        hasLevels_ = true;
    }
    return level.isWhole ? lines_ : level.lines;
}

MapPath::Level MapPath::levelAt(double pixel) const
{
    Level level{.isMade = true};
    std::size_t kept = 0;
    for (const auto& line : lines_) {
        auto positions = simplified(line.positions, pixel);
        kept += positions.size();
        auto parts = partsOf(positions);
        level.lines.push_back({std::move(positions), std::move(parts)});
    }
    // Twenty levels of a long log would need more memory than the log.
    level.isWhole = kept > points_ - points_ / 4;
    if (level.isWhole)
        level.lines.clear();
    return level;
}

void MapPath::completeParts()
{
    for (auto& line : lines_) {
        if (line.parts.size() * MapLine::kPart < line.positions.size())
            line.parts = partsOf(line.positions);
    }
}

} // namespace host
