// SPDX-License-Identifier: MIT
// Kinds appear in the order in which a download delivers them.

#include "host/words/RecordCountText.h"

#include "host/base/FrontEnd.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/words/AccountText.h"

#include <vector>

namespace host {
namespace {

// Scripts read what the command line prints.
std::string shownCount(std::size_t number)
{
    return advice(std::to_string(number), groupedText(number));
}

} // namespace

std::string recordCountText(const RecordCounts& counts)
{
    const auto& [waypoints, geocaches, routes, routePoints, tracks, trackPoints] = counts;
    std::vector<std::string> parts;
    if (waypoints > 0)
        parts.push_back(trCounted(waypoints, "{} waypoint", "{} waypoints", shownCount(waypoints)));
    if (geocaches > 0)
        parts.push_back(trCounted(geocaches, "{} geocache", "{} geocaches", shownCount(geocaches)));
    if (routes > 0)
        parts.push_back(trCounted(routes, "{} route", "{} routes", shownCount(routes)));
    if (tracks > 0)
        parts.push_back(trCounted(tracks, "{} track", "{} tracks", shownCount(tracks)) + " (" +
                        trCounted(trackPoints, "{} point", "{} points", shownCount(trackPoints)) +
                        ")");
    else if (trackPoints > 0)
        parts.push_back(
            trCounted(trackPoints, "{} track point", "{} track points", shownCount(trackPoints)));
    return joined(parts, ", ");
}

} // namespace host
