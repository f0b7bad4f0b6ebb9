// SPDX-License-Identifier: MIT

#include "host/formats/KmlWriter.h"

#include "host/Numbers.h"
#include "host/formats/Written.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

#include <limits>

namespace {

using host::Event;
using support::kTen;
using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct Kml {
    std::string text;
    std::string remark;
};

Kml kmlOf(const std::vector<Event>& events)
{
    support::Written written;
    host::KmlWriter writer{written.output(), written.folder()};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return {written.text(), writer.remark()};
}

// The text between the styles and the end of the document.
std::string kmlBodyOf(const std::vector<Event>& events)
{
    constexpr std::string_view kStyle = "</Style>\n";
    constexpr std::string_view kFoot = "</Document>\n</kml>\n";
    const auto text = kmlOf(events).text;
    EXPECT_THAT(text, testing::EndsWith(std::string{kFoot}));
    const auto begin = text.rfind(kStyle) + kStyle.size();
    return text.substr(begin, text.size() - begin - kFoot.size());
}

std::vector<std::string> namesOf(const pugi::xml_node& parent, const char* child)
{
    std::vector<std::string> names;
    for (const auto& node : parent.children(child))
        names.emplace_back(node.child_value("name"));
    return names;
}

TEST(KmlWriter, SegmentsAreLinesOfOnePlacemark)
{
    EXPECT_THAT(
        kmlBodyOf({newTrack({{"name", "A"}}), trackPoint({1, 2, 3, 0, 0}),
                   trackPoint({2, 3, 4, 0, 0}), support::newSegment(), trackPoint({4, 5, 6, 0, 0}),
                   trackPoint({5, 6, 7, 0, 0})}),
        testing::ContainsRegex("<name>A</name>.*<MultiGeometry>\n<LineString>.*2,1,3\n3,2,4\n"
                               "</coordinates></LineString>\n<LineString>.*5,4,6\n6,5,7\n"));
}

TEST(KmlWriter, BreakBeforeTheFirstPointOfATrackMakesNoPlacemark)
{
    const std::vector points{trackPoint({1, 2, 3, kTen, 0}), trackPoint({2, 3, 4, kTen + 60, 0})};
    EXPECT_EQ(kmlBodyOf({newTrack({}), support::newSegment(), points[0], points[1]}),
              kmlBodyOf({newTrack({}), points[0], points[1]}));
    EXPECT_EQ(kmlBodyOf({newTrack({}), points[0], support::newSegment(), newTrack({}), points[1]}),
              kmlBodyOf({newTrack({}), points[0], newTrack({}), points[1]}));
}

TEST(KmlWriter, WithoutEventsItIsADocumentOfStyles)
{
    EXPECT_EQ(kmlBodyOf({}), "");
    EXPECT_THAT(kmlOf({}).text,
                testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml "));
}

TEST(KmlWriter, WayPointHasItsChildrenInTheOrderOfTheSchema)
{
    EXPECT_EQ(
        kmlBodyOf({wayPoint({46.5, -7.25, 1200.5, kTen, 0},
                            {{"symbol", "Camp"}, {"comment", "by the lake"}, {"name", "A"}})}),
        "<Folder><name>Waypoints</name>\n"
        "<Placemark><name>A</name><description>by the "
        "lake</description><TimeStamp><when>2024-06-01T10:00:00Z</when></TimeStamp>"
        "<styleUrl>#waypoint</styleUrl><ExtendedData><Data "
        "name=\"symbol\"><value>Camp</value></Data>"
        "<Data name=\"comment\"><value>by the lake</value></Data></ExtendedData>"
        "<Point><coordinates>-7.25,46.5,1200.5</coordinates></Point></Placemark>\n"
        "</Folder>\n");
}

TEST(KmlWriter, EmptyTextsAndTimesWithoutADateAreLeftOut)
{
    EXPECT_THAT(kmlBodyOf({wayPoint({1, 2, 3, 315532799, 0},
                                    {{"name", ""}, {"comment", ""}, {"symbol", ""}})}),
                HasSubstr("\n<Placemark><styleUrl>#waypoint</styleUrl><Point><coordinates>2,1,3</"
                          "coordinates></Point></Placemark>\n"));
    EXPECT_THAT(kmlBodyOf({wayPoint({0, 0, 0, 315532800, 0})}),
                HasSubstr("<when>1980-01-01T00:00:00Z</when>"));
}

TEST(KmlWriter, MarkupInADescriptionIsShownAsText)
{
    const auto body = kmlBodyOf({wayPoint({}, {{"name", "<&\x01\xff"}, {"comment", "<b>&"}})});
    EXPECT_THAT(body, HasSubstr("<name>&lt;&amp;\xEF\xBF\xBD</name>"));
    EXPECT_THAT(body, HasSubstr("<description>&amp;lt;b&amp;gt;&amp;amp;</description>"));
    EXPECT_THAT(body, HasSubstr("<Data name=\"comment\"><value>&lt;b&gt;&amp;</value></Data>"));
}

TEST(KmlWriter, EveryFieldOfARecordButItsPointIsData)
{
    const auto body = kmlBodyOf({wayPoint({}, {{"symbol", "Geocache"},
                                               {"terrain", "2"},
                                               {"count", 3},
                                               {"list", gps::Array{1, "x"}},
                                               {"a\"b", true},
                                               {"point", gps::GPSPoint{}}})});
    EXPECT_THAT(
        body,
        HasSubstr("<Folder><name>Geocaches</name>\n<Placemark><styleUrl>#geocache</styleUrl>"
                  "<ExtendedData><Data name=\"symbol\"><value>Geocache</value></Data><Data "
                  "name=\"terrain\"><value>2</value></Data><Data "
                  "name=\"count\"><value>3</value></Data>"
                  "<Data name=\"list\"><value>[1,&quot;x&quot;]</value></Data>"
                  "<Data name=\"a&quot;b\"><value>true</value></Data></ExtendedData><Point>"));
}

TEST(KmlWriter, GeocacheWithoutAFoundDateIsNotFound)
{
    constexpr char kFound[] = "<Data name=\"symbol\"><value>Geocache Found</value></Data>";
    EXPECT_THAT(kmlBodyOf({wayPoint({}, {{"symbol", "Geocache Found"}, {"datePlaced", "010208"}})}),
                HasSubstr("<Data name=\"symbol\"><value>Geocache</value></Data>"));
    EXPECT_THAT(kmlBodyOf({wayPoint({}, {{"symbol", "Geocache Found"}, {"dateFound", "020309"}})}),
                HasSubstr(kFound));
}

TEST(KmlWriter, TimedTrackHasItsTimesBeforeItsCoordinates)
{
    EXPECT_EQ(kmlBodyOf({newTrack({{"name", "Day 1"}}), trackPoint({1, 2, 3, kTen, 0}),
                         trackPoint({4, 5, 6, kTen + 1, 0})}),
              "<Folder><name>Tracks</name>\n"
              "<Placemark><name>Day 1</name><styleUrl>#track</styleUrl><gx:Track>\n"
              "<when>2024-06-01T10:00:00Z</when>\n<when>2024-06-01T10:00:01Z</when>\n"
              "<gx:coord>2 1 3</gx:coord>\n<gx:coord>5 4 6</gx:coord>\n"
              "</gx:Track></Placemark>\n"
              "</Folder>\n");
}

TEST(KmlWriter, UntimedTrackIsALine)
{
    EXPECT_EQ(kmlBodyOf({newTrack({{"name", "T"}}), trackPoint({1, 2, 3, 0, 0}),
                         trackPoint({4, 5, 6, 60, 0})}),
              "<Folder><name>Tracks</name>\n"
              "<Placemark><name>T</name><styleUrl>#track</styleUrl><ExtendedData>"
              "<own:trackRuns xmlns:own=\"urn:magellangps:kml\">new</own:trackRuns></ExtendedData>"
              "<LineString><tessellate>1</"
              "tessellate><coordinates>\n"
              "2,1,3\n5,4,6\n"
              "</coordinates></LineString></Placemark>\n"
              "</Folder>\n");
}

TEST(KmlWriter, OneUntimedPointIsALineOfTwoPositionsAndNoPointsAreNoGeometry)
{
    EXPECT_THAT(kmlBodyOf({trackPoint({1, 2, 3, 0, 0})}),
                HasSubstr("<coordinates>\n2,1,3\n2,1,3\n</coordinates></LineString></Placemark>"));
    EXPECT_EQ(kmlBodyOf({newTrack({{"name", "T"}})}),
              "<Folder><name>Tracks</name>\n<Placemark><name>T</name><styleUrl>#track</styleUrl>"
              "<ExtendedData><own:trackRuns xmlns:own=\"urn:magellangps:kml\"></own:trackRuns>"
              "</ExtendedData></Placemark>\n</Folder>\n");
    EXPECT_THAT(kmlBodyOf({trackPoint({1, 2, 3, kTen, 0})}),
                HasSubstr("</when>\n<gx:coord>2 1 3</gx:coord>\n</gx:Track>"));
}

TEST(KmlWriter, TrackOfTimedAndUntimedPointsIsOnePlacemarkWithARunOfEachInOrder)
{
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(
        kmlOf({newTrack({{"name", "T"}}), trackPoint({1, 0, 0, 0, 0}), trackPoint({2, 0, 0, 0, 0}),
               trackPoint({3, 0, 0, kTen, 0}), trackPoint({4, 0, 0, kTen + 1, 0}),
               trackPoint({5, 0, 0, 0, 0})})
            .text.c_str()));
    const auto folder = document.child("kml").child("Document").child("Folder");
    EXPECT_THAT(namesOf(folder, "Placemark"), ElementsAre("T"));
    std::vector<std::string> geometries;
    for (const auto& geometry : folder.child("Placemark").child("MultiGeometry").children())
        geometries.emplace_back(geometry.name());
    EXPECT_THAT(geometries, ElementsAre("LineString", "gx:Track", "LineString"));
}

TEST(KmlWriter, LineAcrossTheDateLineEndsAtIt)
{
    const auto timed =
        kmlBodyOf({trackPoint({0, 179, 0, kTen, 0}), trackPoint({2, -179, 0, kTen + 2, 0})});
    EXPECT_THAT(
        timed,
        HasSubstr("<gx:coord>179 0 0</gx:coord>\n<gx:coord>180 1 0</gx:coord>\n</gx:Track>"));
    EXPECT_THAT(timed,
                HasSubstr("<when>2024-06-01T10:00:01Z</when>\n<when>2024-06-01T10:00:02Z</when>\n"
                          "<gx:coord>-180 1 0</gx:coord>\n<gx:coord>-179 2 0</gx:coord>\n"));
    const auto route =
        kmlBodyOf({newRoute({}), wayPoint({0, -179, 0, 0, 0}), wayPoint({2, 179, 0, 0, 0})});
    EXPECT_THAT(route, HasSubstr("<coordinates>\n-179,0,0\n-180,1,0\n</coordinates>"));
    EXPECT_THAT(route, HasSubstr("<coordinates>\n180,1,0\n179,2,0\n</coordinates>"));
}

TEST(KmlWriter, RouteIsAFolderOfItsPointsAndItsLine)
{
    EXPECT_EQ(
        kmlBodyOf(
            {newRoute({{"name", "Loop"}, {"comment", "nice"}, {"lastIndex", 2}}),
             wayPoint({1, 2, 3, kTen, 0}, {{"name", "A"}, {"point", gps::GPSPoint{1, 2, 3, 0, 0}}}),
             wayPoint({4, 5, 6, kTen, 0})}),
        "<Folder><name>Routes</name>\n"
        "<Folder><name>Loop</name>\n"
        "<Placemark><name>A</name><TimeStamp><when>2024-06-01T10:00:00Z</when></"
        "TimeStamp><styleUrl>#waypoint</styleUrl>"
        "<Point><coordinates>2,1,3</coordinates></Point></Placemark>\n"
        "<Placemark><TimeStamp><when>2024-06-01T10:00:00Z</when></TimeStamp><styleUrl>#waypoint</"
        "styleUrl>"
        "<Point><coordinates>5,4,6</coordinates></Point></Placemark>\n"
        "<Placemark><name>Loop</name><description>nice</description><styleUrl>#route</styleUrl>"
        "<ExtendedData><Data name=\"comment\"><value>nice</value></Data><Data "
        "name=\"lastIndex\"><value>2</value></Data>"
        "<own:routeLine xmlns:own=\"urn:magellangps:kml\"/></ExtendedData>"
        "<LineString><tessellate>1</tessellate><coordinates>\n2,1,3\n5,4,6\n</coordinates></"
        "LineString></Placemark>\n"
        "</Folder>\n"
        "</Folder>\n");
}

TEST(KmlWriter, EachKindHasOneFolderWhenFilesMixThem)
{
    const auto idle = support::stateChange(0);
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(
        kmlOf({wayPoint({}, {{"name", "W1"}}), newRoute({{"name", "R1"}}),
               wayPoint({}, {{"name", "RP"}}), newTrack({{"name", "T1"}}), trackPoint({}), idle,
               wayPoint({}, {{"name", "C1"}, {"symbol", "Geocache"}}),
               wayPoint({}, {{"name", "W2"}}), newTrack({{"name", "T2"}}),
               newRoute({{"name", "R2"}})})
            .text.c_str()));
    const auto root = document.child("kml").child("Document");
    EXPECT_THAT(namesOf(root, "Folder"), ElementsAre("Tracks", "Routes", "Waypoints", "Geocaches"));
    std::vector<std::vector<std::string>> placemarks;
    for (const auto& folder : root.children("Folder"))
        placemarks.push_back(namesOf(folder, "Placemark"));
    EXPECT_THAT(placemarks, ElementsAre(ElementsAre("T1", "T2"), ElementsAre(),
                                        ElementsAre("W1", "W2"), ElementsAre("C1")));
}

TEST(KmlWriter, PointOffTheGlobeIsLeftOutAndCounted)
{
    const auto poles = kmlOf({wayPoint({90.1, 0, 0, 0, 0}), wayPoint({90, 180, 0, 0, 0}),
                              trackPoint({-90, -180, 0, 0, 0}),
                              trackPoint({0, std::numeric_limits<double>::quiet_NaN(), 0, 0, 0}),
                              newRoute({}), wayPoint({0, -181, 0, 0, 0})});
    EXPECT_EQ(poles.remark, "3 points without valid coordinates were left out");
    EXPECT_THAT(poles.text, HasSubstr(">180,90,0<"));
    EXPECT_THAT(poles.text, HasSubstr("\n-180,-90,0\n<"));
    EXPECT_THAT(poles.text, Not(HasSubstr("90.1")));
    EXPECT_EQ(kmlOf({wayPoint({})}).remark, "");
}

TEST(KmlWriter, AltitudeThatIsNotFiniteIsLeftOut)
{
    EXPECT_THAT(kmlBodyOf({wayPoint({1, 2, std::numeric_limits<double>::infinity(), 0, 0})}),
                HasSubstr("<coordinates>2,1</coordinates>"));
}

TEST(KmlWriter, FailedWriteIsReportedAtTheEnd)
{
    support::Written written;
    host::Output full{::open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full"};
    host::KmlWriter writer{full, written.folder()};
    writer.event(trackPoint({}));
    const auto failure = writer.close();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/dev/full");
}

} // namespace
