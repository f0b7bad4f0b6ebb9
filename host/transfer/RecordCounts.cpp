// SPDX-License-Identifier: MIT
// A waypoint event belongs to a route while the route is open, that is until any other event than a
// waypoint follows. Track points without a head count as a track of their own.

#include "host/transfer/RecordCounts.h"

#include "host/fitting/RecordList.h"

#include <gps/Geocache.h>

namespace host {

RecordCounts& RecordCounts::operator+=(const RecordCounts& other) noexcept
{
    waypoints += other.waypoints;
    geocaches += other.geocaches;
    routes += other.routes;
    routePoints += other.routePoints;
    tracks += other.tracks;
    trackPoints += other.trackPoints;
    return *this;
}

RecordCounts& RecordCounts::operator-=(const RecordCounts& other) noexcept
{
    waypoints -= other.waypoints;
    geocaches -= other.geocaches;
    routes -= other.routes;
    routePoints -= other.routePoints;
    tracks -= other.tracks;
    trackPoints -= other.trackPoints;
    return *this;
}

void RecordCounter::add(const Event& event)
{
    if (event.kind == EventKind::kNewSegment) // its track is still open
        return;
    const auto before = open_;
    open_ = event.kind;
    switch (event.kind) {
    case EventKind::kNewRoute:
        ++counts_.routes;
        break;
    case EventKind::kNewTrack:
        ++counts_.tracks;
        break;
    case EventKind::kTrackPoint:
        open_ = EventKind::kNewTrack;
        counts_.tracks += before == EventKind::kNewTrack ? 0 : 1;
        ++counts_.trackPoints;
        break;
    case EventKind::kWayPoint:
        if (before == EventKind::kNewRoute) {
            open_ = before;
            ++counts_.routePoints;
        } else {
            ++(gps::isGeocache(event.record) ? counts_.geocaches : counts_.waypoints);
        }
        break;
    default:
        break;
    }
}

void countRecord(std::string_view key, const gps::Dictionary& record, RecordCounts& counts)
{
    const auto* const points = record.findArray("points");
    const auto pointCount = points != nullptr ? points->size() : 0;
    if (key == "waypoint") {
        ++(gps::isGeocache(record) ? counts.geocaches : counts.waypoints);
    } else if (key == "route") {
        ++counts.routes;
        counts.routePoints += pointCount;
    } else if (key == "track") {
        ++counts.tracks;
        counts.trackPoints += pointCount;
    }
}

RecordCounts countRecords(const gps::Dictionary& data)
{
    RecordCounts counts;
    for (const std::string_view key : {"waypoint", "route", "track"})
        forEachRecord(data, key, [&](const gps::Dictionary& record) {
            const auto* const points = record.findArray("points");
            if (key != "route" || (points != nullptr && !points->empty()))
                countRecord(key, record, counts);
        });
    return counts;
}

RecordCounts removedSince(RecordCounts before, const gps::Dictionary& data)
{
    return before -= countRecords(data);
}

} // namespace host
