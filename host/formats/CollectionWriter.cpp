// SPDX-License-Identifier: MIT

#include "host/formats/CollectionWriter.h"

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
        if (open_ != Open::kTrack) {
            open(Open::kTrack);
            beginTrack({});
        }
        trackPoint(event.point);
        break;
    case EventKind::kWayPoint:
        if (open_ == Open::kRoute) {
            routePoint(event.point, event.record);
        } else {
            open(Open::kNothing);
            wayPoint(event.point, event.record);
        }
        break;
    default: // every other report ends what is open
        open(Open::kNothing);
    }
}

std::optional<gps::Error> CollectionWriter::close()
{
    open(Open::kNothing);
    return finish();
}

void CollectionWriter::open(Open next)
{
    if (open_ == Open::kRoute)
        endRoute();
    if (open_ == Open::kTrack)
        endTrack();
    open_ = next;
}

} // namespace host
