// SPDX-License-Identifier: MIT
// A gx:Track lists all its times before all its coordinates, and whether a line is one geometry
// shows only at its end. So everything waits in spools.

#include "host/formats/KmlLine.h"

#include "host/base/Text.h"
#include "host/formats/KmlText.h"
#include "host/points/DateLine.h"
#include "host/points/Points.h"

#include <fmt/format.h>

#include <utility>

namespace host {

void KmlLine::begin(std::string_view head, std::string_view data, Times times)
{
    head_ = head;
    data_ = data;
    rule_ = times;
    last_.reset();
    isBroken_ = false;
    finishedRuns_ = 0;
    areAllTracks_ = true;
    areAllSegments_ = true;
    runsText_.clear();
}

void KmlLine::add(const gps::GPSPoint& point)
{
    if (std::exchange(isBroken_, false) || !last_)
        beginRun(isTimed(point), false);
    else
        continueTo(point);
    addToRun(point);
    last_ = point;
}

// Between a point with a timestamp and one without, the line has none.
void KmlLine::continueTo(const gps::GPSPoint& point)
{
    if (isTimed(*last_) && !isTimed(point)) {
        beginRun(false, true);
        addFirst(*last_);
    }
    if (const auto crossing = dateLineCrossing(*last_, point)) {
        addLast(crossing->before);
        beginRun(inTrack_, true);
        addFirst(crossing->after);
    }
    if (!isTimed(*last_) && isTimed(point)) {
        addLast(point);
        beginRun(true, true);
    }
}

void KmlLine::end(Output& out)
{
    endRun();
    // Two equal positions of a plain line could be one point.
    const bool isObvious =
        finishedRuns_ > 0 ? areAllSegments_ : inRun_ > 2 || (inRun_ > 0 && inTrack_);
    if (rule_ == Times::kKept && !isObvious)
        data_ += fmt::format("<own:{0} xmlns:own=\"{1}\">{2}</own:{0}>", kKmlTrackRuns,
                             kKmlOwnNamespace, runsText_);
    appendExtendedData(head_, data_);
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
void KmlLine::beginRun(bool isTrack, bool isContinued)
{
    if (inRun_ > 0) {
        endRun();
        ++finishedRuns_;
        areAllTracks_ = areAllTracks_ && inTrack_;
        writeRun(runs_);
        runs_.write("\n");
    }
    inTrack_ = isTrack;
    run_ = {.isContinued = isContinued};
}

// Adds a point that is not one of the line, or that belongs to the run before.
void KmlLine::addFirst(const gps::GPSPoint& point)
{
    addToRun(point);
    run_.dropsFirst = true;
}

void KmlLine::addLast(const gps::GPSPoint& point)
{
    addToRun(point);
    run_.dropsLast = true;
}

// Does nothing if the run has no points.
void KmlLine::endRun()
{
    if (inRun_ == 0)
        return;
    // A Point would be another thing than a line, and a line has at least two positions.
    if (inRun_ == 1 && !inTrack_)
        addLast(*last_);
    appendKmlRun(runsText_, run_);
    areAllSegments_ = areAllSegments_ && inTrack_ && !run_.isContinued;
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
