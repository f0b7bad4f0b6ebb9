// SPDX-License-Identifier: MIT
// The data in the page, and the text around it. The page itself is tested in tests/page/: its
// modules in node, and all of it in a browser.

#include "host/formats/HtmlWriter.h"

#include "host/Numbers.h"
#include "host/formats/Written.h"
#include "host/page/HtmlPage.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using host::Event;
using Json = nlohmann::json;
using support::kNaN;
using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;
using testing::HasSubstr;
using testing::Not;

std::string pageOf(const std::vector<Event>& events, const host::RecordOrigin& origin = {})
{
    support::Written written;
    host::HtmlWriter writer{written.output(), written.folder(), origin};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return written.text();
}

std::string dataTextOf(const std::vector<Event>& events)
{
    const auto page = pageOf(events);
    const auto start = std::string{host::pageStart()} + std::string{host::pageHead()};
    EXPECT_THAT(page, testing::StartsWith(start));
    EXPECT_THAT(page, testing::EndsWith(host::pageFoot()));
    const auto data = page.find(host::pageMiddle()) + host::pageMiddle().size();
    return page.substr(data, page.size() - data - host::pageFoot().size());
}

std::string tablesOf(const std::vector<Event>& events, const host::RecordOrigin& origin = {})
{
    const auto page = pageOf(events, origin);
    const auto start = host::pageStart().size() + host::pageHead().size();
    return page.substr(start, page.find(host::pageMiddle()) - start);
}

Json pageDataOf(const std::vector<Event>& events)
{
    return Json::parse(dataTextOf(events));
}

std::size_t count(std::string_view text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size()))
        ++found;
    return found;
}

TEST(HtmlWriter, PolicyAllowsPicturesOnlyOfTheTilesServer)
{
    const std::string start{host::pageStart()};
    EXPECT_THAT(start, testing::EndsWith("form-action 'none'"));
    EXPECT_THAT(start, Not(HasSubstr("img-src")));
    EXPECT_THAT(pageOf({}), testing::StartsWith(start + "\">"));
    const host::PageTiles tiles{.url = "https://a.org/{z}/{x}/{y}</script>", .attribution = "<me>"};
    const auto page = pageOf({}, {.tiles = tiles});
    EXPECT_THAT(page, testing::StartsWith(start + "; img-src https://a.org\">"));
    EXPECT_THAT(page, HasSubstr(R"("tiles":{"url":"https://a.org/{z}/{x}/{y}\u003c/script\u003e",)"
                                R"("attribution":"\u003cme\u003e"})"));
}

TEST(HtmlWriter, TrackNamesThePointsThatBeginASegment)
{
    const std::vector points{trackPoint({0, 0, 0, 1717236000, 0}),
                             trackPoint({1, 0, 0, 1717236001, 0}),
                             trackPoint({1.001, 0, 0, 1717236031, 0})};
    const auto split = pageDataOf({newTrack({}), support::newSegment(), points[0],
                                   support::newSegment(), points[1], points[2]})["tracks"][0];
    EXPECT_EQ(split["breaks"], Json::array({1}));
    EXPECT_EQ(split["points"].size(), 12U);
    // Nobody has travelled the degree between the segments, nor the second.
    EXPECT_EQ(split["kilometres"], 0.111);
    EXPECT_EQ(split["moving"], 30);
    const auto whole = pageDataOf({newTrack({}), points[1], points[2]})["tracks"][0];
    EXPECT_FALSE(whole.contains("breaks"));
}

TEST(HtmlWriter, WithoutRecordsAllListsAreEmpty)
{
    EXPECT_EQ(
        pageDataOf({}),
        Json::parse(
            R"({"title":"","receiver":"","identifier":"","made":null,"note":"","tiles":{"url":"","attribution":""},"areas":[],"places":[],"land":[],"icons":[],"waypoints":[],"geocaches":[],"routes":[],"tracks":[]})"));
}

TEST(HtmlWriter, PageIsCompleteAndLoadsNothingFromElsewhere)
{
    const auto page = pageOf({});
    EXPECT_THAT(page, testing::StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(page, testing::EndsWith("</html>\n"));
    EXPECT_THAT(page, HasSubstr("default-src 'none'; script-src 'sha256-"));
    for (const char* elsewhere : {"unsafe-", "{{", "}}\"", "src=", "<link", "url(", "@import"})
        EXPECT_THAT(page, Not(HasSubstr(elsewhere))) << elsewhere;
    // A hash has 32 bytes: 43 digits of Base64 and a padding.
    EXPECT_THAT(
        page, testing::ContainsRegex(
                  "script-src 'sha256-[A-Za-z0-9+/]{43}='; style-src 'sha256-[A-Za-z0-9+/]{43}='"));
    EXPECT_EQ(count(page, "</script>"), 2U);
}

TEST(HtmlWriter, PageHasTablesForReadersWithoutScripts)
{
    EXPECT_EQ(tablesOf({}), "");
    const auto tables =
        tablesOf({newTrack({{"name", "Day 1"}}), trackPoint({46, 7, 500, 1717236000, 0}),
                  trackPoint({46.01, 7, 510, 1717236600, 0}), newTrack({{"name", "Day 2"}}),
                  newRoute({{"name", "Loop"}, {"comment", "nice"}}),
                  wayPoint({0, 0, 3, 0, 0}, {{"name", "Stop"}}),
                  wayPoint({1, 0, 3, 0, 0}, {{"name", "End"}})},
                 {.title = "Our <trip>", .receiver = "R"});
    EXPECT_THAT(tables, testing::StartsWith("<p>Our &lt;trip&gt;</p>\n<p>R</p>\n"));
    EXPECT_THAT(
        tables,
        HasSubstr("<tr><td>Day 1<td>near Martigny-Combe<td>2024-06-01 12:00:00<td>2024-06-01 "
                  "12:10:00<td>Zurich<td>1.11 km<td>10 m<td>0 m<td>2\n"));
    EXPECT_THAT(tables, HasSubstr("<tr><td>Day 2<td>–<td>–<td>–<td>–<td>0.00 km<td>–<td>–<td>0\n"));
    EXPECT_THAT(tables, HasSubstr("<tr><td>Loop<td>111.20 km<td>2<td>nice\n"));
    EXPECT_EQ(count(tables, "<table"), 2U);
    EXPECT_EQ(count(tables, "</table>"), 2U);
}

TEST(HtmlWriter, TablesHaveARowForEachPoint)
{
    const auto tables =
        tablesOf({wayPoint({46, 7, 500, 0, 0}, {{"name", "A"}}),
                  wayPoint({46, 7, 500, 0, 0}, {{"name", "B"}}),
                  wayPoint({46, 7, 500, 0, 0}, {{"symbol", "Geocache"}, {"name", "C"}})});
    EXPECT_EQ(count(tables, "<tr>"), 5U); // with the headings
    EXPECT_LT(tables.find("<h2>Waypoints"), tables.find("<td>A"));
    EXPECT_LT(tables.find("<td>B"), tables.find("<h2>Geocaches"));
    EXPECT_LT(tables.find("<h2>Geocaches"), tables.find("<td>C"));
}

TEST(HtmlWriter, PageSaysWhereAndWhenItsRecordsWereObtained)
{
    const auto page =
        pageOf({}, {.title = "A </title>", .receiver = "R", .identifier = "12", .time = 7});
    EXPECT_THAT(
        page,
        HasSubstr(R"("title":"A \u003c/title\u003e","receiver":"R","identifier":"12","made":7,)"));
}

TEST(HtmlWriter, TrackHasDifferencesOfPointsAndFigures)
{
    EXPECT_EQ(
        pageDataOf({newTrack({{"name", "Day 1"}}), trackPoint({46.5, -7.25, 500, 1717236000, 0}),
                    trackPoint({46.501, -7.25, 505.04, 1717236060, 0}),
                    trackPoint({46.5, -7.25, 490, 1717236120, 0})})["tracks"],
        Json::parse(
            R"([{"name":"Day 1","points":[46500000,-7250000,5000,1717236000, 1000,0,50,60, -1000,0,-150,60],
                               "kilometres":0.222,"first":1717236000,"last":1717236120,"ascent":5.04,"descent":15.04,"moving":120,"place":"259 km south-west of Plogoff","zone":"Europe/Paris"}])"));
}

TEST(HtmlWriter, UnknownValueIsNullAndDoesNotChangeItsColumn)
{
    const auto track = pageDataOf({trackPoint({0, 0, 10, 1717236000, 0}),
                                   trackPoint({0, 0, kNaN, 0, 0}), trackPoint({0, 0, 1e6, 1, 0}),
                                   trackPoint({0, 0, 12, 1717236005, 0})})["tracks"][0];
    EXPECT_EQ(track["points"],
              Json::parse("[0,0,100,1717236000, 0,0,null,null, 0,0,null,null, 0,0,20,5]"));
    EXPECT_EQ(track["name"], "");
}

TEST(HtmlWriter, UnknownFiguresAreNull)
{
    const auto track = pageDataOf({newTrack({}), trackPoint({})})["tracks"][0];
    for (const char* key : {"first", "last", "ascent", "descent", "moving"})
        EXPECT_TRUE(track.at(key).is_null()) << key;
    EXPECT_EQ(track["kilometres"], 0);
}

TEST(HtmlWriter, DifferencesAndFiguresStartAnewWithEachTrack)
{
    const auto tracks = pageDataOf({newTrack({{"name", "A"}}), trackPoint({1, 1, 9, 1717236000, 0}),
                                    newTrack({{"name", "B"}}), trackPoint({1, 1, 9, 1717236000, 0}),
                                    newTrack({{"name", "C"}})})["tracks"];
    ASSERT_EQ(tracks.size(), 3U);
    EXPECT_EQ(tracks[0]["points"], tracks[1]["points"]);
    for (const char* key : {"kilometres", "first", "last", "ascent", "descent", "moving"})
        EXPECT_EQ(tracks[0][key], tracks[1][key]) << key;
    EXPECT_EQ(tracks[2]["points"], Json::array());
}

TEST(HtmlWriter, RouteHasItsPointsAndItsLength)
{
    EXPECT_EQ(pageDataOf({newRoute({{"name", "Loop"}, {"comment", "nice"}}),
                          wayPoint({0, 0, 3, 0, 0}, {{"name", "A"}}),
                          wayPoint({1, 0, 4, 0, 0}, {{"name", "B"}})})["routes"],
              Json::parse(R"([{"name":"Loop","comment":"nice","kilometres":111.195,"points":[
                               {"name":"A","comment":"","symbol":"","at":[0,0,30,null]},
                               {"name":"B","comment":"","symbol":"","at":[1000000,0,40,null]}]}])"));
}

TEST(HtmlWriter, LengthStartsAnewWithEachRoute)
{
    const auto routes =
        pageDataOf({newRoute({}), wayPoint({0, 0, 0, 0, 0}, {}), wayPoint({1, 0, 0, 0, 0}, {}),
                    newRoute({}), wayPoint({5, 5, 0, 0, 0}, {})})["routes"];
    ASSERT_EQ(routes.size(), 2U);
    EXPECT_EQ(routes[0]["kilometres"], 111.195);
    EXPECT_EQ(routes[1]["kilometres"], 0);
}

TEST(HtmlWriter, GeocachesHaveAListOfTheirOwn)
{
    const auto data =
        pageDataOf({wayPoint({46.5, 7.25, 1200, 0, 0},
                             {{"name", "Camp"}, {"comment", "by the lake"}, {"symbol", "Resort"}}),
                    wayPoint({46, 7, 500, 0, 0}, {{"name", "GC1"},
                                                  {"comment", "note"},
                                                  {"geocacheOwner", "owner"},
                                                  {"geocacheHint", "hint"},
                                                  {"geocacheType", "Traditional"},
                                                  {"datePlaced", "010208"},
                                                  {"dateFound", "soon"},
                                                  {"difficulty", "1"},
                                                  {"terrain", "2.5"},
                                                  {"symbol", "Geocache"}})});
    EXPECT_EQ(
        data["waypoints"],
        Json::parse(
            R"([{"name":"Camp","comment":"by the lake","symbol":"Resort","at":[46500000,7250000,12000,null]}])"));
    EXPECT_EQ(data["geocaches"],
              Json::parse(
                  R"([{"name":"GC1","comment":"note","symbol":"Geocache Found","type":"Traditional",
        "owner":"owner","hint":"hint","difficulty":"1","terrain":"2.5","placed":"2008-02-01","found":"soon",
        "at":[46000000,7000000,5000,null]}])"));
}

TEST(HtmlWriter, GeocacheWithoutAFoundDateIsNotFound)
{
    const auto data =
        pageDataOf({wayPoint({}, {{"symbol", "Geocache Found"}, {"datePlaced", "010208"}}),
                    wayPoint({}, {{"symbol", "Geocache Found"}, {"dateFound", "020309"}})});
    EXPECT_EQ(data["geocaches"][0]["symbol"], "Geocache");
    EXPECT_EQ(data["geocaches"][1]["symbol"], "Geocache Found");
}

TEST(HtmlWriter, RecordsInAnyOrderAreListedByKind)
{
    const auto data = pageDataOf(
        {newTrack({{"name", "T1"}}), trackPoint({}), newRoute({{"name", "R1"}}),
         wayPoint({}, {{"name", "P"}}), support::stateChange(0), wayPoint({}, {{"name", "W1"}}),
         newTrack({{"name", "T2"}}), support::stateChange(0), wayPoint({}, {{"name", "W2"}})});
    EXPECT_EQ(data["tracks"].size(), 2U);
    EXPECT_EQ(data["routes"].size(), 1U);
    EXPECT_EQ(data["waypoints"].size(), 2U);
}

TEST(HtmlWriter, PointsWithoutValidCoordinatesAreLeftOutAndCounted)
{
    const auto data = pageDataOf(
        {newTrack({}), trackPoint({90.1, 0, 0, 0, 0}), trackPoint({90, 0, 0, 0, 0}), newRoute({}),
         wayPoint({0, 181, 0, 0, 0}), support::stateChange(0), wayPoint({kNaN, 0, 0, 0, 0})});
    EXPECT_EQ(data["tracks"][0]["points"], Json::parse("[90000000,0,0,null]"));
    EXPECT_EQ(data["routes"][0]["points"], Json::array());
    EXPECT_EQ(data["waypoints"], Json::array());
    EXPECT_EQ(data["note"], "3 points without valid coordinates were left out");
}

TEST(HtmlWriter, NoTextBecomesMarkupOrScript)
{
    const std::string hostile = "</script><script>alert(1)</script><!--&amp;\"\\\xE2\x80\xA8'";
    const auto text = dataTextOf(
        {wayPoint({}, {{"name", hostile}, {"comment", hostile}, {"symbol", hostile}}),
         wayPoint({}, {{"symbol", "Geocache"},
                       {"geocacheOwner", hostile},
                       {"geocacheHint", hostile},
                       {"dateFound", hostile}}),
         newRoute({{"name", hostile}, {"comment", hostile}}), newTrack({{"name", hostile}})});
    for (const char* part : {"<", ">", "&", "\xE2\x80\xA8"})
        EXPECT_THAT(text, Not(HasSubstr(part))) << part;
    EXPECT_EQ(Json::parse(text)["tracks"][0]["name"],
              "</script><script>alert(1)</script><!--&amp;\"\\ '");
}

TEST(HtmlWriter, ControlCharactersAndInvalidUtf8AreReplaced)
{
    const auto data =
        pageDataOf({newTrack({{"name", std::string{"a\0b\x1b\xff\xE2\x80\xAE", 8}}})});
    EXPECT_EQ(data["tracks"][0]["name"], "a\xEF\xBF\xBD"
                                         "b\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(HtmlWriter, LongNamesAndRightToLeftNamesAreKept)
{
    const std::string arabic = "\xD8\xAC\xD8\xA8\xD9\x84";
    const auto data =
        pageDataOf({newTrack({{"name", std::string(10'000, 'x')}}), newTrack({{"name", arabic}})});
    EXPECT_EQ(data["tracks"][0]["name"], std::string(10'000, 'x'));
    EXPECT_EQ(data["tracks"][1]["name"], arabic);
}

TEST(HtmlWriter, FailedWriteIsReportedAtTheEnd)
{
    support::Written written;
    host::Output full{::open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full"};
    host::HtmlWriter writer{full, written.folder(), {}};
    writer.event(trackPoint({}));
    const auto failure = writer.close();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/dev/full");
}

} // namespace
