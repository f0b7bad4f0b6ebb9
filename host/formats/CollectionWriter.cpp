// SPDX-License-Identifier: MIT
// The state is which collection is open. Drivers report no end of a route or a track, so every
// event that cannot belong to the open one closes it.

#include "host/formats/CollectionWriter.h"

#include "host/formats/GeocacheSymbol.h"

#include <optional>
#include <string>

namespace host {

void CollectionWriter::event(const Event& event)
{
    switch (event.kind) {
    case EventKind::kNewRoute:
        open(Open::kRoute);
        beginRoute(event.record);
        break;
    case EventKind::kNewTrack:
        open(Open::kTrack);
        beginTrack(event.record);
        break;
    case EventKind::kTrackPoint:
        if (open_ != Open::kTrack) { // a serial receiver may send points before any track name
            open(Open::kTrack);
            beginTrack({});
        }
        trackPoint(event.point);
        break;
    case EventKind::kNewSegment:
        if (open_ == Open::kTrack)
            event.isInData ? newSegment() : foundGap();
        break;
    case EventKind::kWayPoint:
        if (const auto symbol = correctedSymbol(event.record)) {
            corrected_ = event.record;
            corrected_.setText("symbol", *symbol);
            wayPointOrRoutePoint(event.point, corrected_);
        } else {
            wayPointOrRoutePoint(event.point, event.record);
        }
        break;
    default: // state changes, transfers and errors end the open collection
        open(Open::kNothing);
    }
}

std::optional<gps::Error> CollectionWriter::close()
{
    open(Open::kNothing);
    return finish();
}

void CollectionWriter::wayPointOrRoutePoint(const gps::GPSPoint& point,
                                            const gps::Dictionary& record)
{
    if (open_ == Open::kRoute) {
        routePoint(point, record);
    } else {
        open(Open::kNothing);
        wayPoint(point, record);
    }
}

// Closes a collection of the same kind, too: a second route right after the first ends it.
void CollectionWriter::open(Open next)
{
    if (open_ == Open::kRoute)
        endRoute();
    if (open_ == Open::kTrack)
        endTrack();
    open_ = next;
}

} // namespace host
