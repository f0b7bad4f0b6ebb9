// SPDX-License-Identifier: MIT
// The status interface: a driver passes everything that an operation yields to a host through it.
//
// This header defines the thread tags that every header of this project uses:
//
//   [host thread]  only the one thread on which a host calls its plug-ins
//   [worker]       only the detached thread that runs one operation
//   [any]          any thread, and several at the same time

#pragma once

#include <cstdint>
#include <string_view>

namespace gps {

class Dictionary;
class Error;
struct GPSPoint;

/// The kind of records in one transfer. Geocaches are transferred as waypoints.
enum class TransferKind : std::int32_t {
    kTracks = 1,
    kRoutes = 2,
    kWaypoints = 3,
};

/// Implemented by a host; one object for each operation. A driver calls it on its [worker], or on
/// the [host thread] before the worker starts and during a file import, but never on two threads at
/// the same time. The driver shares ownership until the operation's last call has returned.
///
/// No operation may throw. If one does, the driver ends its work and makes one last call,
/// gpsStateChange() with 0. A file import then throws the exception to its caller; a worker drops
/// it.
///
/// The records passed in belong to the driver, which reuses them after the call: copy what you
/// keep.
class GPSOutputReceiver {
public:
    virtual ~GPSOutputReceiver() = default;

    /// `gpsStateChange:`: 1 is busy, 0 is idle. 0 is every operation's last call. [worker]
    virtual void gpsStateChange(std::int32_t state) = 0;

    /// `startTransfer:kind:extra:`: reading of one kind begins. The name and the extra of the
    /// interface are always null and have no parameter here. [worker]
    virtual void startTransfer(TransferKind kind) = 0;

    /// `endTransfer:`: reading of one kind has ended. [worker]
    virtual void endTransfer(TransferKind kind) = 0;

    /// `newTrack:`: a track begins; its points follow. [worker]
    /// @param track  "name"
    virtual void newTrack(const Dictionary& track) = 0;

    /// `trackPoint:extra:`: a point of the current track. [worker]
    /// @param extra  may hold "trackName"
    virtual void trackPoint(const GPSPoint& point, const Dictionary& extra) = 0;

    /// `wayPoint:extra:`: a waypoint or a geocache; after newRoute(), a point of that route.
    /// [worker]
    /// @param extra  the record, without its point; <gps/Geocache.h> recognises geocaches
    virtual void wayPoint(const GPSPoint& point, const Dictionary& extra) = 0;

    /// `newRoute:`: a route begins; its points follow as waypoints. [worker]
    /// @param route  "name", "comment", "lastIndex"
    virtual void newRoute(const Dictionary& route) = 0;

    /// `startSending:kind:extra:`: writing of one kind begins. [worker]
    /// @param label  "Tracks", "Waypoints" or "Routes"
    virtual void startSending(std::string_view label, TransferKind kind) = 0;

    /// `endSending:`: writing of one kind has ended. [worker]
    virtual void endSending(TransferKind kind) = 0;

    /// `error:`: the operation has failed, or a part of it. [worker]
    virtual void error(const Error& error) = 0;
};

} // namespace gps
