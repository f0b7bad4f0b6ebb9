// SPDX-License-Identifier: MIT
// The outlines of the land within a part of the world, for a map. Stateless. [any]
//
// The data is that of Natural Earth, in the public domain. It is made for maps of 1:10 million and
// known to about a kilometre.

#pragma once

#include "host/points/Bounds.h"

#include <vector>

namespace host {

struct MapPoint {
    double longitude; ///< degrees; within the bounds, so possibly beyond 180
    double latitude;

    friend bool operator==(const MapPoint&, const MapPoint&) = default;
};

using Outline = std::vector<MapPoint>; ///< the last point is joined to the first

/// The land within bounds, clipped to them. Land and water alternate where outlines lie within each
/// other. What the clipping cuts off is replaced by pieces of the bounds' edges.
/// @param tolerance  degrees: how far an outline may be from the coast; smaller land is left out
[[nodiscard]] std::vector<Outline> landWithin(const Bounds& bounds, double tolerance);

} // namespace host
