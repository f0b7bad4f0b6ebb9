// SPDX-License-Identifier: MIT
// A segment that is not the first one of its track belongs to the record before it.

#include "host/fitting/TrackSegments.h"

#include "host/base/RecordText.h"

#include <cstdint>
#include <iterator>
#include <utility>

namespace host {
namespace {

// The number of a segment; 0 for a track without segments.
std::int32_t takeNumber(gps::Dictionary& track)
{
    const auto* const number = track.find(kSegmentKey);
    const auto read = number != nullptr ? number->int32Reading() : 0;
    track.remove(kSegmentKey);
    return read;
}

void appendPoints(gps::Dictionary& track, gps::Dictionary& segment)
{
    auto* const points = track.findArray("points");
    auto* const more = segment.findArray("points");
    if (points != nullptr && more != nullptr)
        points->insert(points->end(), std::make_move_iterator(more->begin()),
                       std::make_move_iterator(more->end()));
}

} // namespace

void appendTrack(gps::Array& tracks, const gps::Dictionary& head, std::vector<gps::Array> segments)
{
    std::erase_if(segments, [](const gps::Array& points) { return points.empty(); });
    if (segments.empty())
        segments.emplace_back();
    std::int32_t number = 0;
    for (auto& points : segments) {
        auto track = head;
        if (segments.size() > 1)
            track.set(kSegmentKey, ++number);
        track.set("points", std::move(points));
        tracks.emplace_back(std::move(track));
    }
}

std::vector<SegmentedTrack> fitSegments(gps::Dictionary& data, SegmentRule rule)
{
    std::vector<SegmentedTrack> segmented;
    auto* const tracks = data.findArray("track");
    if (tracks == nullptr)
        return segmented;
    gps::Array fitted;
    bool isOpen = false; // whether the record before is a segment
    for (auto& element : *tracks) {
        auto* const track = element.as<gps::Dictionary>();
        const auto number = track != nullptr ? takeNumber(*track) : 0;
        const bool isLater = number > 1 && isOpen;
        isOpen = number == 1 || isLater;
        if (number == 1)
            segmented.push_back({std::string{textIn(*track, "name")}, 1});
        if (isLater)
            ++segmented.back().segments;
        if (isLater && rule == SegmentRule::kJoin)
            appendPoints(*fitted.back().as<gps::Dictionary>(), *track);
        else
            fitted.push_back(std::move(element));
    }
    *tracks = std::move(fitted);
    return segmented;
}

} // namespace host
