// SPDX-License-Identifier: MIT
// KML and KMZ files of this program and of others, and some that are made to do harm.

#include "host/formats/KmlReader.h"

#include "host/Archives.h"
#include "host/Numbers.h"
#include "host/files/ZipWriter.h"
#include "host/formats/KmlWriter.h"
#include "host/formats/KmzWriter.h"
#include "host/formats/Written.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using gps::Dictionary;
using gps::GPSPoint;
using support::kTen;
using testing::HasSubstr;

struct Read {
    Dictionary data;
    host::UnreadParts unread;
    std::string failure; // its description; empty if there is none
};

Read readFile(const std::string& content, const char* name = "a.kml")
{
    const support::TemporaryFolder folder;
    Read read;
    if (const auto failure = host::readKml(folder.put(name, content), read.data, read.unread))
        read.failure = failure->description().value_or("?");
    if (!read.failure.empty()) {
        EXPECT_TRUE(read.data.empty()) << read.failure;
    }
    return read;
}

std::string document(const std::string& content)
{
    return "<?xml version='1.0'?>\n<kml xmlns='http://www.opengis.net/kml/2.2' "
           "xmlns:gx='http://www.google.com/kml/ext/2.2'><Document>\n" +
           content + "</Document></kml>\n";
}

Dictionary dataOf(const std::string& content)
{
    const auto read = readFile(document(content));
    EXPECT_EQ(read.failure, "");
    EXPECT_EQ(read.unread.waypoints, 0U);
    return read.data;
}

std::string failureOf(const std::string& content)
{
    return readFile(document(content)).failure;
}

const Dictionary& recordAt(const Dictionary& data, const char* key, std::size_t index)
{
    return *(*data.findArray(key))[index].as<Dictionary>();
}

std::size_t countOf(const Dictionary& data, const char* key)
{
    const auto* const records = data.findArray(key);
    return records != nullptr ? records->size() : 0;
}

std::vector<GPSPoint> pointsOf(const Dictionary& track)
{
    std::vector<GPSPoint> points;
    for (const auto& record : *track.findArray("points"))
        points.push_back(*gps::findPoint(*record.as<Dictionary>()));
    return points;
}

constexpr char kPoint[] = "<Placemark><name>A</name><Point><coordinates>7.25,46.5,3"
                          "</coordinates></Point></Placemark>\n";

TEST(KmlReader, PointIsAWaypointInAnyFolder)
{
    const auto data =
        dataOf(std::string{"<Folder><Folder>"} + kPoint + "</Folder></Folder>" + kPoint);
    EXPECT_EQ(countOf(data, "waypoint"), 2U);
    EXPECT_EQ(
        recordAt(data, "waypoint", 0),
        (Dictionary{{"name", "A"}, {"comment", ""}, {"point", GPSPoint{46.5, 7.25, 3, 0, 0}}}));
    EXPECT_FALSE(data.contains("track"));
}

TEST(KmlReader, LineStringIsATrack)
{
    const auto data = dataOf("<Placemark><name>L</name><LineString><coordinates>\n"
                             "  7,46,1 7.5,46.5,2\n\t8,47,3\n</coordinates></LineString>"
                             "</Placemark>");
    ASSERT_EQ(countOf(data, "track"), 1U);
    const auto& track = recordAt(data, "track", 0);
    EXPECT_EQ(*track.findString("name"), "L");
    EXPECT_EQ(pointsOf(track),
              (std::vector<GPSPoint>{{46, 7, 1, 0, 0}, {46.5, 7.5, 2, 0, 0}, {47, 8, 3, 0, 0}}));
    EXPECT_FALSE(data.contains("waypoint"));
}

TEST(KmlReader, TrackHasItsTimesInTheOrderOfItsPositions)
{
    const auto data = dataOf(
        "<Placemark><name>T</name><gx:Track><when>2024-06-01T10:00:00Z</when>"
        "<when>2024-06-01T10:00:01Z</when><when>never</when><when>2024-06-01T10:00:03Z</when>"
        "<gx:coord>7 46 1</gx:coord><gx:coord/><gx:coord>8 47</gx:coord>"
        "<gx:coord>9 48 2</gx:coord><gx:coord>10 49 3</gx:coord></gx:Track></Placemark>");
    const auto points = pointsOf(recordAt(data, "track", 0));
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points[0], (GPSPoint{46, 7, 1, 1717236000, 0}));
    EXPECT_EQ(points[1].time, 0);
    EXPECT_TRUE(std::isnan(points[1].altitude));
    EXPECT_EQ(points[2], (GPSPoint{48, 9, 2, 1717236003, 0}));
    EXPECT_EQ(points[3], (GPSPoint{49, 10, 3, 0, 0}));
}

TEST(KmlReader, GeometriesOfOnePlacemarkAreATrackWithSegmentsAndWaypoints)
{
    const auto line = [](const char* positions) {
        return std::string{"<LineString><coordinates>"} + positions + "</coordinates></LineString>";
    };
    const auto data =
        dataOf("<Placemark><name>M</name><MultiGeometry>" + line("1,2 3,4") +
               "<MultiGeometry><Point><coordinates>5,6</coordinates></Point></MultiGeometry>" +
               line("7,8 9,10") +
               "</MultiGeometry></Placemark><Placemark><gx:MultiTrack><gx:Track>"
               "<gx:coord>1 2</gx:coord></gx:Track><gx:Track/></gx:MultiTrack></Placemark>");
    ASSERT_EQ(countOf(data, "track"), 3U);
    for (const std::size_t i : {0U, 1U}) {
        const auto& segment = recordAt(data, "track", i);
        EXPECT_EQ(*segment.findString("name"), "M");
        EXPECT_EQ(segment.find("segment")->int32Reading(), static_cast<int>(i) + 1);
        EXPECT_EQ(pointsOf(segment).size(), 2U);
    }
    EXPECT_EQ(*recordAt(data, "waypoint", 0).findString("name"), "M");
    EXPECT_FALSE(recordAt(data, "track", 2).contains("name"));
    EXPECT_FALSE(recordAt(data, "track", 2).contains("segment")); // the other one has no points
    EXPECT_EQ(pointsOf(recordAt(data, "track", 2)).size(), 1U);
}

TEST(KmlReader, OnlyALineAndATrackThatShareAnEndAreOneSegment)
{
    const std::string track = "<gx:Track><when>2024-06-01T10:00:00Z</when><gx:coord>2 1</gx:coord>"
                              "</gx:Track>";
    const auto line = [](const char* positions) {
        return std::string{"<LineString><coordinates>"} + positions + "</coordinates></LineString>";
    };
    const auto segmentsOf = [&](const std::string& lines) {
        return countOf(
            dataOf("<Placemark><MultiGeometry>" + lines + "</MultiGeometry></Placemark>"), "track");
    };
    EXPECT_EQ(segmentsOf(track + line("2,1 4,3")), 1U);
    EXPECT_EQ(segmentsOf(line("4,3 2,1") + track), 1U);
    EXPECT_EQ(segmentsOf(track + line("2,1 4,3 2,1") + track), 1U);
    EXPECT_EQ(segmentsOf(track + line("2,1.1 4,3")), 2U);
    EXPECT_EQ(segmentsOf(line("4,3 2.1,1") + track), 2U);
    EXPECT_EQ(segmentsOf(line("4,3 2,1") + line("2,1 5,6")), 2U);
    EXPECT_EQ(segmentsOf(track + track), 2U);
    const auto data = dataOf("<Placemark><MultiGeometry>" + line("6,5 2,1") + track +
                             line("2,1 4,3") + "</MultiGeometry></Placemark>");
    const auto points = pointsOf(recordAt(data, "track", 0));
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[1].time, 1717236000);
    EXPECT_EQ(points[2].time, 0);
}

TEST(KmlReader, WhatIsNeitherAPointNorALineIsIgnored)
{
    const auto data =
        dataOf("<Placemark><Polygon><outerBoundaryIs><LinearRing><coordinates>1,2 3,4 5,6 1,2"
               "</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark><Placemark/>"
               "<NetworkLink><Link><href>file:///etc/passwd</href></Link></NetworkLink>"
               "<GroundOverlay/><LookAt><longitude>1</longitude></LookAt>");
    EXPECT_TRUE(data.empty());
}

TEST(KmlReader, WhatIsIgnoredIsCounted)
{
    const auto read = readFile(document(
        "<Placemark><MultiGeometry><Polygon/><Polygon/><LinearRing/><Model/></MultiGeometry>"
        "</Placemark><Folder><NetworkLink/><GroundOverlay/><ScreenOverlay/><PhotoOverlay/>"
        "<gx:Tour/><gx:Tour/></Folder><Style/><Placemark><name>Polygon</name></Placemark>"));
    EXPECT_THAT(read.unread.ignored,
                testing::ElementsAre(
                    "a.kml: ignored 2 polygons, 1 ring, 1 model, 1 ground overlay, 1 screen "
                    "overlay, 1 photo overlay, 1 link to another file, 2 tours; points, lines and "
                    "tracks are read."));
    EXPECT_THAT(readFile(document(kPoint)).unread.ignored, testing::IsEmpty());
}

TEST(KmlReader, ValuesThatAreLeftOutAreCountedByKindWithTheFirstAndItsLine)
{
    const auto read = readFile(
        document("<Placemark><Point><coordinates>1,2,3</coordinates></Point></Placemark>\n"
                 "<Placemark><LineString><coordinates>\n1,2,3\n1,3,4m 1,4,5m</coordinates>"
                 "</LineString></Placemark>\n<Placemark><TimeStamp><when>noon</when></TimeStamp>"
                 "<Point><coordinates>1,2,high</coordinates></Point></Placemark>\n"
                 "<Placemark><gx:Track><when/><when>2024-06</when><gx:coord>1 2</gx:coord>"
                 "<gx:coord>1 2 x</gx:coord></gx:Track></Placemark>"));
    EXPECT_THAT(read.unread.values,
                testing::ElementsAre("a.kml, line 6: 4 elevations are not numbers of metres, the "
                                     "first one \"4m\", so they were left out.",
                                     "a.kml, line 7: 2 times are not of the form "
                                     "2024-06-01T12:00:00Z, the first one \"noon\", so they were "
                                     "left out."));
}

TEST(KmlReader, PrefixOfTheNamespaceDoesNotMatter)
{
    const auto read = readFile("<k:kml xmlns:k='http://www.opengis.net/kml/2.2'><k:Placemark>"
                               "<k:name>A</k:name><k:Point><k:coordinates>1,2</k:coordinates>"
                               "</k:Point></k:Placemark></k:kml>");
    EXPECT_EQ(*recordAt(read.data, "waypoint", 0).findString("name"), "A");
}

// Events, written by a writer and read back.
template <typename Writer> Dictionary roundTrip(const std::vector<host::Event>& events)
{
    support::Written written;
    Writer writer{written.output(), written.folder()};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    const auto read = readFile(written.text());
    EXPECT_EQ(read.failure, "");
    return read.data;
}

TEST(KmlReader, OurOwnFilesAreReadBack)
{
    const GPSPoint point{-46.123456789, -179.5, -5.5, 1717236000, 0};
    const Dictionary cache{{"name", "GC1"},          {"comment", "<b> & \"c\""},
                           {"symbol", "Geocache"},   {"geocacheOwner", "Ann"},
                           {"datePlaced", "311299"}, {"terrain", "2"}};
    const std::vector<host::Event> events{
        support::wayPoint(point, cache), support::newTrack({{"name", "Day 1"}}),
        support::trackPoint(point), support::trackPoint({1, -179, 2, 1717236001, 0})};
    for (const auto& data :
         {roundTrip<host::KmlWriter>(events), roundTrip<host::KmzWriter>(events)}) {
        auto expected = cache;
        expected.set("point", point);
        const auto& read = recordAt(data, "waypoint", 0);
        EXPECT_EQ(read, expected) << gps::describe(read);
        EXPECT_EQ(pointsOf(recordAt(data, "track", 0)),
                  (std::vector<GPSPoint>{point, {1, -179, 2, 1717236001, 0}}));
    }
}

TEST(KmlReader, SegmentsAndPointsWithoutTimesSurviveARoundTrip)
{
    const GPSPoint timed{46.5, 7, 1, kTen, 0};
    const GPSPoint untimed{46.6, 7, 2, 0, 0};
    const GPSPoint later{46.7, 7, 3, kTen + 9, 0};
    const std::vector<std::vector<std::vector<GPSPoint>>> tracks{
        {{timed}},
        {{untimed}},
        {{timed}, {later}},
        {{timed, later}, {later, timed}},
        {{untimed, timed}},
        {{timed, untimed}},
        {{timed, untimed, later}, {untimed}, {untimed, later}},
        {{untimed}, {timed}},
        {{timed, untimed, untimed, later, untimed}}};
    for (const auto& track : tracks) {
        std::vector<host::Event> events{support::newTrack({{"name", "T"}, {"source", "S"}})};
        for (const auto& points : track) {
            if (events.size() > 1)
                events.push_back(support::newSegment());
            for (const auto& point : points)
                events.push_back(support::trackPoint(point));
        }
        const auto data = roundTrip<host::KmlWriter>(events);
        ASSERT_EQ(countOf(data, "track"), track.size());
        for (std::size_t i = 0; i < track.size(); ++i) {
            EXPECT_EQ(pointsOf(recordAt(data, "track", i)), track[i]);
            EXPECT_EQ(*recordAt(data, "track", i).findString("source"), "S");
        }
    }
}

TEST(KmlReader, RouteOfAnotherProgramIsALineAndWaypoints)
{
    const auto data = dataOf("<Folder>" + std::string{kPoint} +
                             "<Placemark><name>R</name><LineString><coordinates>1,2 3,4"
                             "</coordinates></LineString></Placemark></Folder>");
    EXPECT_EQ(countOf(data, "waypoint"), 1U);
    EXPECT_EQ(countOf(data, "route"), 0U);
    ASSERT_EQ(countOf(data, "track"), 1U);
    EXPECT_EQ(pointsOf(recordAt(data, "track", 0)).size(), 2U);
}

TEST(KmlReader, InvalidPointOfARouteIsSkippedAndCounted)
{
    const auto read = readFile(document(
        "<Folder><Placemark><name>A</name><Point><coordinates>1,2</coordinates></Point></Placemark>"
        "<Placemark><Point><coordinates>1,95</coordinates></Point></Placemark>"
        "<Placemark><name>R</name><ExtendedData><o:routeLine xmlns:o='urn:magellangps:kml'/>"
        "</ExtendedData><LineString/></Placemark></Folder>"));
    EXPECT_EQ(read.failure, "");
    EXPECT_EQ(read.unread.waypoints, 1U);
    ASSERT_EQ(countOf(read.data, "route"), 1U);
    EXPECT_EQ(pointsOf(recordAt(read.data, "route", 0)),
              (std::vector<GPSPoint>{{2, 1, support::kNaN, 0, 0}}));
}

// A track of three lines, the second of them with a time.
std::string runsDocument(const std::string& runs)
{
    return "<Placemark><ExtendedData><o:trackRuns xmlns:o='urn:magellangps:kml'>" + runs +
           "</o:trackRuns></ExtendedData><MultiGeometry>"
           "<LineString><coordinates>1,1,0 2,2,0</coordinates></LineString>"
           "<gx:Track><when>2024-06-01T10:00:00Z</when><gx:coord>2 2 0</gx:coord></gx:Track>"
           "<LineString><coordinates>2,2,0 3,3,0</coordinates></LineString>"
           "</MultiGeometry></Placemark>";
}

// How many points the segments of a track have.
std::vector<std::size_t> segmentSizes(const Dictionary& data)
{
    std::vector<std::size_t> sizes;
    for (std::size_t i = 0; i < countOf(data, "track"); ++i)
        sizes.push_back(pointsOf(recordAt(data, "track", i)).size());
    return sizes;
}

TEST(KmlReader, NotedRunsDecideWhatBelongsTogether)
{
    using Sizes = std::vector<std::size_t>;
    EXPECT_EQ(segmentSizes(dataOf(runsDocument("new-last more more-first"))), (Sizes{3}));
    EXPECT_EQ(segmentSizes(dataOf(runsDocument("new new new"))), (Sizes{2, 1, 2}));
    EXPECT_EQ(segmentSizes(dataOf(runsDocument("new-last more new"))), (Sizes{2, 2}));
}

TEST(KmlReader, RunsThatDoNotFitTheLinesAreIgnored)
{
    for (const char* const runs :
         {"", "new-last more", "new-last more more-first new", "more more more", "new-last more x",
          "new-last more-first-last more-first"})
        EXPECT_EQ(segmentSizes(dataOf(runsDocument(runs))), (std::vector<std::size_t>{3})) << runs;
}

TEST(KmlReader, CommentOfATrackSurvivesARoundTrip)
{
    const auto data =
        roundTrip<host::KmlWriter>({support::newTrack({{"name", "T"}, {"comment", "<b> & c"}}),
                                    support::trackPoint({46.5, 7, 1, kTen, 0})});
    EXPECT_EQ(*recordAt(data, "track", 0).findString("comment"), "<b> & c");
}

TEST(KmlReader, DescriptionIsTheCommentOfATrack)
{
    const auto data = dataOf("<Placemark><description>a &lt;i&gt;b</description><LineString>"
                             "<coordinates>1,2 3,4</coordinates></LineString></Placemark>");
    EXPECT_EQ(*recordAt(data, "track", 0).findString("comment"), "a  b");
}

TEST(KmlReader, InvalidPointIsSkippedWithItsLineAndCounted)
{
    std::string content = kPoint;
    for (int i = 0; i < 12; ++i)
        content += "<Placemark><Point><coordinates>200,1</coordinates></Point></Placemark>\n";
    const auto read = readFile(document(content + kPoint));
    EXPECT_EQ(countOf(read.data, "waypoint"), 2U);
    EXPECT_EQ(read.unread.waypoints, 12U);
    ASSERT_EQ(read.unread.firstWaypoints.size(), 10U);
    EXPECT_EQ(*read.unread.firstWaypoints[0].description(),
              "a.kml, line 4: the position \"200,1\" is not valid: longitude, latitude and "
              "altitude are expected, so it was skipped");
}

TEST(KmlReader, InvalidPositionOfALineRejectsTheFileWithItsLine)
{
    EXPECT_EQ(failureOf("<Placemark><LineString><coordinates>\n1,2\n3,4 5,91\n</coordinates>"
                        "</LineString></Placemark>"),
              "a.kml, line 5: the position \"5,91\" is not valid: longitude, latitude and altitude "
              "are expected");
    EXPECT_THAT(failureOf("<Placemark><gx:Track>\n<gx:coord>1 2</gx:coord>\n"
                          "<gx:coord>1 x</gx:coord></gx:Track></Placemark>"),
                HasSubstr("a.kml, line 5: the position \"1 x\""));
}

TEST(KmlReader, DamagedFileIsRejectedWithItsLine)
{
    EXPECT_THAT(readFile("<kml>\n<Document>\n").failure, HasSubstr("damaged or cut short"));
    EXPECT_THAT(readFile("<kml/>\n<kml/>").failure, HasSubstr("line 2: there is more text"));
    for (const auto* const text : {"", "hello", "<gpx/>"})
        EXPECT_THAT(readFile(text).failure, HasSubstr("this is not a KML file")) << text;
}

TEST(KmlReader, DeclarationOfEntitiesIsRefused)
{
    EXPECT_THAT(
        readFile("<!DOCTYPE kml [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><kml/>").failure,
        HasSubstr("the file has declarations in its document type"));
    EXPECT_EQ(readFile("<!DOCTYPE kml><kml/>").failure, "");
}

TEST(KmlReader, DepthUpToTheBoundIsReadAndMoreIsRefusedWithItsLine)
{
    const auto nested = [](int folders) {
        std::string text;
        for (int i = 0; i < folders; ++i)
            text += "<Folder>\n";
        text += kPoint;
        for (int i = 0; i < folders; ++i)
            text += "</Folder>";
        return document(text);
    };
    // Above a folder are the root and its document; below, a placemark, its point, coordinates.
    EXPECT_EQ(countOf(readFile(nested(95)).data, "waypoint"), 1U);
    EXPECT_EQ(readFile(nested(96)).failure,
              "a.kml, line 99: elements are nested more than 100 levels deep");
    EXPECT_THAT(readFile(nested(200000)).failure, HasSubstr("nested more than 100 levels"));
}

TEST(KmlReader, DamagedArchiveIsRejectedAndOneThatHoldsNoDocument)
{
    support::Written written;
    host::ZipWriter archive{written.output(), "doc.txt"};
    archive.write("x");
    archive.finish();
    const auto zip = written.text();
    EXPECT_EQ(readFile(zip, "a.kmz").failure, "a.kmz: the archive holds no .kml file");
    EXPECT_EQ(readFile(zip.substr(0, 20), "a.kmz").failure,
              "a.kmz: the archive is damaged or cut short");
}

TEST(KmlReader, LinesOfAnArchiveAreThoseOfItsDocument)
{
    support::Written written;
    host::ZipWriter archive{written.output(), "doc.kml"};
    archive.write(document("\n\n<Placemark><LineString><coordinates>1</coordinates></LineString>"
                           "</Placemark>"));
    archive.finish();
    EXPECT_THAT(readFile(written.text(), "a.kmz").failure, HasSubstr("a.kmz, line 5: "));
}

TEST(KmlReader, FurtherDocumentsOfAnArchiveAreNamed)
{
    std::vector<support::ArchivedFile> files{{"doc.kml", document(kPoint)}};
    EXPECT_THAT(readFile(support::archiveOf(files), "a.kmz").unread.ignored, testing::IsEmpty());
    for (int i = 1; i <= 11; ++i)
        files.push_back({"layers/" + std::to_string(i) + ".KML", document(kPoint)});
    const auto read = readFile(support::archiveOf(files), "a.kmz");
    EXPECT_EQ(countOf(read.data, "waypoint"), 1U);
    EXPECT_THAT(read.unread.ignored,
                testing::ElementsAre(
                    "a.kmz: only the first KML document of the archive is read, not layers/1.KML, "
                    "layers/2.KML, layers/3.KML, layers/4.KML, layers/5.KML, layers/6.KML, "
                    "layers/7.KML, layers/8.KML, layers/9.KML, layers/10.KML and 1 more."));
}

TEST(KmlReader, TextAroundTheDocumentIsRefusedWithItsLine)
{
    EXPECT_EQ(readFile(document(kPoint) + "\nmore").failure,
              "a.kml, line 6: there is more text after the end of the document");
    EXPECT_EQ(readFile(document(kPoint) + "\n<!-- comment --> \n").failure, "");
}

} // namespace
