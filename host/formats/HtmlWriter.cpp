// SPDX-License-Identifier: MIT
// Each kind of record is collected in a list of its own as it arrives, and its rows of the table in
// another one. finish() writes the page around them.

#include "host/formats/HtmlWriter.h"

#include "host/base/JsonText.h"
#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/formats/GeocacheXml.h"
#include "host/formats/HtmlData.h"
#include "host/formats/HtmlSurroundings.h"
#include "host/formats/HtmlTables.h"
#include "host/page/HtmlPage.h"
#include "host/places/Places.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostOfElementStart = 2;

// Writes what separates an element of an array from the one before it.
char* putElementStart(char* at, bool isFirst)
{
    return isFirst ? at : put(at, ",\n");
}

// A point's numbers in the page's units. Precondition: the point has valid coordinates. Whole
// numbers keep the page small: a millionth of a degree is 0.11 m. They are rounded before
// differences are made of them, because the page adds the differences up, and rounded differences
// would drift away from the track.
struct PointNumbers {
    explicit PointNumbers(const gps::GPSPoint& point)
        : latitude(std::llround(point.latitude * 1e6)),
          longitude(std::llround(point.longitude * 1e6))
    {
        if (hasElevation(point))
            elevation = std::llround(point.altitude * 10);
        if (hasTimestamp(point))
            time = point.time;
    }

    std::int64_t latitude;
    std::int64_t longitude;
    std::optional<std::int64_t> elevation{};
    std::optional<std::int64_t> time{};
};

constexpr std::size_t kMostOfNumbers = 4 * (gps::kMostOfInteger + 1);

// Writes latitude, longitude, elevation and time, with commas between them.
char* putNumbers(char* at, const std::array<std::optional<std::int64_t>, 4>& numbers)
{
    for (const auto& number : numbers)
        at = put(putNumber(at, number), ",");
    return at - 1;
}

// The difference from a column's last number, which this one replaces. An unknown number has no
// difference and replaces nothing.
std::optional<std::int64_t> difference(const std::optional<std::int64_t>& number,
                                       std::int64_t& last)
{
    if (!number)
        return std::nullopt;
    const auto result = *number - last;
    last = *number;
    return result;
}

void appendGeocacheMembers(std::string& out, const gps::Dictionary& record)
{
    appendMember(out, "type", textIn(record, "geocacheType"));
    appendMember(out, "owner", textIn(record, "geocacheOwner"));
    appendMember(out, "hint", textIn(record, "geocacheHint"));
    appendMember(out, "difficulty", textIn(record, "difficulty"));
    appendMember(out, "terrain", textIn(record, "terrain"));
    appendMember(out, "placed", dayOf(textIn(record, "datePlaced")));
    appendMember(out, "found", dayOf(textIn(record, "dateFound")));
}

void appendTiles(std::string& out, const PageTiles& tiles)
{
    appendJsonKey(out, "tiles");
    out += '{';
    appendMember(out, "url", tiles.url);
    appendMember(out, "attribution", tiles.attribution);
    out += '}';
}

void appendPoint(std::string& out, const gps::GPSPoint& point, const gps::Dictionary& record)
{
    out += '{';
    for (const char* const key : {"name", "comment", "symbol"})
        appendMember(out, key, textIn(record, key));
    if (gps::isGeocache(record))
        appendGeocacheMembers(out, record);
    const PointNumbers numbers{point};
    appendJsonKey(out, "at");
    out += '[';
    appendPut<kMostOfNumbers>(out, [&](char* at) {
        return putNumbers(at,
                          {numbers.latitude, numbers.longitude, numbers.elevation, numbers.time});
    });
    out += "]}";
}

} // namespace

HtmlWriter::HtmlWriter(Output& output, const std::string& spoolFolder, RecordOrigin origin)
    : output_(output), origin_(std::move(origin)), wayPoints_(spoolFolder), geocaches_(spoolFolder),
      routes_(spoolFolder), tracks_(spoolFolder)
{}

void HtmlWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    areas_.add(point);
    auto& list = gps::isGeocache(record) ? geocaches_ : wayPoints_;
    icons_.add(textIn(record, "symbol"));
    startElement(std::exchange(list.isEmpty, false));
    appendPoint(text_, point, record);
    list.spool.write(text_);
    text_.clear();
    appendTableRow(text_, point, record);
    list.rows.write(text_);
}

void HtmlWriter::beginRoute(const gps::Dictionary& route)
{
    startElement(std::exchange(routes_.isEmpty, false));
    text_ += '{';
    appendMember(text_, "name", textIn(route, "name"));
    appendMember(text_, "comment", textIn(route, "comment"));
    text_ += R"(,"points":[)";
    routes_.spool.write(text_);
    name_ = textIn(route, "name");
    comment_ = textIn(route, "comment");
    points_ = 0;
    routeLength_ = {};
}

void HtmlWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    startElement(points_++ == 0);
    appendPoint(text_, point, record);
    routes_.spool.write(text_);
    routeLength_.add(point);
    areas_.add(point);
}

void HtmlWriter::endRoute()
{
    text_ = "]";
    appendMember(text_, "kilometres", std::optional{routeLength_.kilometres()});
    text_ += '}';
    routes_.spool.write(text_);
    text_.clear();
    appendTableRow(text_, RouteCells{name_, comment_, routeLength_.kilometres(), points_});
    routes_.rows.write(text_);
}

void HtmlWriter::beginTrack(const gps::Dictionary& track)
{
    startElement(std::exchange(tracks_.isEmpty, false));
    text_ += '{';
    appendMember(text_, "name", textIn(track, "name"));
    text_ += R"(,"points":[)";
    tracks_.spool.write(text_);
    name_ = textIn(track, "name");
    points_ = 0;
    breaks_.clear();
    figures_ = {};
    columns_ = {};
    start_.reset();
}

void HtmlWriter::trackPoint(const gps::GPSPoint& point)
{
    if (!globe_.passes(point))
        return;
    const PointNumbers numbers{point};
    char* const at = tracks_.spool.room(kMostOfElementStart + kMostOfNumbers);
    tracks_.spool.setEnd(putNumbers(putElementStart(at, points_ == 0),
                                    {difference(numbers.latitude, columns_.latitude),
                                     difference(numbers.longitude, columns_.longitude),
                                     difference(numbers.elevation, columns_.elevation),
                                     difference(numbers.time, columns_.time)}));
    figures_.add(point);
    areas_.add(point, Areas::kTrackPointWeight);
    if (!start_)
        start_ = point;
    ++points_;
}

// At a break before the first point nothing is interrupted.
void HtmlWriter::newSegment()
{
    figures_.breakHere();
    if (points_ > 0)
        breaks_ += fmt::format("{},", points_);
}

void HtmlWriter::endTrack()
{
    text_ = "]";
    if (!breaks_.empty()) {
        breaks_.back() = ']';
        text_ += R"(,"breaks":[)" + breaks_;
    }
    appendMember(text_, "kilometres", std::optional{figures_.kilometres()});
    appendMember(text_, "first", figures_.first());
    appendMember(text_, "last", figures_.last());
    appendMember(text_, "ascent", figures_.ascentMetres());
    appendMember(text_, "descent", figures_.descentMetres());
    appendMember(text_, "moving", figures_.movingSeconds());
    const auto place = start_ ? whereabouts(*start_) : "";
    const auto zone = start_ ? timeZoneAt(*start_) : "";
    appendMember(text_, "place", place);
    appendMember(text_, "zone", zone);
    text_ += '}';
    tracks_.spool.write(text_);
    text_.clear();
    appendTableRow(text_, TrackCells{name_, place, zone, figures_, points_});
    tracks_.rows.write(text_);
}

std::optional<gps::Error> HtmlWriter::finish()
{
    output_.write(pageStart());
    if (!origin_.tiles.url.empty())
        output_.write("; img-src " + tileSources(origin_.tiles.url));
    output_.write(pageHead());
    writeTables();
    output_.write(pageMiddle());
    text_ = "{";
    appendMember(text_, "title", origin_.title);
    appendMember(text_, "receiver", origin_.receiver);
    appendMember(text_, "identifier", origin_.identifier);
    appendMember(text_, "made", origin_.time);
    appendMember(text_, "note", globe_.remark());
    appendTiles(text_, origin_.tiles);
    appendSurroundings(text_, areas_.find());
    icons_.append(text_);
    output_.write(text_);
    writeList("waypoints", wayPoints_);
    writeList("geocaches", geocaches_);
    writeList("routes", routes_);
    writeList("tracks", tracks_);
    output_.write("}");
    output_.write(pageFoot());
    return output_.flush();
}

// Clears the buffer for the next element of an array.
void HtmlWriter::startElement(bool isFirst)
{
    text_.clear();
    appendPut<kMostOfElementStart>(text_, [&](char* at) { return putElementStart(at, isFirst); });
}

void HtmlWriter::writeTables()
{
    text_.clear();
    for (const auto& line : {origin_.title, origin_.receiver, globe_.remark()})
        appendHtmlParagraph(text_, line);
    output_.write(text_);
    writeTable(HtmlTable::kTracks, tracks_);
    writeTable(HtmlTable::kRoutes, routes_);
    writeTable(HtmlTable::kWayPoints, wayPoints_);
    writeTable(HtmlTable::kGeocaches, geocaches_);
}

void HtmlWriter::writeTable(HtmlTable table, List& list)
{
    if (list.isEmpty)
        return;
    output_.write(htmlTableStart(table));
    list.rows.moveTo(output_);
    output_.write(kHtmlTableEnd);
}

void HtmlWriter::writeList(std::string_view key, List& list)
{
    output_.write(fmt::format(",\n\"{}\":[", key));
    list.spool.moveTo(output_);
    output_.write("]");
}

} // namespace host
