// SPDX-License-Identifier: MIT
// Each outline is clipped and then simplified, so that nothing is spent on what is outside.

#include "host/places/Coasts.h"

#include "host/places/LandTable.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <utility>

namespace host {
namespace {

template <typename Points> Bounds boundsOf(const Points& points)
{
    Bounds bounds;
    for (const auto& point : points)
        bounds.extend(point.longitude, point.latitude);
    return bounds;
}

Bounds inDegrees(Bounds bounds)
{
    for (double* side : {&bounds.west, &bounds.east, &bounds.south, &bounds.north})
        *side /= LandPoint::kUnitsPerDegree;
    return bounds;
}

Bounds shifted(Bounds bounds, double degreesEast)
{
    bounds.west += degreesEast;
    bounds.east += degreesEast;
    return bounds;
}

bool overlap(const Bounds& a, const Bounds& b)
{
    return a.west <= b.east && a.east >= b.west && a.south <= b.north && a.north >= b.south;
}

// One edge of the bounds: the side of a line that is parallel to an axis.
struct Edge {
    double MapPoint::*axis;
    double limit;
    int sign; // 1: larger values are inside; -1: smaller ones

    [[nodiscard]] bool holds(const MapPoint& point) const
    {
        return (point.*axis - limit) * sign >= 0;
    }

    // Where a line from one side to the other crosses the edge.
    [[nodiscard]] MapPoint crossing(const MapPoint& a, const MapPoint& b) const
    {
        const double part = (limit - a.*axis) / (b.*axis - a.*axis);
        MapPoint point{a.longitude + part * (b.longitude - a.longitude),
                       a.latitude + part * (b.latitude - a.latitude)};
        point.*axis = limit;
        return point;
    }
};

// Source: I. E. Sutherland, G. W. Hodgman, "Reentrant Polygon Clipping", Communications of the ACM
// 17, 1974.
Outline clipped(const Outline& outline, const Edge& edge)
{
    Outline inside;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const auto& point = outline[i];
        const auto& before = outline[i > 0 ? i - 1 : outline.size() - 1];
        if (edge.holds(point) != edge.holds(before))
            inside.push_back(edge.crossing(before, point));
        if (edge.holds(point))
            inside.push_back(point);
    }
    return inside;
}

Outline clipped(Outline outline, const Bounds& bounds)
{
    for (const auto& edge :
         {Edge{&MapPoint::longitude, bounds.west, 1}, Edge{&MapPoint::longitude, bounds.east, -1},
          Edge{&MapPoint::latitude, bounds.south, 1}, Edge{&MapPoint::latitude, bounds.north, -1}})
        outline = clipped(outline, edge);
    return outline;
}

// The square of the distance of a point from the line between two others, where a degree of
// longitude counts `across` degrees of latitude.
double squaredDistance(const MapPoint& point, const MapPoint& a, const MapPoint& b, double across)
{
    const double dx = (b.longitude - a.longitude) * across;
    const double dy = b.latitude - a.latitude;
    const double px = (point.longitude - a.longitude) * across;
    const double py = point.latitude - a.latitude;
    const double square = dx * dx + dy * dy;
    const double along = square > 0 ? std::clamp((px * dx + py * dy) / square, 0.0, 1.0) : 0;
    return std::pow(px - along * dx, 2) + std::pow(py - along * dy, 2);
}

// Leaves out the points that are within a tolerance of the outline without them.
// Source: D. Douglas, T. Peucker, "Algorithms for the reduction of the number of points required to
// represent a digitized line or its caricature", Cartographica 10, 1973.
Outline simplified(const Outline& outline, double tolerance, double across)
{
    using Piece = std::pair<std::size_t, std::size_t>; // the first and the last of its points
    std::vector<bool> isKept(outline.size(), false);
    const auto last = outline.size() - 1;
    // The ends of a ring may be neighbours, so it is cut in the middle as well.
    std::vector<Piece> open{{0, last / 2}, {last / 2, last}};
    isKept[0] = isKept[last / 2] = isKept[last] = true;
    while (!open.empty()) {
        const auto [begin, end] = open.back();
        open.pop_back();
        double worst = tolerance * tolerance;
        std::size_t farthest = end;
        for (auto i = begin + 1; i < end; ++i) {
            const double distance =
                squaredDistance(outline[i], outline[begin], outline[end], across);
            if (distance > worst) {
                worst = distance;
                farthest = i;
            }
        }
        if (farthest == end)
            continue;
        isKept[farthest] = true;
        open.emplace_back(begin, farthest);
        open.emplace_back(farthest, end);
    }
    Outline kept;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        if (isKept[i])
            kept.push_back(outline[i]);
    }
    return kept;
}

bool isLargerThan(double tolerance, const Outline& outline, double across)
{
    const auto bounds = boundsOf(outline);
    return (bounds.east - bounds.west) * across > tolerance ||
           bounds.north - bounds.south > tolerance;
}

Outline outlineOf(std::span<const LandPoint> coast, double shift)
{
    Outline outline;
    outline.reserve(coast.size());
    for (const auto& point : coast)
        outline.push_back({point.longitude / LandPoint::kUnitsPerDegree + shift,
                           point.latitude / LandPoint::kUnitsPerDegree});
    return outline;
}

} // namespace

std::vector<Outline> landWithin(const Bounds& bounds, double tolerance)
{
    const double middle = (bounds.south + bounds.north) / 2 * (std::numbers::pi / 180);
    const double across = std::cos(middle);
    const auto& land = LandTable::shared();
    std::vector<Outline> outlines;
    for (std::size_t index = 0; index < land.size(); ++index) {
        const auto coast = land.coast(index);
        const auto extent = inDegrees(boundsOf(coast));
        for (const double shift : {-360, 0, 360}) {
            if (!overlap(shifted(extent, shift), bounds))
                continue;
            auto outline = clipped(outlineOf(coast, shift), bounds);
            if (outline.size() < 3 || !isLargerThan(tolerance, outline, across))
                continue;
            outline = simplified(outline, tolerance, across);
            if (outline.size() >= 3)
                outlines.push_back(std::move(outline));
        }
    }
    return outlines;
}

} // namespace host
