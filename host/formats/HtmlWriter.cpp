// SPDX-License-Identifier: MIT

#include "host/formats/HtmlWriter.h"

#include "host/base/JsonText.h"
#include "host/base/Text.h"
#include "host/formats/GeocacheXml.h"
#include "host/page/HtmlPage.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <cmath>
#include <limits>
#include <string_view>

namespace host {
namespace {

constexpr std::size_t kWhole = std::numeric_limits<std::size_t>::max();

// A string that stays within the script element whatever it holds.
void appendText(std::string& out, std::string_view text)
{
    std::string plain;
    appendJson(plain, displayText(text, kWhole));
    for (const char c : plain) {
        if (c == '<')
            out += "\\u003c";
        else if (c == '>')
            out += "\\u003e";
        else if (c == '&')
            out += "\\u0026";
        else
            out += c;
    }
}

std::string_view textUnder(const gps::Dictionary& record, std::string_view key)
{
    const auto* text = record.findString(key);
    return text != nullptr ? std::string_view{*text} : std::string_view{};
}

void appendTextMember(std::string& out, std::string_view key, std::string_view text)
{
    appendJsonKey(out, key);
    appendText(out, text);
}

void appendFigure(std::string& out, std::string_view key, const std::optional<double>& figure)
{
    appendJsonKey(out, key);
    if (figure)
        gps::appendShortest(out, std::round(*figure * 1000) / 1000);
    else
        out += "null";
}

void appendFigure(std::string& out, std::string_view key, const std::optional<std::int64_t>& figure)
{
    appendJsonKey(out, key);
    if (figure)
        gps::appendInteger(out, *figure);
    else
        out += "null";
}

// The day of a date text; a text that is none as it stands.
std::string dayOf(std::string_view text)
{
    auto day = dateTimeOf(text);
    if (day != text)
        day.resize(std::string_view{"2008-05-14"}.size());
    return day;
}

// A point's numbers as the page wants them. Precondition: it lies on the globe.
struct Numbers {
    explicit Numbers(const gps::GPSPoint& point)
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

void appendNumber(std::string& out, const std::optional<std::int64_t>& number)
{
    if (number)
        gps::appendInteger(out, *number);
    else
        out += "null";
}

// How far a column has moved since its last number.
std::optional<std::int64_t> step(const std::optional<std::int64_t>& number, std::int64_t& last)
{
    if (!number)
        return std::nullopt;
    const auto moved = *number - last;
    last = *number;
    return moved;
}

void appendPlace(std::string& out, const gps::GPSPoint& point, const gps::Dictionary& record)
{
    out += '{';
    for (const char* const key : {"name", "comment", "symbol"})
        appendTextMember(out, key, textUnder(record, key));
    if (gps::isGeocache(record)) {
        appendTextMember(out, "type", textUnder(record, "geocacheType"));
        appendTextMember(out, "owner", textUnder(record, "geocacheOwner"));
        appendTextMember(out, "hint", textUnder(record, "geocacheHint"));
        appendTextMember(out, "difficulty", textUnder(record, "difficulty"));
        appendTextMember(out, "terrain", textUnder(record, "terrain"));
        appendTextMember(out, "placed", dayOf(textUnder(record, "datePlaced")));
        appendTextMember(out, "found", dayOf(textUnder(record, "dateFound")));
    }
    const Numbers numbers{point};
    appendJsonKey(out, "at");
    out += '[';
    gps::appendInteger(out, numbers.latitude);
    out += ',';
    gps::appendInteger(out, numbers.longitude);
    out += ',';
    appendNumber(out, numbers.elevation);
    out += ',';
    appendNumber(out, numbers.time);
    out += "]}";
}

} // namespace

HtmlWriter::HtmlWriter(Output& output, const std::string& spoolFolder)
    : output_(output), wayPoints_(spoolFolder), geocaches_(spoolFolder), routes_(spoolFolder),
      tracks_(spoolFolder)
{}

void HtmlWriter::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    auto& list = gps::isGeocache(record) ? geocaches_ : wayPoints_;
    text_.clear();
    separate(list.isEmpty);
    appendPlace(text_, point, record);
    list.spool.write(text_);
}

void HtmlWriter::beginRoute(const gps::Dictionary& route)
{
    text_.clear();
    separate(routes_.isEmpty);
    text_ += '{';
    appendTextMember(text_, "name", textUnder(route, "name"));
    appendTextMember(text_, "comment", textUnder(route, "comment"));
    text_ += R"(,"points":[)";
    routes_.spool.write(text_);
    isFirstPoint_ = true;
    routeLength_ = {};
}

void HtmlWriter::routePoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    if (!globe_.passes(point))
        return;
    text_.clear();
    separate(isFirstPoint_);
    appendPlace(text_, point, record);
    routes_.spool.write(text_);
    routeLength_.add(point);
}

void HtmlWriter::endRoute()
{
    text_ = "]";
    appendFigure(text_, "kilometres", std::optional{routeLength_.kilometres()});
    text_ += '}';
    routes_.spool.write(text_);
}

void HtmlWriter::beginTrack(const gps::Dictionary& track)
{
    text_.clear();
    separate(tracks_.isEmpty);
    text_ += '{';
    appendTextMember(text_, "name", textUnder(track, "name"));
    text_ += R"(,"points":[)";
    tracks_.spool.write(text_);
    isFirstPoint_ = true;
    figures_ = {};
    columns_ = {};
}

void HtmlWriter::trackPoint(const gps::GPSPoint& point)
{
    if (!globe_.passes(point))
        return;
    const Numbers numbers{point};
    text_.clear();
    separate(isFirstPoint_);
    appendNumber(text_, step(numbers.latitude, columns_.latitude));
    text_ += ',';
    appendNumber(text_, step(numbers.longitude, columns_.longitude));
    text_ += ',';
    appendNumber(text_, step(numbers.elevation, columns_.elevation));
    text_ += ',';
    appendNumber(text_, step(numbers.time, columns_.time));
    tracks_.spool.write(text_);
    figures_.add(point);
}

void HtmlWriter::endTrack()
{
    text_ = "]";
    appendFigure(text_, "kilometres", std::optional{figures_.kilometres()});
    appendFigure(text_, "first", figures_.first());
    appendFigure(text_, "last", figures_.last());
    appendFigure(text_, "ascent", figures_.ascentMetres());
    appendFigure(text_, "descent", figures_.descentMetres());
    appendFigure(text_, "moving", figures_.movingSeconds());
    text_ += '}';
    tracks_.spool.write(text_);
}

std::optional<gps::Error> HtmlWriter::finish()
{
    output_.write(pageHead());
    text_ = "{";
    appendTextMember(text_, "note", globe_.remark());
    output_.write(text_);
    move("waypoints", wayPoints_);
    move("geocaches", geocaches_);
    move("routes", routes_);
    move("tracks", tracks_);
    output_.write("}");
    output_.write(pageFoot());
    return output_.flush();
}

void HtmlWriter::separate(bool& isFirst)
{
    if (!isFirst)
        text_ += ",\n";
    isFirst = false;
}

void HtmlWriter::move(std::string_view key, List& list)
{
    text_ = ",\n\"";
    text_.append(key).append("\":[");
    output_.write(text_);
    list.spool.moveTo(output_);
    output_.write("]");
}

} // namespace host
