// SPDX-License-Identifier: MIT
// Kinds appear in the order in which a download delivers them.

#include "host/words/RecordCountText.h"

#include "host/base/FrontEnd.h"
#include "host/base/TermText.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/words/AccountText.h"

#include <cstddef>
#include <string_view>
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
    const auto add = [&parts](std::size_t count, std::string_view noun) {
        if (count > 0)
            parts.push_back(countText(noun, count, shownCount(count)));
    };
    add(waypoints, "waypoint");
    add(geocaches, "geocache");
    add(routes, "route");
    add(tracks, "track");
    if (tracks > 0)
        parts.back() +=
            " (" + trCounted(trackPoints, "{} point", "{} points", shownCount(trackPoints)) + ")";
    else
        add(trackPoints, "track point");
    return joined(parts, ", ");
}

} // namespace host
