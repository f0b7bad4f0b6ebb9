// SPDX-License-Identifier: MIT
// Only neighbours are compared: a receiver waits for each acknowledgement, so nothing comes between
// a sentence and its repeat.

#include "host/transfer/RepeatFilter.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

bool areEqual(const Event& a, const Event& b)
{
    if (a.kind != b.kind || !(a.record == b.record))
        return false;
    return a.kind == EventKind::kNewRoute || a.point == b.point; // routes have no point
}

} // namespace

void RepeatFilter::event(const Event& event, const Sink& sink)
{
    if (event.kind == EventKind::kWayPoint && !route_.empty()) {
        route_.push_back(event);
        return;
    }
    endRoute(sink);
    switch (event.kind) {
    case EventKind::kNewRoute:
        route_.push_back(event);
        break;
    case EventKind::kWayPoint:
        point(event, dropped_.waypoints, sink);
        break;
    case EventKind::kTrackPoint:
        point(event, dropped_.trackPoints, sink);
        break;
    default:
        // No record repeats one before a new track or a new transfer.
        hasLast_ = false;
        if (event.kind != EventKind::kNewTrack)
            lastRoute_.clear();
        sink(event);
    }
}

void RepeatFilter::finish(const Sink& sink)
{
    endRoute(sink);
}

void RepeatFilter::point(const Event& event, std::uint64_t& dropped, const Sink& sink)
{
    if (hasLast_ && areEqual(event, last_)) {
        ++dropped;
        return;
    }
    last_ = event;
    hasLast_ = true;
    sink(event);
}

void RepeatFilter::endRoute(const Sink& sink)
{
    if (route_.empty())
        return;
    const bool isRepeat =
        std::equal(route_.begin(), route_.end(), lastRoute_.begin(), lastRoute_.end(), areEqual);
    if (isRepeat)
        ++dropped_.routes;
    else
        std::for_each(route_.begin(), route_.end(), sink);
    lastRoute_ = std::exchange(route_, {});
}

} // namespace host
