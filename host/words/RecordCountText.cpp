// SPDX-License-Identifier: MIT
// Kinds appear in the order in which a download delivers them.

#include "host/words/RecordCountText.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <vector>

namespace host {

std::string recordCountText(const RecordCounts& counts)
{
    const auto& [waypoints, geocaches, routes, routePoints, tracks, trackPoints] = counts;
    std::vector<std::string> parts;
    if (waypoints > 0)
        parts.push_back(trCounted(waypoints, "{} waypoint", "{} waypoints", waypoints));
    if (geocaches > 0)
        parts.push_back(trCounted(geocaches, "{} geocache", "{} geocaches", geocaches));
    if (routes > 0)
        parts.push_back(trCounted(routes, "{} route", "{} routes", routes));
    if (tracks > 0)
        parts.push_back(trCounted(tracks, "{} track", "{} tracks", tracks) + " (" +
                        trCounted(trackPoints, "{} point", "{} points", trackPoints) + ")");
    else if (trackPoints > 0)
        parts.push_back(trCounted(trackPoints, "{} track point", "{} track points", trackPoints));
    return joined(parts, ", ");
}

} // namespace host
