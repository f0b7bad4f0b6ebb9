// SPDX-License-Identifier: MIT
// A gx:Track lists all its times before all its coordinates, and whether a line is one geometry
// shows only at its end. So everything waits in spools.

#include "host/formats/KmlLine.h"

#include "host/base/Text.h"
#include "host/formats/KmlText.h"
#include "host/points/DateLine.h"
#include "host/points/Points.h"

#include <utility>

namespace host {

void KmlLine::begin(std::string_view head, Times times)
{
    head_ = head;
    rule_ = times;
    last_.reset();
    isBroken_ = false;
    finishedRuns_ = 0;
    areAllTracks_ = true;
}

void KmlLine::add(const gps::GPSPoint& point)
{
    if (std::exchange(isBroken_, false) || !last_)
        beginRun(isTimed(point));
    else
        continueTo(point);
    addToRun(point);
    last_ = point;
}

// Between a point with a timestamp and one without, the line has none.
void KmlLine::continueTo(const gps::GPSPoint& point)
{
    if (isTimed(*last_) && !isTimed(point)) {
        beginRun(false);
        addToRun(*last_);
    }
    if (const auto crossing = dateLineCrossing(*last_, point)) {
        addToRun(crossing->before);
        beginRun(inTrack_);
        addToRun(crossing->after);
    }
    if (!isTimed(*last_) && isTimed(point)) {
        addToRun(point);
        beginRun(true);
    }
}

void KmlLine::end(Output& out)
{
    out.write(head_);
    if (finishedRuns_ == 0) {
        writeRun(out);
    } else {
        const std::string_view container =
            areAllTracks_ && inTrack_ ? "gx:MultiTrack>" : "MultiGeometry>";
        out.write("<");
        out.write(container);
        out.write("\n");
        runs_.moveTo(out);
        writeRun(out);
        out.write("\n</");
        out.write(container);
    }
    out.write("</Placemark>\n");
}

bool KmlLine::isTimed(const gps::GPSPoint& point) const noexcept
{
    return rule_ == Times::kKept && hasTimestamp(point);
}

// Ends the run before.
void KmlLine::beginRun(bool isTrack)
{
    if (inRun_ > 0) {
        ++finishedRuns_;
        areAllTracks_ = areAllTracks_ && inTrack_;
        writeRun(runs_);
        runs_.write("\n");
    }
    inTrack_ = isTrack;
}

void KmlLine::addToRun(const gps::GPSPoint& point)
{
    ++inRun_;
    if (inTrack_)
        whens_.setEnd(put(putKmlWhen(whens_.room(kMostOfKmlWhen + 1), point, times_), "\n"));
    constexpr std::string_view kTag = "<gx:coord>";
    constexpr std::string_view kEndTag = "</gx:coord>";
    char* at = coordinates_.room(kTag.size() + kMostOfKmlPosition + kEndTag.size() + 1);
    if (inTrack_)
        at = put(putKmlPosition(put(at, kTag), point, ' '), kEndTag);
    else
        at = putKmlPosition(at, point, ',');
    coordinates_.setEnd(put(at, "\n"));
}

// Does nothing if the run has no points.
void KmlLine::writeRun(Output& out)
{
    if (inRun_ == 0)
        return;
    // A Point would be another thing than a line, and a line has at least two positions.
    if (inRun_ == 1 && !inTrack_)
        addToRun(*last_);
    inRun_ = 0;
    if (inTrack_) {
        out.write("<gx:Track>\n");
        whens_.moveTo(out);
        coordinates_.moveTo(out);
        out.write("</gx:Track>");
        return;
    }
    // Without tessellate, a line on the ground does not follow the terrain between its points.
    out.write("<LineString><tessellate>1</tessellate><coordinates>\n");
    coordinates_.moveTo(out);
    out.write("</coordinates></LineString>");
}

} // namespace host
