// SPDX-License-Identifier: MIT
// HTML does not need the end tags of cells and rows, and most of the tables would consist of them.

#include "host/formats/HtmlTables.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/base/XmlText.h"
#include "host/formats/GeocacheXml.h"
#include "host/places/PlaceTime.h"
#include "host/points/Points.h"
#include "host/points/TrackFigures.h"

#include <gps/Geocache.h>
#include <gps/Value.h>

#include <fmt/format.h>

#include <cmath>
#include <initializer_list>

namespace host {
namespace {

constexpr std::string_view kUnknown = "–";

void appendHtmlCell(std::string& out, std::string_view text)
{
    out += "<td>";
    appendXml(out, text.empty() ? std::string{kUnknown} : pageText(text));
}

// What readers see only if they ask for it.
void appendHiddenCell(std::string& out, std::string_view text)
{
    if (text.empty())
        return appendHtmlCell(out, text);
    out += "<td><details><summary>Show</summary>";
    appendXml(out, pageText(text));
    out += "</details>";
}

void appendHtmlCells(std::string& out, std::initializer_list<std::string_view> texts)
{
    for (const auto text : texts)
        appendHtmlCell(out, text);
}

// With the page's minus sign, which is not a hyphen.
std::string metresText(const std::optional<double>& metres)
{
    if (!metres)
        return {};
    const auto rounded = std::round(*metres);
    return fmt::format("{}{:.0f} m", rounded < 0 ? "−" : "", std::abs(rounded));
}

std::string kilometresText(double kilometres)
{
    return fmt::format("{:.2f} km", kilometres);
}

void appendPosition(std::string& out, const gps::GPSPoint& point)
{
    const auto degrees = [](double value, char positive, char negative) {
        return fmt::format("{:.5f}° {}", std::abs(value), value < 0 ? negative : positive);
    };
    appendHtmlCells(out, {degrees(point.latitude, 'N', 'S'), degrees(point.longitude, 'E', 'W'),
                          hasElevation(point) ? metresText(point.altitude) : ""});
}

void appendColumns(std::string& out, std::initializer_list<std::string_view> titles)
{
    for (const auto title : titles)
        out += fmt::format("<th scope=\"col\">{}", title);
}

} // namespace

std::string htmlTableStart(HtmlTable table)
{
    const auto start = [](std::string_view title) {
        return fmt::format("<section><h2>{0}</h2><div class=\"scroll\" tabindex=\"0\" "
                           "role=\"region\" aria-label=\"{0}\"><table><thead><tr>",
                           title);
    };
    std::string out;
    switch (table) {
    case HtmlTable::kTracks:
        out = start("Tracks");
        appendColumns(out, {"Name", "Where", "From", "To", "Time zone", "Length", "Ascent",
                            "Descent", "Points"});
        break;
    case HtmlTable::kRoutes:
        out = start("Routes");
        appendColumns(out, {"Name", "Length", "Points", "Comment"});
        break;
    case HtmlTable::kWayPoints:
        out = start("Waypoints");
        appendColumns(out, {"Name", "Latitude", "Longitude", "Elevation", "Symbol", "Comment"});
        break;
    case HtmlTable::kGeocaches:
        out = start("Geocaches");
        appendColumns(out, {"Name", "Latitude", "Longitude", "Elevation", "Type", "Difficulty",
                            "Terrain", "Owner", "Placed", "Found", "Hint", "Comment"});
        break;
    }
    return out + "<tbody>\n";
}

void appendTableRow(std::string& out, const TrackCells& track)
{
    const auto& figures = track.figures;
    const auto first = figures.first();
    out += "<tr>";
    appendHtmlCells(out, {track.name, track.place, timeInZone(first, track.zone),
                          timeInZone(figures.last(), track.zone),
                          first ? zoneTitle(track.zone, *first) : "",
                          kilometresText(figures.kilometres()), metresText(figures.ascentMetres()),
                          metresText(figures.descentMetres()), fmt::format("{}", track.points)});
    out += '\n';
}

void appendTableRow(std::string& out, const RouteCells& route)
{
    out += "<tr>";
    appendHtmlCells(out, {route.name, kilometresText(route.kilometres),
                          fmt::format("{}", route.points), route.comment});
    out += '\n';
}

void appendTableRow(std::string& out, const gps::GPSPoint& point, const gps::Dictionary& record)
{
    out += "<tr>";
    appendHtmlCell(out, textIn(record, "name"));
    appendPosition(out, point);
    if (gps::isGeocache(record)) {
        appendHtmlCells(out,
                        {textIn(record, "geocacheType"), textIn(record, "difficulty"),
                         textIn(record, "terrain"), textIn(record, "geocacheOwner"),
                         dayOf(textIn(record, "datePlaced")), dayOf(textIn(record, "dateFound"))});
        appendHiddenCell(out, textIn(record, "geocacheHint"));
    } else {
        appendHtmlCell(out, textIn(record, "symbol"));
    }
    appendHtmlCell(out, textIn(record, "comment"));
    out += '\n';
}

void appendHtmlParagraph(std::string& out, std::string_view text)
{
    if (text.empty())
        return;
    out += "<p>";
    appendXml(out, pageText(text));
    out += "</p>\n";
}

} // namespace host
