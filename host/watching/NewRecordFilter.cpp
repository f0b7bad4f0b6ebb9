// SPDX-License-Identifier: MIT
// A track may have grown since it was saved, and two may start at the same time, so its first time
// alone does not decide: a track is known only if its points are the same.

#include "host/watching/NewRecordFilter.h"

#include <gps/Geocache.h>

#include <utility>

namespace host {

void NewRecordFilter::event(const Event& event, const Sink& sink)
{
    switch (event.kind) {
    case EventKind::kNewRoute:
        end(sink);
        begin(Open::kRoute);
        content_.add(event.record);
        held_.push_back(event);
        break;
    case EventKind::kNewTrack:
        end(sink);
        begin(Open::kTrack);
        held_.push_back(event);
        break;
    case EventKind::kTrackPoint:
        trackPoint(event, sink);
        break;
    case EventKind::kNewSegment:
        newSegment(event, sink);
        break;
    case EventKind::kWayPoint:
        wayPoint(event, sink);
        break;
    default:
        end(sink);
        sink(event);
    }
}

void NewRecordFilter::finish(const Sink& sink)
{
    end(sink);
}

void NewRecordFilter::wayPoint(const Event& event, const Sink& sink)
{
    if (open_ == Open::kRoute) {
        content_.add(event.point);
        content_.add(event.record);
        held_.push_back(event);
        return;
    }
    end(sink);
    auto key = wayPointKey(event.point, event.record);
    if (noteKey(key)) {
        passed_.points.push_back(std::move(key));
        sink(event);
    } else {
        ++(gps::isGeocache(event.record) ? leftOut_.geocaches : leftOut_.waypoints);
    }
}

void NewRecordFilter::begin(Open kind)
{
    open_ = kind;
    content_ = {};
    held_.clear();
    points_ = 0;
    firstTime_ = 0;
    isPassing_ = false;
    heldPoints_.clear();
    heldExtras_.clear();
    heldSegments_.clear();
}

void NewRecordFilter::trackPoint(const Event& event, const Sink& sink)
{
    if (open_ != Open::kTrack) { // a track without a head
        end(sink);
        begin(Open::kTrack);
    }
    if (points_++ == 0) {
        firstTime_ = event.point.time;
        isPassing_ = !known_.hasTrackFrom(firstTime_);
        if (isPassing_)
            passHeld(sink);
    }
    content_.add(event.point);
    if (isPassing_)
        sink(event);
    else
        holdPoint(event);
}

// Where the segments of a track begin does not make it another one.
void NewRecordFilter::newSegment(const Event& event, const Sink& sink)
{
    if (isPassing_)
        sink(event);
    else
        heldSegments_.insert(heldPoints_.size());
}

// Consecutive points mostly have equal extras, so these are kept once for each run of points.
void NewRecordFilter::holdPoint(const Event& event)
{
    if (heldExtras_.empty() || !(heldExtras_.back().second == event.record))
        heldExtras_.emplace_back(heldPoints_.size(), event.record);
    heldPoints_.push_back(event.point);
}

void NewRecordFilter::end(const Sink& sink)
{
    if (open_ == Open::kRoute)
        endRoute(sink);
    if (open_ == Open::kTrack)
        endTrack(sink);
    begin(Open::kNothing);
}

void NewRecordFilter::endRoute(const Sink& sink)
{
    auto key = routeKey(content_);
    if (noteKey(key)) {
        passed_.routes.push_back(std::move(key));
        passHeld(sink);
        return;
    }
    ++leftOut_.routes;
    leftOut_.routePoints += held_.size() - 1;
}

void NewRecordFilter::endTrack(const Sink& sink)
{
    // There is a head: a track that begins without one begins with a point.
    if (points_ == 0)
        content_.add(held_.front().record);
    auto key = trackKey(firstTime_, points_, content_);
    const bool isNew = noteKey(key) && (isPassing_ || !isKnownToOlderVersion(key));
    if (!isPassing_ && isNew)
        passHeld(sink);
    if (isPassing_ || isNew) {
        passed_.tracks.push_back(std::move(key));
        return;
    }
    ++leftOut_.tracks;
    leftOut_.trackPoints += points_;
}

// A list of an older version does not show which points a track had. So that no track is lost, only
// one of those with this time and length counts as known.
bool NewRecordFilter::isKnownToOlderVersion(const std::string& key)
{
    const auto older = trackKey(firstTime_, points_, {});
    return known_.contains(older) && olderKeys_.try_emplace(older, key).first->second == key;
}

void NewRecordFilter::passHeld(const Sink& sink)
{
    for (const auto& event : held_)
        sink(event);
    const auto segment = newSegmentEvent();
    Event point;
    point.kind = EventKind::kTrackPoint;
    auto extra = heldExtras_.begin();
    for (std::size_t i = 0; i < heldPoints_.size(); ++i) {
        if (extra != heldExtras_.end() && extra->first == i)
            point.record = std::move((extra++)->second);
        if (heldSegments_.contains(i))
            sink(segment);
        point.point = heldPoints_[i];
        sink(point);
    }
}

bool NewRecordFilter::noteKey(const std::string& key)
{
    seen_.insert(key);
    return !known_.contains(key);
}

} // namespace host
