// SPDX-License-Identifier: MIT
// A point outside the globe is one that no device stores.

#include "host/transfer/StoredTrack.h"

#include "host/fitting/RecordList.h"
#include "host/points/DevicePosition.h"
#include "host/points/Points.h"

#include <algorithm>

namespace host {

bool StoredPoint::isSame(const StoredPoint& other) const noexcept
{
    return time == other.time && isSameOnDevice(point, other.point);
}

void appendStored(StoredTrack& track, const gps::GPSPoint& point)
{
    if (isOnGlobe(point))
        track.push_back({point, deviceTime(point)});
}

StoredTrack storedTrackOf(const gps::Dictionary& record)
{
    StoredTrack track;
    forEachRecord(record, "points", [&](const gps::Dictionary& element) {
        if (const auto* const point = gps::findPoint(element))
            appendStored(track, *point);
    });
    return track;
}

bool areSameTracks(const StoredTrack& a, const StoredTrack& b)
{
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const StoredPoint& one, const StoredPoint& other) { return one.isSame(other); });
}

} // namespace host
