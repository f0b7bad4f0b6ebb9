// SPDX-License-Identifier: MIT
// Each folder has an output of its own: the document for tracks, a temporary file for the others.

#include "host/formats/KmlWriter.h"

#include "host/base/Text.h"
#include "host/formats/KmlText.h"

#include <gps/Geocache.h>

#include <fmt/format.h>

#include <optional>
#include <string_view>

namespace host {
namespace {

// KML colours are opacity, blue, green, red.
constexpr std::string_view kKmlHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<kml xmlns=\"http://www.opengis.net/kml/2.2\" "
    "xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
    "<Document>\n"
    "<Style id=\"track\"><LineStyle><color>ff1e46d2</color><width>3</width></LineStyle></Style>\n"
    "<Style id=\"route\"><LineStyle><color>ffb4641e</color><width>3</width></LineStyle></Style>\n"
    "<Style id=\"waypoint\"><IconStyle><color>ff28a0f0</color></IconStyle></Style>\n"
    "<Style id=\"geocache\"><IconStyle><color>ff3c963c</color></IconStyle></Style>\n";
constexpr std::string_view kKmlFoot = "</Document>\n"
                                      "</kml>\n";

} // namespace

void KmlWriter::Folder::begin(Output& out)
{
    if (isBegun)
        return;
    isBegun = true;
    out.write("<Folder><name>");
    out.write(title);
    out.write("</name>\n");
}

void KmlWriter::Folder::end(Output& out) const
{
    if (isBegun)
        out.write("</Folder>\n");
}

KmlWriter::KmlWriter(Output& output, const std::string& spoolFolder)
    : output_(output), routes_(spoolFolder), wayPoints_(spoolFolder), geocaches_(spoolFolder),
      line_(spoolFolder)
{
    output_.write(kKmlHead);
}

void KmlWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    const bool isCache = gps::isGeocache(record);
    Spool& spool = isCache ? geocaches_ : wayPoints_;
    (isCache ? geocachesFolder_ : wayPointsFolder_).begin(spool);
    makePlacemark(point, record, isCache ? "geocache" : "waypoint");
    spool.write(text_);
}

void KmlWriter::beginRoute(const gps::Dictionary& route)
{
    routesFolder_.begin(routes_);
    text_ = "<Folder>";
    appendKmlName(text_, route);
    text_ += '\n';
    routes_.write(text_);
    text_.clear();
    appendKmlHead(text_, route, "route");
    data_.clear();
    appendKmlData(data_, route);
    data_ += fmt::format("<own:{} xmlns:own=\"{}\"/>", kKmlRouteLine, kKmlOwnNamespace);
    line_.begin(text_, data_, KmlLine::Times::kDropped);
}

void KmlWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    // The line waits in spools of its own, so a route's points precede it in the folder.
    line_.add(point);
    makePlacemark(point, record, "waypoint");
    routes_.write(text_);
}

void KmlWriter::endRoute()
{
    line_.end(routes_);
    routes_.write("</Folder>\n");
}

void KmlWriter::beginTrack(const gps::Dictionary& track)
{
    tracksFolder_.begin(output_);
    text_.clear();
    appendKmlHead(text_, track, "track");
    data_.clear();
    appendKmlData(data_, track);
    line_.begin(text_, data_, KmlLine::Times::kKept);
}

void KmlWriter::trackPoint(const gps::GPSPoint& point)
{
    if (globe_.passes(point))
        line_.add(point);
}

void KmlWriter::newSegment()
{
    line_.breakHere();
}

void KmlWriter::endTrack()
{
    line_.end(output_);
}

std::optional<gps::Error> KmlWriter::finish()
{
    tracksFolder_.end(output_);
    routesFolder_.end(routes_);
    wayPointsFolder_.end(wayPoints_);
    geocachesFolder_.end(geocaches_);
    for (auto* const spool : {&routes_, &wayPoints_, &geocaches_})
        spool->moveTo(output_);
    output_.write(kKmlFoot);
    return output_.flush();
}

void KmlWriter::makePlacemark(const gps::GPSPoint& point, const gps::Dictionary& record,
                              std::string_view style)
{
    text_.clear();
    appendKmlHead(text_, record, style, &point);
    data_.clear();
    appendKmlData(data_, record);
    appendExtendedData(text_, data_);
    text_ += "<Point><coordinates>";
    appendPut<kMostOfKmlPosition>(text_, [&](char* at) { return putKmlPosition(at, point, ','); });
    text_ += "</coordinates></Point></Placemark>\n";
}

} // namespace host
