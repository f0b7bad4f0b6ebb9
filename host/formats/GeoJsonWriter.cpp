// SPDX-License-Identifier: MIT
// A feature has its properties first, so that in a file a line's details can be written while its
// points arrive and only the coordinates need a spool.

#include "host/formats/GeoJsonWriter.h"

#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/formats/GeocacheXml.h"
#include "host/points/DateLine.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kGeoJsonHead = R"({"type":"FeatureCollection","features":[)";
constexpr std::string_view kGeoJsonFoot = "\n]}\n";

constexpr std::size_t kMostOfPosition = 2 * kMostOfDegrees + gps::kMostOfDecimal + 4;
constexpr std::size_t kMostOfTime = TimestampText::kSize + 3;

// Rounded to millimetres, never to -0.
double inMillimetres(double metres)
{
    return std::round(metres * 1000) / 1000 + 0.0;
}

// Longitude comes first. A position without an altitude has two numbers.
char* putPosition(char* at, const gps::GPSPoint& point)
{
    *at++ = '[';
    at = putDegrees(at, point.longitude);
    *at++ = ',';
    at = putDegrees(at, point.latitude);
    if (isElevationStated(point)) {
        *at++ = ',';
        at = gps::putDecimal(at, inMillimetres(point.altitude));
    }
    *at++ = ']';
    return at;
}

char* putTime(char* at, const gps::GPSPoint& point, TimestampText& times)
{
    *at++ = '"';
    at = times.put(at, point.time, 'T');
    return put(at, "Z\"");
}

// Keys that have a meaning of their own in these features, and those by which a driver joins
// sentences, which mean nothing to anybody else.
bool isReserved(std::string_view key)
{
    constexpr std::array<std::string_view, 6> kReserved{"kind",   "time",      "coordTimes",
                                                        "points", "lastIndex", "trackName"};
    return std::find(kReserved.begin(), kReserved.end(), key) != kReserved.end();
}

// A field of a geocache under the name that it has in CSV, too. Its key is the driver's own.
struct GeocacheField {
    std::string_view key;
    std::string_view name;
    bool isDay = false;
};

constexpr std::array kGeocacheFields{
    GeocacheField{"geocacheOwner", "owner"},   GeocacheField{"geocacheHint", "hint"},
    GeocacheField{"geocacheType", "type"},     GeocacheField{"datePlaced", "placed", true},
    GeocacheField{"dateFound", "found", true},
};

void appendField(std::string& out, std::string_view key, const gps::Value& value)
{
    const auto* const field =
        std::find_if(kGeocacheFields.begin(), kGeocacheFields.end(),
                     [key](const GeocacheField& geocache) { return geocache.key == key; });
    if (field == kGeocacheFields.end()) {
        appendJsonKey(out, key);
        appendJsonValue(out, value);
        return;
    }
    appendJsonKey(out, field->name);
    const auto* const text = value.as<std::string>();
    if (field->isDay && text != nullptr)
        appendJson(out, dayOf(*text));
    else
        appendJsonValue(out, value);
}

// The record's fields as members. Leaves out boxed points, which become the geometry.
void appendFields(std::string& out, const gps::Dictionary& record)
{
    for (const auto& [key, value] : record) {
        if (!isReserved(key) && value.as<gps::GPSPoint>() == nullptr)
            appendField(out, key, value);
    }
}

void appendTimeMember(std::string& out, const gps::GPSPoint& point)
{
    if (!hasTimestamp(point))
        return;
    appendJsonKey(out, "time");
    TimestampText times;
    appendPut<kMostOfTime>(out, [&](char* at) { return putTime(at, point, times); });
}

} // namespace

GeoJsonWriter::GeoJsonWriter(Output& output, const std::string& spoolFolder)
    : output_(output), details_(spoolFolder), coordinates_(spoolFolder)
{
    output_.write(kGeoJsonHead);
}

void GeoJsonWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    beginFeature();
    text_ = R"({"type":"Feature","properties":{)";
    appendJsonKey(text_, "kind");
    text_ += gps::isGeocache(record) ? R"("geocache")" : R"("waypoint")";
    appendTimeMember(text_, point);
    appendFields(text_, record);
    text_ += R"(},"geometry":{"type":"Point","coordinates":)";
    appendPut<kMostOfPosition>(text_, [&](char* at) { return putPosition(at, point); });
    text_ += "}}";
    output_.write(text_);
}

void GeoJsonWriter::beginRoute(const gps::Dictionary& route)
{
    beginLine("route", "points", route);
}

void GeoJsonWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    addToLine(point);
    text_ = '{';
    appendTimeMember(text_, point);
    appendFields(text_, record);
    text_ += '}';
    addDetail(text_);
}

void GeoJsonWriter::endRoute()
{
    endLine();
}

void GeoJsonWriter::beginTrack(const gps::Dictionary& track)
{
    beginLine("track", "coordTimes", track);
}

void GeoJsonWriter::trackPoint(const gps::GPSPoint& point)
{
    if (!globe_.passes(point))
        return;
    addToLine(point);
    if (!hasTimestamp(point)) {
        addNoDetail();
        return;
    }
    std::array<char, kMostOfTime> time;
    addDetail({time.data(), putTime(time.data(), point, times_)});
}

void GeoJsonWriter::newSegment()
{
    isBroken_ = true;
}

void GeoJsonWriter::endTrack()
{
    endLine();
}

std::optional<gps::Error> GeoJsonWriter::finish()
{
    output_.write(kGeoJsonFoot);
    return output_.flush();
}

void GeoJsonWriter::beginFeature()
{
    output_.write(hasFeatures_ ? ",\n" : "\n");
    hasFeatures_ = true;
}

void GeoJsonWriter::beginLine(std::string_view kind, std::string_view detailsName,
                              const gps::Dictionary& record)
{
    beginFeature();
    text_ = R"({"type":"Feature","properties":{)";
    appendJsonKey(text_, "kind");
    appendJson(text_, kind);
    appendFields(text_, record);
    output_.write(text_);
    detailsName_ = detailsName;
    positions_ = 0;
    cuts_.clear();
    isBroken_ = false;
    hasDetails_ = false;
    last_.reset();
}

void GeoJsonWriter::addToLine(const gps::GPSPoint& point)
{
    if (std::exchange(isBroken_, false) && last_)
        beginPart();
    // A cut adds a position on each side, so no part has fewer than the two positions that RFC 7946
    // requires of a line.
    else if (const auto crossing = last_ ? dateLineCrossing(*last_, point) : std::nullopt) {
        addPosition(crossing->before);
        addNoDetail();
        cuts_.push_back(positions_);
        addPosition(crossing->after);
        addNoDetail();
    }
    addPosition(point);
    last_ = point;
}

void GeoJsonWriter::beginPart()
{
    completePart();
    cuts_.push_back(positions_);
}

// A line needs two positions, so that of a single point is repeated.
void GeoJsonWriter::completePart()
{
    const auto begin = cuts_.empty() ? 0 : cuts_.back();
    if (positions_ - begin > 1)
        return;
    addPosition(*last_);
    addNoDetail();
}

void GeoJsonWriter::addPosition(const gps::GPSPoint& point)
{
    const auto separator = separatorBefore(positions_++);
    char* const at = coordinates_.room(separator.size() + kMostOfPosition);
    coordinates_.setEnd(putPosition(put(at, separator), point));
}

// What is between a position and the one before it, and between their details.
std::string_view GeoJsonWriter::separatorBefore(std::size_t position) const
{
    if (position == 0)
        return "";
    return std::binary_search(cuts_.begin(), cuts_.end(), position) ? "],[" : ",";
}

// Of the last position.
void GeoJsonWriter::addDetail(std::string_view json)
{
    auto& out = detailsOutput();
    if (!hasDetails_)
        beginDetails(out);
    out.write(separatorBefore(positions_ - 1));
    out.write(json);
    hasDetails_ = true;
}

// The earlier positions had no detail. Their nulls could not be written at once, because a line
// without any details lacks this member. The space becomes a bracket if the line is cut.
void GeoJsonWriter::beginDetails(Output& out)
{
    out.write(",\"");
    out.write(detailsName_);
    out.write("\":[ ");
    bracketAt_ = out.size() - 1;
    for (std::size_t i = 0; i + 1 < positions_; ++i) {
        out.write(separatorBefore(i));
        out.write("null");
    }
}

void GeoJsonWriter::endDetails(bool isCut)
{
    auto& out = detailsOutput();
    if (isCut)
        out.overwrite(bracketAt_, "[");
    out.write(isCut ? "]]" : "]");
    if (&out == &details_)
        details_.moveTo(output_);
}

void GeoJsonWriter::addNoDetail()
{
    if (hasDetails_)
        addDetail("null");
}

void GeoJsonWriter::endLine()
{
    const bool isCut = !cuts_.empty();
    if (isCut)
        completePart();
    if (hasDetails_)
        endDetails(isCut);
    output_.write(R"(},"geometry":)");
    if (positions_ == 0) {
        output_.write("null}");
        return;
    }
    // Each part of a cut line has at least two positions, so isCut implies isLine.
    const bool isLine = positions_ > 1;
    output_.write(isCut    ? R"({"type":"MultiLineString","coordinates":[[)"
                  : isLine ? R"({"type":"LineString","coordinates":[)"
                           : R"({"type":"Point","coordinates":)");
    coordinates_.moveTo(output_);
    output_.write(isCut ? "]]}}" : isLine ? "]}}" : "}}");
}

} // namespace host
