// SPDX-License-Identifier: MIT
// A gx:Track lists all its times before all its coordinates, so times go to the output at once and
// coordinates to the spool. Plain lines use the spool, too: only their end shows whether they are a
// line or a point.

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
}

// A position at a crossing has a timestamp if both of its neighbours have one, so it never mixes
// timed and untimed positions within a run.
void KmlLine::add(Output& out, const gps::GPSPoint& point)
{
    const bool isBroken = std::exchange(isBroken_, false);
    const bool continuesRun = last_ && !isBroken && isTimed(*last_) == isTimed(point);
    if (!continuesRun)
        endRun(out);
    if (const auto crossing = continuesRun ? dateLineCrossing(*last_, point) : std::nullopt) {
        addToRun(out, crossing->before);
        endRun(out);
        addToRun(out, crossing->after);
    }
    addToRun(out, point);
    last_ = point;
}

void KmlLine::end(Output& out)
{
    endRun(out);
    if (last_)
        return;
    out.write(head_);
    out.write("</Placemark>\n");
}

bool KmlLine::isTimed(const gps::GPSPoint& point) const noexcept
{
    return rule_ == Times::kKept && hasTimestamp(point);
}

void KmlLine::addToRun(Output& out, const gps::GPSPoint& point)
{
    inTrack_ = isTimed(point);
    if (inRun_++ == 0 && inTrack_) {
        out.write(head_);
        out.write("<gx:Track>\n");
    }
    if (inTrack_)
        out.setEnd(put(putKmlWhen(out.room(kMostOfKmlWhen + 1), point, times_), "\n"));
    constexpr std::string_view kTag = "<gx:coord>";
    constexpr std::string_view kEndTag = "</gx:coord>";
    char* at = coordinates_.room(kTag.size() + kMostOfKmlPosition + kEndTag.size() + 1);
    if (inTrack_)
        at = put(putKmlPosition(put(at, kTag), point, ' '), kEndTag);
    else
        at = putKmlPosition(at, point, ',');
    coordinates_.setEnd(put(at, "\n"));
}

void KmlLine::endRun(Output& out)
{
    if (inRun_ == 0)
        return;
    const bool isLine = inRun_ > 1;
    if (!inTrack_) {
        out.write(head_);
        // Without tessellate, a line on the ground does not follow the terrain between its points.
        out.write(isLine ? "<LineString><tessellate>1</tessellate><coordinates>\n"
                         : "<Point><coordinates>");
    }
    coordinates_.moveTo(out);
    if (inTrack_)
        out.write("</gx:Track>");
    else
        out.write(isLine ? "</coordinates></LineString>" : "</coordinates></Point>");
    out.write("</Placemark>\n");
    inRun_ = 0;
}

} // namespace host
