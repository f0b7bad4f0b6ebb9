// SPDX-License-Identifier: MIT
// KmlLine: a track or a route as KML placemarks, written as its points come. One thread at a time.
// Source of the form: OGC KML 2.2 (OGC 07-147r2); for tracks its extension
// http://www.google.com/kml/ext/2.2.

#pragma once

#include "host/files/Output.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Points with a moment each make a track that viewers can play back, points without one a plain
/// line. A line of both is written in runs: a placemark each, in order, all with the same name. So
/// is a line across the date line, one on each side, since a flat map would draw it all the way
/// around.
class KmlLine {
public:
    enum class Times { kKept, kDropped };

    /// @param spoolFolder  where coordinates wait: a track has all its times first
    explicit KmlLine(const std::string& spoolFolder) : coordinates_(spoolFolder) {}

    /// @param head  how each placemark begins, up to its geometry; `times` dropped: a plain line,
    /// whatever the points have
    void begin(std::string_view head, Times times);

    /// Precondition: begun, and the point lies on the globe.
    void add(Output& out, const gps::GPSPoint& point);

    /// Ends the line. One without points is a placemark without a place.
    void end(Output& out);

private:
    [[nodiscard]] bool isTimed(const gps::GPSPoint& point) const noexcept;
    void put(Output& out, const gps::GPSPoint& point);
    void endRun(Output& out);

    std::string head_;
    Times times_ = Times::kKept;
    std::optional<gps::GPSPoint> last_; // none: the line has no point yet
    bool inTrack_ = false;              // the open run is a track
    std::size_t inRun_ = 0;             // its points
    Spool coordinates_;
    std::string text_;
};

} // namespace host
