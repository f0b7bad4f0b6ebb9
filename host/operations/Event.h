// SPDX-License-Identifier: MIT
// Event: one call that a driver made on the status object, with copies of the arguments, or what
// the host found between two calls. A plain value: any thread may hold its own.

#pragma once

#include <gps/Error.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <cstdint>
#include <optional>
#include <string>

namespace host {

enum class EventKind {
    kStateChange,
    kStartTransfer,
    kEndTransfer,
    kNewTrack,
    kTrackPoint,
    kNewSegment, ///< the host's own: the track continues after a gap
    kWayPoint,
    kNewRoute,
    kStartSending,
    kEndSending,
    kError,
};

/// The kind determines which fields are meaningful. The others hold leftovers: events are reused,
/// to save the allocations of their records. Two threads pass millions of track points to each
/// other, so what one of those needs comes first: little of the processor's cache moves.
struct Event {
    EventKind kind = EventKind::kStateChange;
    gps::GPSPoint point;    ///< kTrackPoint, kWayPoint
    gps::Dictionary record; ///< the point's other fields, the track or the route
    std::int32_t state = 0; ///< kStateChange: 1 busy, 0 idle
    gps::TransferKind transfer = gps::TransferKind::kTracks; ///< transfers and sendings
    bool isInData = true;            ///< kNewSegment: not found by the host, but in what is read
    std::string label;               ///< kStartSending
    std::optional<gps::Error> error; ///< kError
};

/// The event of a gap in a track.
/// @param isInData  false: it was found between two points that the data does not separate
[[nodiscard]] inline Event newSegmentEvent(bool isInData = true)
{
    Event event;
    event.kind = EventKind::kNewSegment;
    event.isInData = isInData;
    return event;
}

} // namespace host
