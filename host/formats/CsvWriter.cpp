// SPDX-License-Identifier: MIT
// A track point has no texts of its own, so its row is written into the output's own buffer.

#include "host/formats/CsvWriter.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/formats/GeocacheXml.h"
#include "host/points/LocalTime.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kPosition = "latitude,longitude,elevation,time (UTC),local time";
constexpr std::string_view kCsvRowEnd = "\r\n";

struct TableText {
    std::string_view name;
    std::string_view before; // the names of the columns before the position, and behind it
    std::string_view behind;
};

constexpr std::array kTableTexts{
    TableText{"waypoint", "name,", ",comment,symbol"},
    TableText{"geocache", "name,",
              ",comment,symbol,owner,hint,type,placed,found,difficulty,terrain"},
    TableText{"route point", "route,route comment,name,", ",comment,symbol"},
    TableText{"track point", "track,segment,", ""},
};

bool needsQuotes(std::string_view text)
{
    return text.find_first_of("\",\r\n") != std::string_view::npos;
}

void appendCell(std::string& out, std::string_view text)
{
    if (!needsQuotes(text)) {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
}

// Writes a comma and a text.
void writeNextCell(Output& out, std::string_view text)
{
    std::string cell{","};
    appendCell(cell, text);
    out.write(cell);
}

constexpr std::size_t kMostOfCsvPosition =
    2 * kMostOfDegrees + gps::kMostOfDecimal + TimestampText::kSize + kMostOfLocalTime + 5;

} // namespace

CsvWriter::CsvWriter(Output& output, const std::string& spoolFolder)
    : output_(output), sections_(output, kTables, spoolFolder)
{}

void CsvWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    const bool isGeocache = gps::isGeocache(record);
    auto& out = beginRow(isGeocache ? kGeocacheTable : kWaypointTable);
    std::string name;
    appendCell(name, textIn(record, "name"));
    out.write(name);
    writePosition(out, point);
    writeNextCell(out, textIn(record, "comment"));
    writeNextCell(out, textIn(record, "symbol"));
    if (isGeocache) {
        for (const auto* key : {"geocacheOwner", "geocacheHint", "geocacheType"})
            writeNextCell(out, textIn(record, key));
        for (const auto* key : {"datePlaced", "dateFound"})
            writeNextCell(out, dayOf(textIn(record, key)));
        for (const auto* key : {"difficulty", "terrain"})
            writeNextCell(out, textIn(record, key));
    }
    out.write(kCsvRowEnd);
}

void CsvWriter::beginRoute(const gps::Dictionary& route)
{
    collection_.clear();
    for (const auto* key : {"name", "comment"}) {
        appendCell(collection_, textIn(route, key));
        collection_ += ',';
    }
}

void CsvWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    auto& out = beginRow(kRouteTable);
    std::string cells = collection_;
    appendCell(cells, textIn(record, "name"));
    out.write(cells);
    writePosition(out, point);
    writeNextCell(out, textIn(record, "comment"));
    writeNextCell(out, textIn(record, "symbol"));
    out.write(kCsvRowEnd);
}

void CsvWriter::beginTrack(const gps::Dictionary& track)
{
    track_.clear();
    appendCell(track_, textIn(track, "name"));
    segment_ = 0;
    newSegment();
}

void CsvWriter::trackPoint(const gps::GPSPoint& point)
{
    if (!globe_.passes(point))
        return;
    auto& out = beginRow(kTrackTable);
    out.write(collection_);
    writePosition(out, point);
    out.write(kCsvRowEnd);
}

void CsvWriter::newSegment()
{
    collection_ = track_ + ',';
    gps::appendInteger(collection_, ++segment_);
}

std::optional<gps::Error> CsvWriter::finish()
{
    sections_.finish();
    return output_.flush();
}

// Writes the header before the first row, and the kind.
Output& CsvWriter::beginRow(Table table)
{
    auto& out = sections_.outputFor(table);
    const auto& text = kTableTexts[table];
    if (!std::exchange(hasHeader_[table], true)) {
        out.write("kind,");
        out.write(text.before);
        out.write(kPosition);
        out.write(text.behind);
        out.write(kCsvRowEnd);
    }
    out.write(text.name);
    out.write(",");
    return out;
}

// Writes the cells of the position, each behind a comma. An unknown elevation or time is empty.
void CsvWriter::writePosition(Output& out, const gps::GPSPoint& point)
{
    char* at = put(out.room(kMostOfCsvPosition), ",");
    at = put(putDegrees(at, point.latitude), ",");
    at = put(putDegrees(at, point.longitude), ",");
    if (isElevationStated(point))
        at = gps::putDecimal(at, point.altitude);
    at = put(at, ",");
    const bool isTimed = hasTimestamp(point);
    if (isTimed)
        at = times_.put(at, point.time, ' ');
    at = put(at, ",");
    if (isTimed)
        at = putLocalTime(at, point.time);
    out.setEnd(at);
}

} // namespace host
