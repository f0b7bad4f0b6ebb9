// SPDX-License-Identifier: MIT
// KmlLine: writes a track or a route as KML placemarks while its points arrive. Used by KmlWriter.
// One thread at a time. Source of the format: OGC KML 2.2 (OGC 07-147r2); for tracks its extension
// http://www.google.com/kml/ext/2.2.

#pragma once

#include "host/files/Output.h"
#include "host/formats/KmlRuns.h"
#include "host/points/Points.h"

#include <gps/GPSPoint.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Points with timestamps make a gx:Track, which viewers can play back; points without make a plain
/// line. A gx:Track needs a time for each of its points, so a line that has both kinds is split
/// into runs. Plain runs begin and end with the points of their neighbours, so that nothing is
/// torn. A line that crosses the 180 degree meridian is split there too, since a flat map would
/// draw it all the way around the globe. All runs and segments of a line are in one placemark: in a
/// gx:MultiTrack or, if there are plain ones, in a MultiGeometry. The extended data of a track note
/// which points were added, unless its runs are just its segments.
class KmlLine {
public:
    enum class Times { kKept, kDropped };

    /// @param spoolFolder  where the line is kept until its end
    explicit KmlLine(const std::string& spoolFolder)
        : whens_(spoolFolder), coordinates_(spoolFolder), runs_(spoolFolder)
    {}

    /// @param head   the start of the placemark, up to its extended data
    /// @param data   what these hold
    /// @param times  kDropped makes plain lines even of points with timestamps, as of a route
    void begin(std::string_view head, std::string_view data, Times times);

    /// Precondition: `begin` was called, and the point has valid coordinates.
    void add(const gps::GPSPoint& point);

    /// No line leads from the last point to the next one: a segment begins there.
    void breakHere() noexcept { isBroken_ = true; }

    /// Writes the line. One without points becomes a placemark without geometry; one of a single
    /// point has its position twice.
    void end(Output& out);

private:
    [[nodiscard]] bool isTimed(const gps::GPSPoint& point) const noexcept;
    void continueTo(const gps::GPSPoint& point);
    void beginRun(bool isTrack, bool isContinued);
    void addToRun(const gps::GPSPoint& point);
    void addFirst(const gps::GPSPoint& point);
    void addLast(const gps::GPSPoint& point);
    void endRun();
    void writeRun(Output& out);

    std::string head_;
    std::string data_;
    Times rule_ = Times::kKept;
    TimestampText times_;
    std::optional<gps::GPSPoint> last_; // nullopt until the line has a point
    bool isBroken_ = false;             // before the next point
    bool inTrack_ = false;              // whether the open run is a gx:Track
    KmlRun run_;                        // the open one
    std::size_t inRun_ = 0;             // points in the open run; 0 if no run is open
    std::size_t finishedRuns_ = 0;      // before that
    bool areAllTracks_ = true;          // the finished runs
    bool areAllSegments_ = true;        // the ended runs: timed, and each with its own points
    std::string runsText_;              // of the ended runs
    Spool whens_;                       // times and coordinates of the open run
    Spool coordinates_;
    Spool runs_; // the finished ones
};

} // namespace host
