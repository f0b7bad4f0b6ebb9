// SPDX-License-Identifier: MIT
// The rows of the tables that the page has for readers without scripts.

#include "host/Numbers.h"

#include <gps/Value.h>
#include <host/formats/HtmlTables.h>
#include <host/points/TrackFigures.h>

#include <gmock/gmock.h>

#include <string>

namespace {

using host::HtmlTable;
using testing::HasSubstr;

std::string rowOf(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    std::string row;
    host::appendTableRow(row, point, record);
    return row;
}

std::size_t columnsOf(const std::string& text, std::string_view tag)
{
    std::size_t found = 0;
    for (auto at = text.find(tag); at != std::string::npos; at = text.find(tag, at + 1))
        ++found;
    return found;
}

TEST(HtmlTables, WaypointHasItsPositionItsSymbolAndItsComment)
{
    EXPECT_EQ(rowOf({-44.61207, 169.04391, 14.4, 0, 0},
                    {{"name", "Camp"}, {"symbol", "Resort"}, {"comment", "by the lake"}}),
              "<tr><td>Camp<td>44.61207° S<td>169.04391° E<td>14 m<td>Resort<td>by the lake\n");
}

TEST(HtmlTables, WhatIsNotKnownIsADash)
{
    EXPECT_EQ(rowOf({0, -1, support::kNaN, 0, 0}, {}),
              "<tr><td>–<td>0.00000° N<td>1.00000° W<td>–<td>–<td>–\n");
}

TEST(HtmlTables, ElevationJustBelowTheSeaIsZero)
{
    EXPECT_THAT(rowOf({0, 0, -0.3, 0, 0}, {}), HasSubstr("<td>0 m<td>"));
    EXPECT_THAT(rowOf({0, 0, -0.6, 0, 0}, {}), HasSubstr("<td>−1 m<td>"));
}

TEST(HtmlTables, GeocacheHasAllThatIsKnownOfIt)
{
    EXPECT_THAT(rowOf({1, 2, 5, 0, 0}, {{"name", "GC1"},
                                        {"symbol", "Geocache"},
                                        {"geocacheType", "Traditional"},
                                        {"geocacheOwner", "owner"},
                                        {"geocacheHint", "hint"},
                                        {"datePlaced", "010208"},
                                        {"difficulty", "1"},
                                        {"terrain", "2.5"},
                                        {"comment", "note"}}),
                testing::EndsWith("<td>Traditional<td>1<td>2.5<td>owner<td>2008-02-01<td>–<td><"
                                  "details><summary>Show</summary>hint</details>"
                                  "<td>note\n"));
}

TEST(HtmlTables, NothingInATextIsMarkup)
{
    const std::string hostile = "</noscript><script>&\"\n\x1b\xE2\x80\x8E";
    const std::string harmless = "&lt;/noscript&gt;&lt;script&gt;&amp;&quot; \uFFFD\uFFFD";
    EXPECT_THAT(rowOf({}, {{"name", hostile}}), HasSubstr("<td>" + harmless + "<td>"));
    std::string row;
    host::appendTableRow(row, host::RouteCells{hostile, hostile, 0, 0});
    EXPECT_EQ(row, "<tr><td>" + harmless + "<td>0.00 km<td>0<td>" + harmless + "\n");
}

TEST(HtmlTables, EachTableHasAHeadingForEachCellOfItsRows)
{
    const auto headings = [](HtmlTable table) {
        return columnsOf(host::htmlTableStart(table), "<th ");
    };
    std::string track;
    host::appendTableRow(track, host::TrackCells{"", "", "", host::TrackFigures{}, 0});
    std::string route;
    host::appendTableRow(route, host::RouteCells{});
    EXPECT_EQ(headings(HtmlTable::kTracks), columnsOf(track, "<td>"));
    EXPECT_EQ(headings(HtmlTable::kRoutes), columnsOf(route, "<td>"));
    EXPECT_EQ(headings(HtmlTable::kWayPoints), columnsOf(rowOf({}, {}), "<td>"));
    EXPECT_EQ(headings(HtmlTable::kGeocaches),
              columnsOf(rowOf({}, {{"symbol", "Geocache"}}), "<td>"));
}

TEST(HtmlTables, AnEmptyParagraphIsLeftOut)
{
    std::string text;
    host::appendHtmlParagraph(text, "");
    host::appendHtmlParagraph(text, "a<b");
    EXPECT_EQ(text, "<p>a&lt;b</p>\n");
}

} // namespace
