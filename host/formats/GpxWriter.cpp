// SPDX-License-Identifier: MIT
// Each element is built in one buffer and written at once: this is the inner loop of a download.

#include "host/formats/GpxWriter.h"

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

void appendAttributes(std::string& out, const gps::GPSPoint& point)
{
    out += R"( lat=")";
    appendDegrees(out, point.latitude);
    out += R"(" lon=")";
    // The schema allows longitudes from -180 to below 180. A longitude just below 180 would be
    // rounded up to it.
    constexpr double kAlmost180 = 180 - 1e-9;
    appendDegrees(out, point.longitude > kAlmost180 ? -180 : point.longitude);
    out += R"(">)";
}

void appendElevationAndTime(std::string& out, const gps::GPSPoint& point)
{
    if (std::isfinite(point.altitude)) {
        out += "<ele>";
        gps::appendDecimal(out, point.altitude);
        out += "</ele>";
    }
    if (hasTimestamp(point)) {
        out += "<time>";
        appendTimestamp(out, point.time, 'T');
        out += "Z</time>";
    }
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
    if (makePoint("trkpt", point, noFields_))
        sections_.write(kTrackSection, text_);
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
    text_.assign(1, '<').append(element);
    appendAttributes(text_, point);
    // The schema fixes the order: ele and time before name, cmt and sym, and extensions last.
    appendElevationAndTime(text_, point);
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
