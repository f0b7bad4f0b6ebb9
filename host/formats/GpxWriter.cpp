// SPDX-License-Identifier: MIT
// Track points are written into the output's own buffer: this is the inner loop of a download.

#include "host/formats/GpxWriter.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/base/XmlText.h"
#include "host/formats/GeocacheXml.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <array>
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

constexpr std::array kCollectionTexts{TextElement{"name", "<name>", "</name>"},
                                      TextElement{"comment", "<cmt>", "</cmt>"}};

// The schema fixes the order: elevation and time before these, and extensions last.
constexpr std::array kPointTexts{TextElement{"name", "<name>", "</name>"},
                                 TextElement{"comment", "<cmt>", "</cmt>"},
                                 TextElement{"symbol", "<sym>", "</sym>"}};

constexpr std::size_t kMostOfPoint = // the longest element name, "rtept", included
    std::string_view{R"(<rtept lat="" lon=""><ele></ele><time>Z</time>)"}.size() +
    2 * kMostOfDegrees + gps::kMostOfDecimal + TimestampText::kSize;

constexpr std::string_view kMetadataEnd = "</metadata>";
constexpr std::size_t kMostOfBounds =
    std::string_view{
        R"(<bounds minlat="-12.123456789" minlon="-123.123456789" maxlat="-12.123456789" maxlon="-123.123456789"/>)"}
        .size();
constexpr std::size_t kBoundsRoom = kMostOfBounds + kMetadataEnd.size();

// The schema allows longitudes from -180 to below 180. A longitude just below 180 would be rounded
// up to it.
double schemaLongitude(double longitude)
{
    constexpr double kAlmost180 = 180 - 1e-9;
    return longitude > kAlmost180 ? -180 : longitude;
}

char* putBounds(char* at, const Bounds& bounds)
{
    at = put(at, R"(<bounds minlat=")");
    at = putDegrees(at, bounds.south);
    at = put(at, R"(" minlon=")");
    at = putDegrees(at, bounds.west);
    at = put(at, R"(" maxlat=")");
    at = putDegrees(at, bounds.north);
    at = put(at, R"(" maxlon=")");
    at = putDegrees(at, bounds.east);
    return put(at, R"("/>)");
}

} // namespace

GpxWriter::GpxWriter(Output& output, const std::string& spoolFolder, const RecordOrigin& origin)
    : output_(output), sections_(output, kSections, spoolFolder), source_(origin.receiver)
{
    output_.write(kGpxHead);
    writeMetadata(origin);
}

// The schema demands the bounds behind the other metadata. White space behind the element fills the
// rest of their place.
void GpxWriter::writeMetadata(const RecordOrigin& origin)
{
    std::string text = "<metadata>";
    if (!origin.receiver.empty()) {
        text += "<desc>From ";
        appendXml(text, origin.receiver);
        text += "</desc>";
    }
    if (origin.time) {
        text += "<time>";
        appendTimestamp(text, *origin.time, 'T');
        text += "Z</time>";
    }
    output_.write(text);
    boundsAt_ = output_.size();
    output_.write(kMetadataEnd);
    if (output_.canInsert())
        output_.write(std::string(kMostOfBounds, ' '));
    output_.write("\n");
}

void GpxWriter::writeBounds()
{
    if (bounds_.isEmpty() || !output_.canInsert())
        return;
    std::array<char, kBoundsRoom> text;
    char* const end = put(putBounds(text.data(), bounds_), kMetadataEnd);
    output_.overwrite(boundsAt_, {text.data(), end});
}

void GpxWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (globe_.passes(point))
        writePoint(sections_.outputFor(kWayPointSection), "wpt", point, record);
}

void GpxWriter::beginRoute(const gps::Dictionary& route)
{
    auto& out = sections_.outputFor(kRouteSection);
    beginCollection(out, "<rte>", route);
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
    beginCollection(out, "<trk>", track);
    out.write("<trkseg>\n");
}

void GpxWriter::trackPoint(const gps::GPSPoint& point)
{
    if (!globe_.passes(point))
        return;
    constexpr std::string_view kTrackPointEnd = "</trkpt>\n";
    auto& out = sections_.outputFor(kTrackSection);
    char* at = out.room(kMostOfPoint + kTrackPointEnd.size());
    at = putPoint(at, "trkpt", point);
    out.setEnd(put(at, kTrackPointEnd));
}

void GpxWriter::newSegment()
{
    sections_.write(kTrackSection, "</trkseg><trkseg>\n");
}

void GpxWriter::endTrack()
{
    sections_.write(kTrackSection, "</trkseg></trk>\n");
}

std::optional<gps::Error> GpxWriter::finish()
{
    sections_.finish();
    output_.write(kGpxFoot);
    writeBounds();
    return output_.flush();
}

// The schema demands the source behind the texts.
void GpxWriter::beginCollection(Output& out, std::string_view tag, const gps::Dictionary& record)
{
    out.write(tag);
    writeElements(out, record, kCollectionTexts);
    const auto own = textIn(record, kSourceKey);
    const auto source = own.empty() ? std::string_view{source_} : own;
    if (source.empty())
        return;
    out.write("<src>");
    writeXml(out, source);
    out.write("</src>");
}

char* GpxWriter::putPoint(char* at, std::string_view element, const gps::GPSPoint& point)
{
    const auto longitude = schemaLongitude(point.longitude);
    bounds_.extend(longitude, point.latitude);
    at = put(at, "<");
    at = put(at, element);
    at = put(at, R"( lat=")");
    at = putDegrees(at, point.latitude);
    at = put(at, R"(" lon=")");
    at = putDegrees(at, longitude);
    at = put(at, R"(">)");
    if (isElevationStated(point)) {
        at = put(at, "<ele>");
        at = gps::putDecimal(at, point.altitude);
        at = put(at, "</ele>");
    }
    if (hasTimestamp(point)) {
        at = put(at, "<time>");
        at = times_.put(at, point.time, 'T');
        at = put(at, "Z</time>");
    }
    return at;
}

void GpxWriter::writePoint(Output& out, std::string_view element, const gps::GPSPoint& point,
                           const gps::Dictionary& record)
{
    out.setEnd(putPoint(out.room(kMostOfPoint), element, point));
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
