// SPDX-License-Identifier: MIT
// Track points are written into the output's own buffer: this is the inner loop of a download.

#include "host/formats/GpxWriter.h"

#include "host/base/Text.h"
#include "host/formats/GeocacheXml.h"
#include "host/formats/XmlElements.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace host {
namespace {

constexpr std::string_view kGpxHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gpx version=\"1.1\" creator=\"magellangps\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n";
constexpr std::string_view kGpxFoot = "</gpx>\n";

enum Section : std::size_t { kWayPointSection, kRouteSection, kTrackSection, kSections };

constexpr std::array kCollectionTexts{TextElement{"name", "<name>", "</name>"},
                                      TextElement{"comment", "<cmt>", "</cmt>"}};

// The schema fixes the order: elevation and time before these, and extensions last.
constexpr std::array kPointTexts{TextElement{"name", "<name>", "</name>"},
                                 TextElement{"comment", "<cmt>", "</cmt>"},
                                 TextElement{"symbol", "<sym>", "</sym>"}};

constexpr std::size_t kMostOfPoint = // the longest element name, "rtept", included
    std::string_view{R"(<rtept lat="" lon=""><ele></ele><time>Z</time>)"}.size() +
    2 * kMostOfDegrees + gps::kMostOfDecimal + TimestampText::kSize;

// Writes the start tag of a point, its elevation and its time.
char* putPoint(char* at, std::string_view element, const gps::GPSPoint& point, TimestampText& times)
{
    at = put(at, "<");
    at = put(at, element);
    at = put(at, R"( lat=")");
    at = putDegrees(at, point.latitude);
    at = put(at, R"(" lon=")");
    // The schema allows longitudes from -180 to below 180. A longitude just below 180 would be
    // rounded up to it.
    constexpr double kAlmost180 = 180 - 1e-9;
    at = putDegrees(at, point.longitude > kAlmost180 ? -180 : point.longitude);
    at = put(at, R"(">)");
    if (std::isfinite(point.altitude)) {
        at = put(at, "<ele>");
        at = gps::putDecimal(at, point.altitude);
        at = put(at, "</ele>");
    }
    if (hasTimestamp(point)) {
        at = put(at, "<time>");
        at = times.put(at, point.time, 'T');
        at = put(at, "Z</time>");
    }
    return at;
}

} // namespace

GpxWriter::GpxWriter(Output& output, const std::string& spoolFolder)
    : output_(output), sections_(output, kSections, spoolFolder)
{
    output_.write(kGpxHead);
}

void GpxWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (globe_.passes(point))
        writePoint(sections_.outputFor(kWayPointSection), "wpt", point, record);
}

void GpxWriter::beginRoute(const gps::Dictionary& route)
{
    auto& out = sections_.outputFor(kRouteSection);
    out.write("<rte>");
    writeElements(out, route, kCollectionTexts);
    out.write("\n");
}

void GpxWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (globe_.passes(point))
        writePoint(sections_.outputFor(kRouteSection), "rtept", point, record);
}

void GpxWriter::endRoute()
{
    sections_.write(kRouteSection, "</rte>\n");
}

void GpxWriter::beginTrack(const gps::Dictionary& track)
{
    auto& out = sections_.outputFor(kTrackSection);
    out.write("<trk>");
    writeElements(out, track, std::span{kCollectionTexts}.first(1));
    // Drivers report no breaks within a track, so it always has one segment.
    out.write("<trkseg>\n");
}

void GpxWriter::trackPoint(const gps::GPSPoint& point)
{
    if (!globe_.passes(point))
        return;
    constexpr std::string_view kTrackPointEnd = "</trkpt>\n";
    auto& out = sections_.outputFor(kTrackSection);
    char* at = out.room(kMostOfPoint + kTrackPointEnd.size());
    at = putPoint(at, "trkpt", point, times_);
    out.setEnd(put(at, kTrackPointEnd));
}

void GpxWriter::endTrack()
{
    sections_.write(kTrackSection, "</trkseg></trk>\n");
}

std::optional<gps::Error> GpxWriter::finish()
{
    sections_.finish();
    output_.write(kGpxFoot);
    return output_.flush();
}

void GpxWriter::writePoint(Output& out, std::string_view element, const gps::GPSPoint& point,
                           const gps::Dictionary& record)
{
    out.setEnd(putPoint(out.room(kMostOfPoint), element, point, times_));
    writeElements(out, record, kPointTexts);
    if (gps::isGeocache(record)) {
        out.write("<extensions>");
        writeGeocache(out, record);
        out.write("</extensions>");
    }
    out.write("</");
    out.write(element);
    out.write(">\n");
}

} // namespace host
