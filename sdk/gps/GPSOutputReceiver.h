// SPDX-License-Identifier: MIT
// The status interface: through it a driver hands a host everything that an operation yields.
//
// Threads, as every header of this project names them:
//   [host thread]  the one thread on which a host calls its plug-ins
//   [worker]       the detached thread that one operation runs on; no other thread calls what is
//   marked so meanwhile [any]          no matter which, also several at once

#pragma once

#include <cstdint>
#include <string_view>

namespace gps {

class Dictionary;
class Error;
struct GPSPoint;

/// What travels in one transfer. Geocaches are reported as waypoints.
enum class TransferKind : std::int32_t {
    kTracks = 1,
    kRoutes = 2,
    kWaypoints = 3,
};

/// Implemented by a host, once an operation. A driver calls it from its worker, or from the host
/// thread before a worker runs and during a file import; never from two threads at once. The driver
/// holds it until the operation's last call has returned. Records are the driver's own and are
/// reused after the call: copy what is to stay.
class GPSOutputReceiver {
public:
    virtual ~GPSOutputReceiver() = default;

    /// `gpsStateChange:`: 1 busy, 0 idle. Every operation ends with 0.
    virtual void gpsStateChange(std::int32_t state) = 0;

    /// `startTransfer:kind:extra:`, `endTransfer:`: around each kind that is read. The first and
    /// the last argument of the first are always none and so have no parameter.
    virtual void startTransfer(TransferKind kind) = 0;
    virtual void endTransfer(TransferKind kind) = 0;

    /// `newTrack:`: a track begins; the points that follow are its own. @param track  "name"
    virtual void newTrack(const Dictionary& track) = 0;

    /// `trackPoint:extra:`. @param extra  may hold "trackName"
    virtual void trackPoint(const GPSPoint& point, const Dictionary& extra) = 0;

    /// `wayPoint:extra:`: a waypoint, a geocache or, after a route, a point of it.
    virtual void wayPoint(const GPSPoint& point, const Dictionary& extra) = 0;

    /// `newRoute:`: a route begins; the waypoints that follow are its points. @param route  "name",
    /// "comment", "lastIndex"
    virtual void newRoute(const Dictionary& route) = 0;

    /// `startSending:kind:extra:`, `endSending:`: around each kind that is written. @param label
    /// "Tracks", "Waypoints", "Routes"
    virtual void startSending(std::string_view label, TransferKind kind) = 0;
    virtual void endSending(TransferKind kind) = 0;

    /// `error:`: a worker met a failure that it reports.
    virtual void error(const Error& error) = 0;
};

} // namespace gps
