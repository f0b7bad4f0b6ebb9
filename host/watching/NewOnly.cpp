// SPDX-License-Identifier: MIT

#include "host/watching/NewOnly.h"

#include "host/points/Points.h"

namespace host {

void NewOnly::event(const Event& event)
{
    switch (event.kind) {
    case EventKind::kNewRoute:
        begin(Open::kRoute, &event);
        break;
    case EventKind::kNewTrack:
        begin(Open::kTrack, &event);
        break;
    case EventKind::kTrackPoint:
        trackPoint(event);
        break;
    case EventKind::kWayPoint:
        wayPoint(event);
        break;
    default: // every other report ends what is open
        end();
        writer_->event(event);
    }
}

std::optional<gps::Error> NewOnly::close()
{
    end();
    return writer_->close();
}

void NewOnly::wayPoint(const Event& event)
{
    if (open_ == Open::kRoute) {
        content_.add(event.point);
        content_.add(event.record);
        held_.push_back(event);
        return;
    }
    end();
    if (isNew(wayPointKey(event.point, event.record)))
        writer_->event(event);
}

void NewOnly::begin(Open kind, const Event* head)
{
    end();
    open_ = kind;
    if (head == nullptr)
        return;
    held_.push_back(*head);
    if (kind == Open::kRoute)
        content_.add(head->record);
}

void NewOnly::trackPoint(const Event& event)
{
    if (open_ != Open::kTrack)
        begin(Open::kTrack, nullptr);
    if (points_++ == 0) {
        firstTime_ = event.point.time;
        isPassing_ = !known_.hasTrackFrom(firstTime_);
        if (isPassing_)
            passHeld();
    }
    const bool isTimed = content_.text().empty() && (points_ > 1 || hasTimestamp(event.point));
    if (!isTimed)
        content_.add(event.point);
    if (isPassing_)
        writer_->event(event);
    else
        holdPoint(event);
}

void NewOnly::holdPoint(const Event& event)
{
    if (heldExtras_.empty() || !(heldExtras_.back().second == event.record))
        heldExtras_.emplace_back(heldPoints_.size(), event.record);
    heldPoints_.push_back(event.point);
}

void NewOnly::end()
{
    if (open_ == Open::kRoute)
        endRoute();
    if (open_ == Open::kTrack)
        endTrack();
    open_ = Open::kNothing;
    content_ = {};
    held_.clear();
    points_ = 0;
    firstTime_ = 0;
    isPassing_ = false;
    heldPoints_.clear();
    heldExtras_.clear();
}

void NewOnly::endRoute()
{
    if (isNew(routeKey(content_)))
        passHeld();
}

void NewOnly::endTrack()
{
    if (points_ == 0)
        content_.add(held_.front().record);
    if (isNew(trackKey(firstTime_, points_, content_)) && !isPassing_)
        passHeld();
}

void NewOnly::passHeld()
{
    for (const auto& event : held_)
        writer_->event(event);
    Event point;
    point.kind = EventKind::kTrackPoint;
    auto extra = heldExtras_.begin();
    for (std::size_t i = 0; i < heldPoints_.size(); ++i) {
        if (extra != heldExtras_.end() && extra->first == i)
            point.record = std::move((extra++)->second);
        point.point = heldPoints_[i];
        writer_->event(point);
    }
}

bool NewOnly::isNew(std::string key)
{
    const bool isKnown = known_.contains(key);
    seen_.insert(std::move(key));
    return !isKnown;
}

} // namespace host
