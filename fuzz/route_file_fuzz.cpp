// SPDX-License-Identifier: MIT
// Reads any bytes as a route file; writing the routes and reading them again changes nothing.

#include "DeviceFile.h"

#include <plugin/codec/RouteSentence.h>
#include <plugin/codec/WayPointSentence.h>

#include <cstdint>
#include <string>

namespace {

/// All waypoints, then the routes: the order that a route file must have.
std::string written(const fuzz::Records& records)
{
    gps::Array waypoints;
    std::string routes;
    for (const auto& value : records.routes) {
        const auto& route = *value.as<gps::Dictionary>();
        const auto& points = *route.find("points")->as<gps::Array>();
        waypoints.insert(waypoints.end(), points.begin(), points.end());
        routes += fuzz::joinedLines(magellan::makeRouteSentencesFromWaypointList(points, route));
    }
    return fuzz::joinedLines(magellan::makeWayPointSentencesFromWaypointList(waypoints)) + routes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::checkFile(fuzz::textOf(data, size), magellan::RecordKind::kRoutes, written);
    return 0;
}
