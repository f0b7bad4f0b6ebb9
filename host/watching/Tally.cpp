// SPDX-License-Identifier: MIT

#include "host/watching/Tally.h"

#include "host/formats/CollectionWriter.h"

#include <gps/Geocache.h>

#include <string_view>

namespace host {
namespace {

std::string countOf(std::size_t count, std::string_view what)
{
    return std::to_string(count) + ' ' + std::string{what} + (count == 1 ? "" : "s");
}

void append(std::string& text, std::size_t count, std::string_view what)
{
    if (count > 0)
        text += (text.empty() ? "" : ", ") + countOf(count, what);
}

} // namespace

void Tally::event(const Event& event)
{
    count(event);
    writer_->event(event);
}

void Tally::count(const Event& event)
{
    switch (event.kind) {
    case EventKind::kNewRoute:
        ++routes_;
        open_ = event.kind;
        break;
    case EventKind::kNewTrack:
        ++tracks_;
        open_ = event.kind;
        break;
    case EventKind::kTrackPoint:
        if (open_ != EventKind::kNewTrack)
            ++tracks_; // one without a head
        open_ = EventKind::kNewTrack;
        ++trackPoints_;
        break;
    case EventKind::kWayPoint:
        if (open_ == EventKind::kNewRoute)
            break; // a point of the route
        open_ = event.kind;
        ++(gps::isGeocache(event.record) ? geocaches_ : wayPoints_);
        break;
    default:
        open_ = event.kind;
    }
}

std::string Tally::text() const
{
    std::string text;
    append(text, wayPoints_, "waypoint");
    append(text, geocaches_, "geocache");
    append(text, routes_, "route");
    append(text, tracks_, "track");
    if (tracks_ > 0)
        text += " (" + countOf(trackPoints_, "point") + ")";
    return text;
}

} // namespace host
