// SPDX-License-Identifier: MIT
// Track points are written into the output's own buffer: this is the inner loop of a download.

#include "host/formats/GpxWriter.h"

#include "host/base/Text.h"
#include "host/base/XmlText.h"
#include "host/formats/GeocacheXml.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>

namespace host {
namespace {

constexpr std::string_view kGpxHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gpx version=\"1.1\" creator=\"magellangps\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n";
constexpr std::string_view kGpxFoot = "</gpx>\n";

enum Section : std::size_t { kWayPointSection, kRouteSection, kTrackSection, kSections };

// Writes a child element for a text field, unless it is missing or empty.
void appendChild(std::string& out, std::string_view element, const gps::Dictionary& record,
                 std::string_view key)
{
    const auto* text = record.findString(key);
    if (text == nullptr || text->empty())
        return;
    out.append(1, '<').append(element).append(1, '>');
    appendXml(out, *text);
    out.append("</").append(element).append(1, '>');
}

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
    if (makePoint("wpt", point, record))
        sections_.write(kWayPointSection, text_);
}

void GpxWriter::beginRoute(const gps::Dictionary& route)
{
    text_ = "<rte>";
    appendChild(text_, "name", route, "name");
    appendChild(text_, "cmt", route, "comment");
    text_ += '\n';
    sections_.write(kRouteSection, text_);
}

void GpxWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (makePoint("rtept", point, record))
        sections_.write(kRouteSection, text_);
}

void GpxWriter::endRoute()
{
    sections_.write(kRouteSection, "</rte>\n");
}

void GpxWriter::beginTrack(const gps::Dictionary& track)
{
    text_ = "<trk>";
    appendChild(text_, "name", track, "name");
    // Drivers report no breaks within a track, so it always has one segment.
    text_ += "<trkseg>\n";
    sections_.write(kTrackSection, text_);
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

bool GpxWriter::makePoint(std::string_view element, const gps::GPSPoint& point,
                          const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return false;
    text_.clear();
    appendPut<kMostOfPoint>(text_, [&](char* at) { return putPoint(at, element, point, times_); });
    // The schema fixes the order: ele and time before name, cmt and sym, and extensions last.
    appendChild(text_, "name", record, "name");
    appendChild(text_, "cmt", record, "comment");
    appendChild(text_, "sym", record, "symbol");
    if (gps::isGeocache(record)) {
        text_ += "<extensions>";
        appendGeocache(text_, record);
        text_ += "</extensions>";
    }
    text_.append("</").append(element).append(">\n");
    return true;
}

} // namespace host
