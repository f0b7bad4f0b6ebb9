// SPDX-License-Identifier: MIT
// KmlLine: writes a track or a route as KML placemarks while its points arrive. Used by KmlWriter.
// One thread at a time. Source of the format: OGC KML 2.2 (OGC 07-147r2); for tracks its extension
// http://www.google.com/kml/ext/2.2.

#pragma once

#include "host/files/Output.h"
#include "host/points/Points.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Points with timestamps make a gx:Track, which viewers can play back; points without make a plain
/// line. A line that has both is split into runs, each a placemark with the same name. A line that
/// crosses the 180 degree meridian is split there too, since a flat map would draw it all the way
/// around the globe.
class KmlLine {
public:
    enum class Times { kKept, kDropped };

    /// @param spoolFolder  where coordinates are kept: in a gx:Track all times precede them
    explicit KmlLine(const std::string& spoolFolder) : coordinates_(spoolFolder) {}

    /// @param head   the start of each placemark, up to its geometry
    /// @param times  kDropped makes plain lines even of points with timestamps
    void begin(std::string_view head, Times times);

    /// Precondition: `begin` was called, and the point has valid coordinates.
    void add(Output& out, const gps::GPSPoint& point);

    /// No line leads from the last point to the next one: a new placemark begins there.
    void breakHere() noexcept { isBroken_ = true; }

    /// Ends the line. A line without points becomes a placemark without geometry.
    void end(Output& out);

private:
    [[nodiscard]] bool isTimed(const gps::GPSPoint& point) const noexcept;
    void addToRun(Output& out, const gps::GPSPoint& point);
    void endRun(Output& out);

    std::string head_;
    Times rule_ = Times::kKept;
    TimestampText times_;
    std::optional<gps::GPSPoint> last_; // nullopt until the line has a point
    bool isBroken_ = false;             // before the next point
    bool inTrack_ = false;              // whether the open run is a gx:Track
    std::size_t inRun_ = 0;             // points in the open run; 0 if no run is open
    Spool coordinates_;
};

} // namespace host
