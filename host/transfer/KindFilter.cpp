// SPDX-License-Identifier: MIT
// A waypoint after a new route is a point of that route.

#include "host/transfer/KindFilter.h"

namespace host {

void KindFilter::event(const Event& event, const Sink& sink)
{
    if (isWanted(event))
        sink(event);
}

bool KindFilter::isWanted(const Event& event)
{
    if (event.kind != EventKind::kWayPoint)
        isInRoute_ = event.kind == EventKind::kNewRoute;
    switch (event.kind) {
    case EventKind::kNewTrack:
    case EventKind::kTrackPoint:
    case EventKind::kNewSegment:
        return kinds_.tracks;
    case EventKind::kNewRoute:
        return kinds_.routes;
    case EventKind::kWayPoint:
        return isInRoute_ ? kinds_.routes : kinds_.waypoints;
    default:
        return true;
    }
}

} // namespace host
