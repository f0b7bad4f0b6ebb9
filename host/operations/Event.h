// SPDX-License-Identifier: MIT
// Event: one call that a driver made on the status object, with copies of what it handed over.
// A plain value: any thread may hold its own.

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
    kWayPoint,
    kNewRoute,
    kStartSending,
    kEndSending,
    kError,
};

/// Which fields are meaningful follows from the kind; the others hold what an earlier event left in
/// them, since events and the storage of their records are used again.
struct Event {
    EventKind kind = EventKind::kStateChange;
    std::int32_t state = 0;                                  ///< kStateChange: 1 busy, 0 idle
    gps::TransferKind transfer = gps::TransferKind::kTracks; ///< transfers and sendings
    gps::GPSPoint point;                                     ///< kTrackPoint, kWayPoint
    gps::Dictionary record;          ///< the point's further fields, the track or the route
    std::string label;               ///< kStartSending
    std::optional<gps::Error> error; ///< kError
};

} // namespace host
