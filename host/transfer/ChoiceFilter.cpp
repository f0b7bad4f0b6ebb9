// SPDX-License-Identifier: MIT
// A track's head is held back until a point passes, so that a track without a chosen point leaves
// no trace.

#include "host/transfer/ChoiceFilter.h"

#include "host/base/RecordText.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include <fnmatch.h>

namespace host {

ChoiceFilter::ChoiceFilter(RecordChoice choice) : choice_(std::move(choice)) {}

void ChoiceFilter::event(const Event& event, const Sink& sink)
{
    switch (event.kind) {
    case EventKind::kTrackPoint:
        trackPoint(event, sink);
        return;
    case EventKind::kNewSegment:
        isGapPending_ = isInTrack_ && passed_ > 0;
        return;
    case EventKind::kWayPoint:
        wayPoint(event, sink);
        return;
    case EventKind::kNewTrack:
        endTrack(sink);
        beginTrack();
        isNamed_ = isTrackNamed(event.record);
        head_ = event;
        return;
    case EventKind::kNewRoute:
        endTrack(sink);
        route(event, sink);
        return;
    default:
        endTrack(sink);
        isInRoute_ = false;
        sink(event);
    }
}

void ChoiceFilter::finish(const Sink& sink)
{
    endTrack(sink);
}

LeftOutRecords ChoiceFilter::leftOut() const
{
    auto result = leftOut_;
    std::copy_if(choice_.trackNames.begin(), choice_.trackNames.end(),
                 std::back_inserter(result.unmatchedNames),
                 [this](const std::string& pattern) { return !matched_.contains(pattern); });
    return result;
}

void ChoiceFilter::beginTrack()
{
    isInRoute_ = false;
    isInTrack_ = true;
    passed_ = dropped_ = untimed_ = 0;
    isLastChosen_ = true;
    isGapPending_ = false;
}

// A track without any point passes: nothing shows that it is outside of the chosen times.
void ChoiceFilter::endTrack(const Sink& sink)
{
    if (!std::exchange(isInTrack_, false))
        return;
    auto& counts = isNamed_ ? leftOut_.byTime : leftOut_.byName;
    counts.trackPoints += dropped_;
    leftOut_.untimed.trackPoints += untimed_;
    const bool isWhole = passed_ + dropped_ == untimed_; // none of its points has a time
    if (choice_.times && isNamed_ && isWhole)
        ++leftOut_.untimed.tracks;
    if (!isNamed_ || dropped_ > 0)
        counts.tracks += passed_ == 0 ? 1 : 0;
    else if (head_)
        sink(*head_);
    head_.reset();
}

void ChoiceFilter::trackPoint(const Event& event, const Sink& sink)
{
    if (!isInTrack_) { // a track without a head
        beginTrack();
        isNamed_ = isTrackNamed({});
    }
    if (!isPointChosen(event.point)) {
        ++dropped_;
        isGapPending_ = passed_ > 0;
        return;
    }
    if (head_) {
        sink(*head_);
        head_.reset();
    }
    if (std::exchange(isGapPending_, false))
        sink(newSegmentEvent());
    ++passed_;
    sink(event);
}

bool ChoiceFilter::isPointChosen(const gps::GPSPoint& point)
{
    if (!isNamed_ || !choice_.times)
        return isNamed_;
    const bool isTimed = hasTimestamp(point);
    if (isTimed)
        isLastChosen_ = choice_.times->contains(point.time);
    untimed_ += isTimed || !isLastChosen_ ? 0 : 1;
    return isLastChosen_;
}

void ChoiceFilter::wayPoint(const Event& event, const Sink& sink)
{
    if (isInRoute_) {
        leftOut_.untimed.routePoints += choice_.times ? 1U : 0U;
        sink(event);
        return;
    }
    endTrack(sink);
    const bool isGeocache = gps::isGeocache(event.record);
    const auto countIn = [isGeocache](RecordCounts& counts) {
        ++(isGeocache ? counts.geocaches : counts.waypoints);
    };
    if (isGeocache && !choice_.geocaches) {
        countIn(leftOut_.geocaches);
        return;
    }
    const bool isTimed = hasTimestamp(event.point);
    if (choice_.times && isTimed && !choice_.times->contains(event.point.time)) {
        countIn(leftOut_.byTime);
        return;
    }
    if (choice_.times && !isTimed)
        countIn(leftOut_.untimed);
    sink(event);
}

void ChoiceFilter::route(const Event& event, const Sink& sink)
{
    isInRoute_ = true;
    leftOut_.untimed.routes += choice_.times ? 1U : 0U;
    sink(event);
}

// All patterns are tried, because each that matches nothing is reported. A name with brackets in it
// matches itself, although it is another pattern.
bool ChoiceFilter::isTrackNamed(const gps::Dictionary& track)
{
    const std::string name{textIn(track, "name")};
    bool isNamed = choice_.trackNames.empty();
    for (const auto& pattern : choice_.trackNames) {
        if (pattern != name && ::fnmatch(pattern.c_str(), name.c_str(), 0) != 0)
            continue;
        matched_.insert(pattern);
        isNamed = true;
    }
    return isNamed;
}

} // namespace host
