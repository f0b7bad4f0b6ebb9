// SPDX-License-Identifier: MIT
// CollectionWriter: the base of every format that has waypoints, routes and tracks. It finds in the
// flat stream of events where a route or a track begins and ends. One thread at a time.

#pragma once

#include "host/formats/Writer.h"

#include <optional>

namespace host {

/// Calls the operations below in a strict order: a route or a track begins, gets its points and
/// ends before anything else is reported. A waypoint after a new route is a point of that route.
/// The records of geocaches have the symbol that a map file shows.
class CollectionWriter : public Writer {
public:
    void event(const Event& event) final;
    [[nodiscard]] std::optional<gps::Error> close() final;

protected:
    virtual void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record) = 0;

    virtual void beginRoute(const gps::Dictionary& route) = 0;
    virtual void routePoint(const gps::GPSPoint& point, const gps::Dictionary& record) = 0;
    virtual void endRoute() = 0;

    virtual void beginTrack(const gps::Dictionary& track) = 0;
    virtual void trackPoint(const gps::GPSPoint& point) = 0;
    virtual void newSegment() = 0; ///< the next point begins a new segment of the track
    /// Likewise, although the data goes on without a break there.
    virtual void foundGap() { newSegment(); }
    virtual void endTrack() = 0;

    /// Writes what comes after the last record. @return  the first failure since the start
    [[nodiscard]] virtual std::optional<gps::Error> finish() = 0;

private:
    enum class Open { kNothing, kRoute, kTrack };

    void open(Open next);
    void wayPointOrRoutePoint(const gps::GPSPoint& point, const gps::Dictionary& record);

    Open open_ = Open::kNothing;
    gps::Dictionary corrected_; // the last record that got another symbol
};

} // namespace host
