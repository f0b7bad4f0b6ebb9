// SPDX-License-Identifier: MIT
// The points of a route whose last sentence is missing become those of the next route: hosts rely
// on that, so it stays. The account records such a route.

#include "RouteAssembler.h"

#include "../common/LineAccounts.h"
#include "RouteSentence.h"
#include "SentenceFields.h"

#include <gps/GPSOutputReceiver.h>

#include <utility>

namespace magellan {

using gps::SkipReason;

bool RouteAssembler::addWayPoint(const gps::Dictionary& extras, const gps::GPSPoint& point)
{
    const auto* name = extras.findString("name");
    if (name == nullptr)
        return false;
    auto record = std::make_shared<gps::Dictionary>();
    record->reserve(extras.size() + 1);
    *record = extras;
    record->set(gps::kPointKey, point);
    waypoints_.insert_or_assign(*name, std::move(record));
    return true;
}

std::optional<AssembledRoute> RouteAssembler::addSentence(const SentenceFields& fields,
                                                          std::uint64_t number,
                                                          gps::LineAccount& lines)
{
    const bool isLast = readRouteInfo(fields, route_.info);
    gaps_.add(fields, number, lines);
    addPoints(fields, number, lines);
    if (!isLast)
        return std::nullopt;
    return std::exchange(route_, {});
}

void RouteAssembler::addPoints(const SentenceFields& fields, std::uint64_t number,
                               gps::LineAccount& lines)
{
    RoutePointNames names{fields};
    while (const auto name = names.next()) {
        const auto found = waypoints_.find(*name);
        if (found != waypoints_.end()) {
            route_.points.push_back(found->second);
        } else {
            logUnknownPoint(*name);
            addDefect(lines, number, SkipReason::kUnknownPoint);
        }
    }
}

void reportRoute(const AssembledRoute& route, gps::GPSOutputReceiver& status)
{
    status.newRoute(route.info);
    for (const auto& record : route.points)
        status.wayPoint(*gps::findPoint(*record), *record);
}

} // namespace magellan
