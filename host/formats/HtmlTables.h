// SPDX-License-Identifier: MIT
// The tables of the HTML page for readers who see it without scripts: one for each kind of record,
// in the page's default units. HtmlWriter puts them together. Stateless. [any]

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

class TrackFigures;

enum class HtmlTable { kTracks, kRoutes, kWayPoints, kGeocaches };

/// What comes before a table's rows and after them.
[[nodiscard]] std::string htmlTableStart(HtmlTable table);
inline constexpr std::string_view kHtmlTableEnd = "</table></div></section>\n";

struct TrackCells {
    std::string_view name;
    std::string_view place; ///< where it is, in words
    std::string_view zone;  ///< its time zone, as timeInZone() expects it
    const TrackFigures& figures;
    std::size_t points = 0;
};

struct RouteCells {
    std::string_view name;
    std::string_view comment;
    double kilometres = 0;
    std::size_t points = 0;
};

/// Each appends a row. Texts can be those of a device: they are escaped.
void appendTableRow(std::string& out, const TrackCells& track);
void appendTableRow(std::string& out, const RouteCells& route);

/// A geocache has a row of the table of geocaches, and any other point one of the waypoints' table.
void appendTableRow(std::string& out, const gps::GPSPoint& point, const gps::Dictionary& record);

/// Appends a paragraph, unless the text is empty.
void appendHtmlParagraph(std::string& out, std::string_view text);

} // namespace host
