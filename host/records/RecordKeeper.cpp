// SPDX-License-Identifier: MIT
// The records of events are reused, so each is copied.

#include "host/records/RecordKeeper.h"

namespace host {

void RecordKeeper::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    set_.points.push_back({point, record});
}

void RecordKeeper::beginRoute(const gps::Dictionary& route)
{
    set_.routes.push_back({route});
}

void RecordKeeper::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    set_.routes.back().points.push_back({point, record});
}

void RecordKeeper::beginTrack(const gps::Dictionary& track)
{
    set_.tracks.push_back({track});
}

void RecordKeeper::trackPoint(const gps::GPSPoint& point)
{
    set_.tracks.back().points.push_back(point);
}

void RecordKeeper::newSegment()
{
    auto& track = set_.tracks.back();
    if (!track.points.empty())
        track.segments.push_back(track.points.size());
}

void RecordKeeper::foundGap()
{
    newSegment();
    auto& track = set_.tracks.back();
    track.gaps.push_back(track.points.size());
}

// A track grew by doubling, and is kept for as long as the user looks at it.
void RecordKeeper::endTrack()
{
    set_.tracks.back().points.shrink_to_fit();
}

} // namespace host
