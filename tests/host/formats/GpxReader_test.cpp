// SPDX-License-Identifier: MIT

#include "host/formats/GpxReader.h"

#include "host/formats/GpxWriter.h"
#include "host/formats/Written.h"
#include "host/formats/XmlFile.h"
#include "support/AsNobody.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::string_literals;
using gps::Array;
using gps::Dictionary;
using gps::GPSPoint;
using testing::HasSubstr;
using testing::StartsWith;

const double kUnknown = std::numeric_limits<double>::quiet_NaN(); // of an elevation

struct Reading {
    std::optional<gps::Error> failure;
    Dictionary data;
};

Reading reading(std::string_view bytes)
{
    static const support::TemporaryFolder folder; // one for all: some tests read thousands of files
    Reading reading;
    reading.failure = host::readGpx(folder.put("trip.gpx", bytes), reading.data);
    return reading;
}

Dictionary read(std::string_view bytes)
{
    auto [failure, data] = reading(bytes);
    EXPECT_FALSE(failure) << failure->text();
    return data;
}

std::string gpx(std::string_view content)
{
    return "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" "
           "xmlns=\"http://www.topografix.com/GPX/1/1\">" +
           std::string{content} + "</gpx>";
}

Dictionary readContent(std::string_view content)
{
    return read(gpx(content));
}

// The description of the error that a text gives. Nothing must have been added.
std::string refusal(std::string_view bytes)
{
    const auto [failure, data] = reading(bytes);
    if (!failure)
        return "read";
    EXPECT_TRUE(data.empty()) << bytes;
    EXPECT_TRUE(failure->suggestion() && failure->path()) << bytes;
    return failure->description().value_or("");
}

const Array& listUnder(const Dictionary& data, std::string_view key)
{
    static const Array none;
    const auto* const value = data.find(key);
    const auto* const list = value != nullptr ? value->as<Array>() : nullptr;
    return list != nullptr ? *list : none;
}

Dictionary firstUnder(const Dictionary& data, std::string_view key)
{
    const auto& list = listUnder(data, key);
    EXPECT_FALSE(list.empty()) << key;
    return list.empty() ? Dictionary{} : *list.front().as<Dictionary>();
}

Dictionary waypointFrom(std::string_view content,
                        std::string_view attributes = R"(lat="46.5" lon="-7.25")")
{
    return firstUnder(
        readContent("<wpt " + std::string{attributes} + ">" + std::string{content} + "</wpt>"),
        "waypoint");
}

std::string textUnder(const Dictionary& record, std::string_view key)
{
    const auto* const text = record.findString(key);
    return text != nullptr ? *text : "(none)";
}

TEST(GpxReader, EmptyDocumentAddsNoKeys)
{
    EXPECT_EQ(readContent(""), Dictionary{});
    EXPECT_EQ(read("<gpx/>"), Dictionary{});
}

TEST(GpxReader, WaypointHasItsNameCommentSymbolAndPoint)
{
    EXPECT_EQ(
        readContent(
            "<wpt lat=\"46.5\" "
            "lon=\"-7.25\"><ele>1200.5</ele><time>2024-06-01T10:00:00Z</time><name>Camp</name>"
            "<cmt>by the lake</cmt><desc>not this</desc><sym>Campground</sym></wpt>"),
        (Dictionary{{"waypoint",
                     Array{Dictionary{{"name", "Camp"},
                                      {"comment", "by the lake"},
                                      {"symbol", "Campground"},
                                      {"point", GPSPoint{46.5, -7.25, 1200.5, 1717236000, 0}}}}}}));
}

TEST(GpxReader, BareWaypointHasAnEmptyCommentAndItsPoint)
{
    EXPECT_EQ(waypointFrom(""),
              (Dictionary{{"comment", ""}, {"point", GPSPoint{46.5, -7.25, kUnknown, 0, 0}}}));
}

TEST(GpxReader, DescriptionReplacesAMissingComment)
{
    EXPECT_EQ(textUnder(waypointFrom("<desc>d</desc>"), "comment"), "d");
    EXPECT_EQ(textUnder(waypointFrom("<cmt/><desc>d</desc>"), "comment"), "d");
    EXPECT_EQ(textUnder(waypointFrom("<desc>d</desc><cmt>c</cmt>"), "comment"), "c");
}

TEST(GpxReader, MalformedElevationIsUnknownAndSuchATimeIsZero)
{
    const auto pointOf = [](std::string_view content) {
        return *gps::findPoint(waypointFrom(content));
    };
    EXPECT_EQ(pointOf("<ele>high</ele><time>noon</time>"), (GPSPoint{46.5, -7.25, kUnknown, 0, 0}));
    for (const std::string_view text : {"", "<ele/>", "<ele>nan</ele>", "<ele>inf</ele>"})
        EXPECT_TRUE(std::isnan(pointOf(text).altitude)) << text;
    EXPECT_EQ(pointOf("<ele>0</ele>").altitude, 0);
    EXPECT_EQ(pointOf("<ele> -12.5\n</ele>").altitude, -12.5);
    // What begins with a number is another number, or none.
    for (const std::string_view text : {"12,5", "13 m", "1 200", "0x10", "1e", "1e400"})
        EXPECT_TRUE(std::isnan(pointOf("<ele>" + std::string{text} + "</ele>").altitude)) << text;
    EXPECT_EQ(pointOf("<time>1969-12-31T23:59:59Z</time>").time, -1);
    EXPECT_EQ(pointOf("<time>2024-06-01T12:00:00.75+02:00</time>").time, 1717236000);
}

TEST(GpxReader, ElevationUpToTheBoundIsReadAndMoreIsUnknown)
{
    const auto elevationOf = [](const char* text) {
        return gps::findPoint(waypointFrom("<ele>" + std::string{text} + "</ele>"))->altitude;
    };
    EXPECT_EQ(elevationOf("100000000"), 1e8);
    EXPECT_EQ(elevationOf("-100000000"), -1e8);
    EXPECT_TRUE(std::isnan(elevationOf("100000000.1")));
    EXPECT_TRUE(std::isnan(elevationOf("-100000000.1")));
    EXPECT_TRUE(std::isnan(elevationOf(std::string(309, '9').c_str())));
}

// The notes on a file that is read.
std::vector<std::string> unreadValuesOf(const std::string& bytes)
{
    const support::TemporaryFolder folder;
    Dictionary data;
    host::UnreadParts unread;
    EXPECT_FALSE(host::readGpx(folder.put("a.gpx", bytes), data, &unread));
    EXPECT_FALSE(data.empty());
    return unread.values;
}

TEST(GpxReader, ValuesThatAreLeftOutAreCountedByKindWithTheFirstAndItsLine)
{
    EXPECT_THAT(
        unreadValuesOf("<gpx>\n<wpt lat='1' lon='2'><ele>5</ele></wpt>\n"
                       "<wpt lat='1' lon='2'><ele>12,5</ele><time>noon</time></wpt>\n"
                       "<rte><rtept lat='1' lon='2'><ele>13 m</ele></rtept></rte>\n"
                       "<trk><trkseg><trkpt lat='1' lon='2'><ele>x</ele></trkpt></trkseg></trk>"
                       "</gpx>"),
        testing::ElementsAre("a.gpx, line 3: 3 elevations are not numbers of metres, the first one "
                             "\"12,5\", so they were left out.",
                             "a.gpx, line 3: a time is not of the form 2024-06-01T12:00:00Z, "
                             "\"noon\", so it was left out."));
}

TEST(GpxReader, TimesThatNoOutputStatesAreCountedWithTheFirstAndItsLine)
{
    const std::string point = "<trkpt lat=\"1\" lon=\"2\"><time>";
    EXPECT_THAT(unreadValuesOf("<gpx><trk><trkseg>\n" + point +
                               "1980-01-01T00:00:00Z</time></trkpt>" + "\n" + point +
                               "1979-12-31T23:59:59Z</time></trkpt>" + point +
                               "1970-01-01T00:00:00Z</time></trkpt></trkseg></trk></gpx>"),
                testing::ElementsAre("a.gpx, line 3: 2 times are not from 1980 to 9999, the first "
                                     "one \"1979-12-31T23:59:59Z\", so they count as unknown."));
    EXPECT_THAT(unreadValuesOf("<gpx><wpt lat='1' lon='2'><time>9999-12-31T23:59:59-01:00</time>"
                               "</wpt></gpx>"),
                testing::ElementsAre("a.gpx, line 1: a time is not from 1980 to 9999, "
                                     "\"9999-12-31T23:59:59-01:00\", so it counts as unknown."));
}

// What records lack, and receivers.
host::UnreadParts unreadPartsOfFile(std::string_view bytes)
{
    const support::TemporaryFolder folder;
    Dictionary data;
    host::UnreadParts unread;
    EXPECT_FALSE(host::readGpx(folder.put("a.gpx", bytes), data, &unread));
    return unread;
}

host::UnreadParts unreadPartsOf(std::string_view content)
{
    return unreadPartsOfFile(gpx(content));
}

TEST(GpxReader, WhatRecordsHaveNoPlaceForIsCountedByKind)
{
    EXPECT_THAT(
        unreadPartsOf("<wpt lat='1' lon='2'><cmt>a</cmt><desc>b</desc><src>GPS</src><sym>S</sym>"
                      "<link href='x'/><type>t</type><fix>3d</fix><sat>5</sat></wpt>"
                      "<wpt lat='1' lon='2'><url>x</url><urlname>y</urlname></wpt>"
                      "<rte><name>R</name><cmt>c</cmt><src>s</src><number>7</number>"
                      "<rtept lat='1' lon='2'><extensions><e/></extensions></rtept></rte>"
                      "<trk><name>T</name><desc>d</desc><src>s</src><type>walk</type><trkseg>"
                      "<trkpt lat='1' lon='2'><hdop>1</hdop><sat>4</sat></trkpt>"
                      "<trkpt lat='1' lon='2'><ele>1</ele></trkpt></trkseg></trk>")
            .ignored,
        testing::ElementsAre(
            "a.gpx: left out, because records have no place for it: the description of 1 waypoint, "
            "the links of 2 waypoints, the type of 1 waypoint, the source of 1 waypoint, the other "
            "values of 1 waypoint, the number of 1 route, the other values of 1 route point, the "
            "type of 1 track, the other values of 1 track point."));
}

TEST(GpxReader, TextsOfTheFileAreNamed)
{
    EXPECT_THAT(
        unreadPartsOf("<metadata><name>n</name><desc>d</desc><author><name>a</name></author>"
                      "<copyright author='a'/><link href='x'/><keywords>k</keywords>"
                      "<extensions><e/></extensions></metadata>")
            .ignored,
        testing::ElementsAre(
            "a.gpx: left out, because records have no place for it: the name, description, "
            "author, keywords, copyright, link and other values of the file."));
    // As GPX 1.0 has them.
    EXPECT_THAT(
        unreadPartsOf("<name>n</name><email>e</email><time>2024</time><bounds minlat='1'/>").unsent,
        testing::ElementsAre("a.gpx: not sent, because receivers have no place for it: the "
                             "name and author of the file."));
    EXPECT_THAT(unreadPartsOf("<urlname>u</urlname>").unsent,
                testing::ElementsAre(HasSubstr(": the link of the file.")));
    EXPECT_THAT(unreadPartsOf("<e:wpt xmlns:e='e'/><extensions><e/></extensions>").unsent,
                testing::ElementsAre(HasSubstr(": the other values of the file.")));
}

TEST(GpxReader, OwnDescriptionOfTheFileIsNotMentioned)
{
    const auto unread =
        unreadPartsOfFile("<gpx creator='magellangps'><metadata><desc>From a receiver"
                          "</desc><time>2024-06-01T12:00:00Z</time></metadata></gpx>");
    EXPECT_THAT(unread.ignored, testing::IsEmpty());
    EXPECT_THAT(unread.unsent, testing::IsEmpty());
    EXPECT_THAT(
        unreadPartsOfFile("<gpx><metadata><desc>From a receiver</desc></metadata></gpx>").ignored,
        testing::SizeIs(1));
}

TEST(GpxReader, FractionsOfSecondsAreCounted)
{
    const auto trackOf = [](std::string_view time) {
        return "<trk><trkseg><trkpt lat=\"1\" lon=\"2\"><time>" + std::string{time} +
               "</time></trkpt></trkseg></trk>";
    };
    for (const char* const time :
         {"2024-06-01T12:00:00.5Z", "2024-06-01T12:00:00,001", "2024-06-01T12:00:00.010+02:00"}) {
        const auto unread = unreadPartsOf(trackOf(time));
        EXPECT_THAT(unread.ignored,
                    testing::ElementsAre("a.gpx: left out, because records have no place for it: "
                                         "the fraction of a second of 1 time."))
            << time;
        EXPECT_THAT(unread.unsent, testing::SizeIs(1)) << time;
    }
    for (const char* const time : {"2024-06-01T12:00:00.000Z", "2024-06-01T12:00:00Z", "2024-06-01",
                                   "1975-06-01T12:00:00.5Z"})
        EXPECT_THAT(unreadPartsOf(trackOf(time)).ignored, testing::IsEmpty()) << time;
    EXPECT_THAT(unreadPartsOf(trackOf("2024-06-01T12:00:00.5Z") +
                              "<wpt lat='1' lon='2'><time>2024-06-01T12:00:00.5Z</time></wpt>")
                    .ignored,
                testing::ElementsAre(HasSubstr("the fractions of a second of 2 times.")));
}

TEST(GpxReader, OtherValuesOfSegmentsAndCachesAreCounted)
{
    EXPECT_THAT(
        unreadPartsOf(
            "<trk><trkseg><trkpt lat='1' lon='2'/><extensions><e/></extensions></trkseg>"
            "<trkseg><trkpt lat='1' lon='2'/></trkseg></trk>"
            "<wpt lat='1' lon='2'><extensions><c:cache xmlns:c='c'><c:name>x</c:name>"
            "<c:long_description>text</c:long_description></c:cache></extensions></wpt>"
            "<wpt lat='1' lon='2'><c:cache xmlns:c='c'><c:logs><c:log><c:text>t</c:text>"
            "</c:log></c:logs></c:cache></wpt>"
            "<wpt lat='1' lon='2'><extensions><c:cache xmlns:c='c'/><e/></extensions></wpt>"
            "<wpt lat='1' lon='2'><c:cache xmlns:c='c'><c:state/><c:logs><c:log/></c:logs>"
            "</c:cache></wpt>")
            .unsent,
        testing::ElementsAre("a.gpx: not sent, because receivers have no place for it: the other "
                             "values of 3 geocaches, the other values of 1 track segment."));
}

TEST(GpxReader, WhatReceiversLackIsNotCountedTwice)
{
    EXPECT_THAT(unreadPartsOf("<wpt lat='1' lon='2'><cmt>a</cmt><desc>b</desc><link href='x'/>"
                              "<type>t</type></wpt>")
                    .unsent,
                testing::IsEmpty());
}

TEST(GpxReader, WhatRecordsHaveAPlaceForIsNotMentioned)
{
    EXPECT_THAT(unreadPartsOf(
                    "<wpt lat='1' lon='2'><ele>1</ele><time>2024-06-01T12:00:00Z</time>"
                    "<name>A</name><desc>d</desc><sym>S</sym></wpt>"
                    "<wpt lat='1' lon='2'><name>GC1</name><type>Geocache|Mystery</type><extensions>"
                    "<c:cache xmlns:c='c'><c:name>x</c:name></c:cache></extensions></wpt>"
                    "<rte><name>R</name><desc>c</desc><src>s</src></rte>"
                    "<trk><name>T</name><cmt>d</cmt><desc>d</desc><src>s</src></trk>")
                    .ignored,
                testing::IsEmpty());
}

TEST(GpxReader, TextsThatReceiversLackIncludeBothOfATrack)
{
    EXPECT_THAT(unreadPartsOf("<trk><cmt>a</cmt><desc>b</desc></trk><trk><desc>c</desc></trk>"
                              "<wpt lat='1' lon='2'><src>s</src><desc>d</desc></wpt>")
                    .unstored,
                testing::ElementsAre(host::UnstoredText{"track", "comment", 1},
                                     host::UnstoredText{"track", "description", 2}));
}

TEST(GpxReader, ValueThatIsEmptyOrMissingIsNotMentioned)
{
    EXPECT_THAT(unreadValuesOf("<gpx><wpt lat='1' lon='2'/><wpt lat='1' lon='2'><ele/><time> "
                               "</time></wpt></gpx>"),
                testing::IsEmpty());
}

TEST(GpxReader, LeapSecondAndATimeWithoutSecondsAreLeftOutAndCounted)
{
    EXPECT_THAT(unreadValuesOf("<gpx><wpt lat='1' lon='2'><time>2016-12-31T23:59:60Z</time></wpt>\n"
                               "<wpt lat='1' lon='2'><time>2024-06-01T12:00Z</time></wpt></gpx>"),
                testing::ElementsAre("a.gpx, line 1: 2 times are not of the form "
                                     "2024-06-01T12:00:00Z, the first one "
                                     "\"2016-12-31T23:59:60Z\", so they were left out."));
}

TEST(GpxReader, CoordinatesMustBeNumbersOnTheGlobe)
{
    for (const std::string_view text :
         {"90", "-90", "+46.5", " 46.5\n", "46.", ".5", "-.5", "4.65e1", "-0", "1e-400", "0046.5"})
        EXPECT_EQ(refusal(gpx("<wpt lat=\"" + std::string{text} + "\" lon=\"7\"/>")), "read")
            << text;
    for (const std::string_view text :
         {"90.0000001", "-90.0000001", "",     " ",      "nan",   "NaN",  "inf",
          "-inf",       "north",       "46,5", "46.5 N", "46 30", "0x2E", "1e400",
          "+-4",        "-+4",         "--4",  ".",      "-",     "4e"})
        EXPECT_THAT(refusal(gpx("<wpt lat=\"" + std::string{text} + "\" lon=\"7\"/>")),
                    HasSubstr("invalid coordinates"))
            << text;
    EXPECT_EQ(refusal(gpx("<wpt lat='0' lon='180'/><wpt lat='0' lon='-180'/>")), "read");
    for (const std::string_view text : {"180.0000001", "-180.0000001", "x"})
        EXPECT_THAT(refusal(gpx("<wpt lat='0' lon='" + std::string{text} + "'/>")),
                    HasSubstr("invalid coordinates"))
            << text;
}

TEST(GpxReader, InvalidCoordinatesAreReportedWithFileLineAndValues)
{
    EXPECT_EQ(refusal("<gpx>\n<wpt lat='1' lon='2'/>\n\n<wpt\n lat='95' lon='7'/></gpx>"),
              "trip.gpx, line 4: a <wpt> has invalid coordinates: its latitude is \"95\", its "
              "longitude \"7\"");
    EXPECT_THAT(refusal("<gpx>\n<rte>\n<rtept lat='1'/></rte></gpx>"),
                StartsWith("trip.gpx, line 3: a <rtept>"));
    EXPECT_THAT(
        refusal("<gpx><trk><trkseg><trkpt lat='1' lon='2'/>\n<g:trkpt/></trkseg></trk></gpx>"),
        StartsWith("trip.gpx, line 2: a <trkpt>"));
}

TEST(GpxReader, LineIsRightInEveryEncoding)
{
    const std::string text = "<gpx>\r\n<!-- \n -->\r\n<wpt lat='95' lon='7'/></gpx>";
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const char c : text) {
        little += {c, '\0'};
        big += {'\0', c};
    }
    for (const auto& bytes : {text, "\xEF\xBB\xBF" + text, little, big})
        EXPECT_THAT(refusal(bytes), StartsWith("trip.gpx, line 4: "));
}

TEST(GpxReader, RouteHasItsPointsAsWaypoints)
{
    EXPECT_EQ(
        readContent("<rte><name>Loop</name><cmt>round</cmt><number>3</number>"
                    "<rtept lat=\"1\" lon=\"2\"><name>A</name><sym>Camp</sym></rtept>"
                    "<rtept lat=\"3\" lon=\"4\"><name>B</name><cmt>b</cmt></rtept></rte><rte/>"),
        (Dictionary{
            {"route",
             Array{Dictionary{
                       {"name", "Loop"},
                       {"comment", "round"},
                       {"number", 3},
                       {"points", Array{Dictionary{{"name", "A"},
                                                   {"comment", ""},
                                                   {"symbol", "Camp"},
                                                   {"point", GPSPoint{1, 2, kUnknown, 0, 0}}},
                                        Dictionary{{"name", "B"},
                                                   {"comment", "b"},
                                                   {"point", GPSPoint{3, 4, kUnknown, 0, 0}}}}}},
                   Dictionary{{"points", Array{}}}}}}));
}

TEST(GpxReader, RouteNumberMustBeANumber)
{
    const auto numberIn = [](std::string_view text) {
        return firstUnder(readContent("<rte><number>" + std::string{text} + "</number></rte>"),
                          "route")
            .contains("number");
    };
    EXPECT_TRUE(numberIn("7"));
    EXPECT_FALSE(numberIn(""));
    EXPECT_FALSE(numberIn("seven"));
}

TEST(GpxReader, RoutePointIsAPlainWaypointWhateverItsSymbol)
{
    const auto route = firstUnder(readContent("<rte><rtept lat='1' lon='2'><sym>Geocache "
                                              "Found</sym><type>Geocache|X</type></rtept></rte>"),
                                  "route");
    EXPECT_EQ(firstUnder(route, "points"), (Dictionary{{"comment", ""},
                                                       {"symbol", "Geocache Found"},
                                                       {"point", GPSPoint{1, 2, kUnknown, 0, 0}}}));
}

Dictionary trackPointRecord(double latitude, double altitude = kUnknown, std::int64_t time = 0)
{
    return {{"point", GPSPoint{latitude, 2, altitude, time, 0}}};
}

TEST(GpxReader, TrackHasItsPointsInOrder)
{
    EXPECT_EQ(readContent("<trk><name>Day</name><trkseg><trkpt lat='1' lon='2'><ele>3</ele>"
                          "<time>1970-01-01T00:00:04Z</time></trkpt><trkpt lat='5' lon='2'/>"
                          "</trkseg><trkseg/></trk>"),
              (Dictionary{{"track", Array{Dictionary{{"name", "Day"},
                                                     {"points", Array{trackPointRecord(1, 3, 4),
                                                                      trackPointRecord(5)}}}}}}));
}

TEST(GpxReader, EachSegmentWithPointsIsARecordWithItsNumber)
{
    const auto segment = [](int number, double latitude) {
        return Dictionary{
            {"name", "Day"}, {"segment", number}, {"points", Array{trackPointRecord(latitude)}}};
    };
    EXPECT_EQ(readContent("<trk><name>Day</name><trkseg><trkpt lat='1' lon='2'/></trkseg><trkseg/>"
                          "<trkseg><trkpt lat='3' lon='2'/></trkseg></trk>"),
              (Dictionary{{"track", Array{segment(1, 1), segment(2, 3)}}}));
}

TEST(GpxReader, KindsMayComeInAnyOrder)
{
    const auto data = readContent("<trk/><wpt lat='1' lon='2'/><rte/><wpt lat='3' lon='4'/>");
    EXPECT_EQ(listUnder(data, "waypoint").size(), 2U);
    EXPECT_EQ(listUnder(data, "route").size(), 1U);
    EXPECT_EQ(listUnder(data, "track").size(), 1U);
}

TEST(GpxReader, UnknownElementsAreIgnored)
{
    EXPECT_EQ(readContent("<metadata><name>no</name><bounds "
                          "minlat='x'/></metadata><extensions><wpt/></extensions><waypoint/>"
                          "<WPT/><?pi x?><!-- <wpt/> -->"),
              Dictionary{});
    EXPECT_EQ(textUnder(waypointFrom("<extensions><x:name>no</x:name></extensions><link><text>no</"
                                     "text></link><name>A</name>"),
                        "name"),
              "A");
}

TEST(GpxReader, AnyNamespacePrefixIsAccepted)
{
    const auto plain =
        read("<gpx><wpt lat='1' lon='2'><name>A</name><sym>B</sym></wpt><trk><trkseg><trkpt "
             "lat='1' lon='2'/>"
             "</trkseg></trk></gpx>");
    EXPECT_EQ(
        read("<g:gpx xmlns:g='http://www.topografix.com/GPX/1/0'><g:wpt lat='1' "
             "lon='2'><g:name>A</g:name><g:sym>B</g:sym>"
             "</g:wpt><g:trk><g:trkseg><g:trkpt lat='1' lon='2'/></g:trkseg></g:trk></g:gpx>"),
        plain);
    EXPECT_EQ(
        read("<g:gpx><wpt lat='1' "
             "lon='2'><h:name>A</h:name><sym>B</sym></wpt><t:trk><trkseg><x:trkpt lat='1' lon='2'/>"
             "</trkseg></t:trk></g:gpx>"),
        plain);
}

TEST(GpxReader, ElementsOfAnotherNamespaceAreIgnored)
{
    EXPECT_EQ(
        readContent(
            "<x:wpt xmlns:x='urn:x' lat='95' lon='2'/><x:rte xmlns:x='urn:x'><rtept/></x:rte>"),
        Dictionary{});
    const auto data =
        readContent("<rte><x:rtept xmlns:x='urn:x'/></rte>"
                    "<trk><x:trkseg xmlns:x='urn:x'><trkpt/></x:trkseg><trkseg><x:trkpt "
                    "xmlns:x='urn:x'/></trkseg></trk>");
    EXPECT_EQ(data, (Dictionary{{"route", Array{Dictionary{{"points", Array{}}}}},
                                {"track", Array{Dictionary{{"points", Array{}}}}}}));
}

TEST(GpxReader, OneNamespaceMayHaveTwoPrefixes)
{
    const auto data = readContent("<g:wpt xmlns:g='http://www.topografix.com/GPX/1/1' lat='1' "
                                  "lon='2'><g:name>A</g:name></g:wpt>");
    ASSERT_NE(data.findArray("waypoint"), nullptr);
    EXPECT_EQ(*data.findArray("waypoint")->front().as<Dictionary>()->findString("name"), "A");
}

TEST(GpxReader, ForeignElementDoesNotHideAnOwnOne)
{
    EXPECT_EQ(
        textUnder(waypointFrom("<x:name>no</x:name><name>yes</name><y:name>no</y:name>"), "name"),
        "yes");
}

TEST(GpxReader, TextsMayHaveEntitiesAndCdata)
{
    const auto nameOf = [](std::string_view inside) {
        return textUnder(waypointFrom("<name>" + std::string{inside} + "</name>"), "name");
    };
    EXPECT_EQ(nameOf("R&amp;B &lt;&gt; &quot;&apos;"), "R&B <> \"'");
    EXPECT_EQ(nameOf("caf&#233; &#x1F3D5;"), "caf\xC3\xA9 \xF0\x9F\x8F\x95");
    EXPECT_EQ(nameOf("<![CDATA[R&B <i>]]>"), "R&B <i>");
    EXPECT_EQ(nameOf("a<![CDATA[b]]><!-- x -->c"), "abc");
    EXPECT_EQ(nameOf("a<b>no text of the name</b>"), "a");
    EXPECT_EQ(nameOf("<b>no text of the name</b>a"), "a");
    EXPECT_EQ(nameOf(" "), " ");
    EXPECT_EQ(nameOf(" Camp "), " Camp ") << "a space may be part of a name";
    EXPECT_EQ(nameOf("\r\n   Camp\r\n  "), "Camp") << "a line break is layout";
    EXPECT_EQ(nameOf(""), "(none)");
}

TEST(GpxReader, FileThatDeclaresEntitiesIsRefused)
{
    constexpr char kRefusal[] = "trip.gpx, line 2: the file has declarations in its document type, "
                                "which no map file needs";
    constexpr char kDeclaration[] =
        "<?xml version='1.0'?>\n<!DOCTYPE gpx [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>\n";
    EXPECT_EQ(refusal(std::string{kDeclaration} +
                      "<gpx><wpt lat='1' lon='2'><name>&e;</name></wpt></gpx>"),
              kRefusal);
    EXPECT_EQ(refusal(std::string{kDeclaration} + "<gpx/>"), kRefusal);
}

TEST(GpxReader, FileThatIsNotWellFormedIsRefusedAsAWhole)
{
    for (const std::string_view text :
         {"A &#0; B", "A & B", "&nbsp;", "caf\xE9", "\xC0\x80", "A\x01", "&#xFFFF;"})
        EXPECT_THAT(refusal("<gpx>\n<wpt lat='1' lon='2'><name>" + std::string{text} +
                            "</name></wpt></gpx>"),
                    StartsWith("trip.gpx, line 2: "))
            << text;
    EXPECT_THAT(refusal(gpx("\n<trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk>"
                            "\n<wpt lat='1' lon='2'><name>&</name></wpt>")),
                StartsWith("trip.gpx, line 4: "));
}

TEST(GpxReader, DeclaredEncodingIsHonoured)
{
    EXPECT_EQ(
        textUnder(firstUnder(
                      read("<?xml version='1.0' encoding='windows-1252'?><gpx><wpt lat='1' lon='2'>"
                           "<name>caf\xE9</name></wpt></gpx>"),
                      "waypoint"),
                  "name"),
        "caf\xC3\xA9");
    EXPECT_EQ(
        refusal("<?xml version='1.0' encoding='US-ASCII'?>\n<gpx>\n<!-- caf\xC3\xA9 --></gpx>"),
        "trip.gpx, line 3: the text is not valid in the encoding of the file");
    EXPECT_EQ(refusal("<?xml version='1.0' encoding='no-such-thing'?><gpx/>"),
              "trip.gpx, line 1: the text encoding of this file is not supported");
}

constexpr char kCache[] =
    "<groundspeak:cache xmlns:groundspeak=\"http://www.groundspeak.com/cache/1/0\">"
    "<groundspeak:name>The "
    "title</groundspeak:name><groundspeak:placed_by>no</groundspeak:placed_by>"
    "<groundspeak:owner "
    "id=\"1\">Ann</groundspeak:owner><groundspeak:type>Multi-cache</groundspeak:type>"
    "<groundspeak:difficulty>1.5</groundspeak:difficulty><groundspeak:terrain>2</"
    "groundspeak:terrain>"
    "<groundspeak:encoded_hints>under a stone</groundspeak:encoded_hints><groundspeak:logs>"
    "<groundspeak:log><groundspeak:date>2011-05-06T19:00:00Z</groundspeak:date>"
    "<groundspeak:type>Write note</groundspeak:type></groundspeak:log>"
    "<groundspeak:log><groundspeak:date>2010-03-04T19:00:00Z</groundspeak:date>"
    "<groundspeak:type>Found it</groundspeak:type></groundspeak:log>"
    "<groundspeak:log><groundspeak:date>2009-03-04T19:00:00Z</groundspeak:date>"
    "<groundspeak:type>Found "
    "it</groundspeak:type></groundspeak:log></groundspeak:logs></groundspeak:cache>";

TEST(GpxReader, CacheExtensionMayBeAChildOrInExtensions)
{
    const std::string head =
        "<time>2004-12-31T08:00:00Z</time><name>GC123</name><desc>The title by Ann</desc>"
        "<sym>Geocache Found</sym><type>Geocache|Traditional Cache</type>";
    const Dictionary expected{{"name", "GC123"},
                              {"comment", "The title by Ann"},
                              {"symbol", "Geocache Found"},
                              {"point", GPSPoint{46.5, -7.25, kUnknown, 1104480000, 0}},
                              {"geocacheOwner", "Ann"},
                              {"geocacheHint", "under a stone"},
                              {"geocacheType", "Multi-cache"},
                              {"datePlaced", "311204"},
                              {"dateFound", "040310"},
                              {"difficulty", "1.5"},
                              {"terrain", "2"}};
    EXPECT_EQ(waypointFrom(head + kCache), expected);
    EXPECT_EQ(waypointFrom(head + "<extensions><x:other/>" + kCache + "</extensions>"), expected);
}

TEST(GpxReader, GeocacheIsKnownByTypeSymbolOrExtension)
{
    for (const std::string_view content :
         {"<type>Geocache</type>", "<type>Geocache|Unknown Cache</type>", "<sym>Geocache</sym>",
          "<sym>Geocache Found</sym>", "<sym>Geocache-Regular</sym>", "<g:cache/>",
          "<extensions><cache/></extensions>"})
        EXPECT_THAT(textUnder(waypointFrom(content), "symbol"), StartsWith("Geocache")) << content;
    for (const std::string_view content :
         {"<type>geocache</type>", "<type>Waypoint|Geocache</type>", "<sym>A Geocache</sym>"})
        EXPECT_FALSE(waypointFrom(content).contains("geocacheType")) << content;
}

TEST(GpxReader, GeocacheSymbolIsOneOfTwo)
{
    EXPECT_EQ(textUnder(waypointFrom("<sym>Geocache Found</sym>"), "symbol"), "Geocache Found");
    EXPECT_EQ(textUnder(waypointFrom("<sym>Geocache</sym>"), "symbol"), "Geocache");
    EXPECT_EQ(textUnder(waypointFrom("<sym>Parking</sym><type>Geocache</type>"), "symbol"),
              "Geocache");
    EXPECT_EQ(textUnder(waypointFrom("<type>Geocache</type>"), "symbol"), "Geocache");
}

TEST(GpxReader, GeocacheIsNotFoundBySomebodyElsesLog)
{
    for (const std::string_view symbol :
         {"<sym>Geocache</sym>", "", "<sym>geocache found</sym>", "<sym>Geocache Found </sym>"}) {
        const auto record = waypointFrom(std::string{symbol} + "<type>Geocache</type>" + kCache);
        EXPECT_EQ(textUnder(record, "symbol"), "Geocache") << symbol;
        EXPECT_EQ(textUnder(record, "dateFound"), "") << symbol;
    }
    const auto found = waypointFrom(std::string{"<sym>Geocache Found</sym>"} + kCache);
    EXPECT_EQ(textUnder(found, "symbol"), "Geocache Found");
    EXPECT_EQ(textUnder(found, "dateFound"), "040310");
}

TEST(GpxReader, FoundDateIsNotThatOfSomebodyElsesLog)
{
    const auto log = [](const std::string& type, const std::string& finder) {
        return "<log><date>2010-03-04T19:00:00Z</date><type>" + type + "</type>" +
               (finder.empty() ? "" : "<finder>" + finder + "</finder>") + "</log>";
    };
    const auto dateWith = [](const std::string& logs) {
        const auto record =
            waypointFrom("<sym>Geocache Found</sym><cache><logs>" + logs + "</logs></cache>");
        return std::string{textUnder(record, "dateFound")};
    };
    EXPECT_EQ(dateWith(log("Found it", "")), "040310") << "written by this program";
    EXPECT_EQ(dateWith(log("Write note", "Ann") + log("Found it", "")), "040310");
    EXPECT_EQ(dateWith(log("Found it", "Ann")), "040310") << "the only log";
    EXPECT_EQ(dateWith(log("Publish Listing", "Ann") + log("Found it", "Bob")), "040310");
    EXPECT_EQ(dateWith(log("Found it", "Ann") + log("Found it", "Bob")), "");
    EXPECT_EQ(dateWith(log("Found it", "Ann") + log("Write note", "Bob")), "");
    EXPECT_EQ(dateWith(log("Write note", "Bob")), "");
    EXPECT_EQ(dateWith(""), "");
}

TEST(GpxReader, CachesOwnNameIsTheNameOrTheCommentIfThereIsNoOther)
{
    EXPECT_EQ(textUnder(waypointFrom(std::string{"<name>GC1</name>"} + kCache), "comment"),
              "The title");
    EXPECT_EQ(textUnder(waypointFrom(std::string{"<name>GC1</name>"} + kCache), "name"), "GC1");
    EXPECT_EQ(textUnder(waypointFrom(kCache), "name"), "The title");
    EXPECT_EQ(textUnder(waypointFrom(kCache), "comment"), "");
    EXPECT_EQ(
        textUnder(waypointFrom(std::string{"<name>GC1</name><cmt>c</cmt><desc>d</desc>"} + kCache),
                  "comment"),
        "c");
    EXPECT_EQ(
        textUnder(waypointFrom(std::string{"<name>GC1</name><desc>d</desc>"} + kCache), "comment"),
        "d");
    EXPECT_EQ(textUnder(waypointFrom(std::string{"<name>The title</name>"} + kCache), "comment"),
              "");
    EXPECT_EQ(textUnder(waypointFrom("<name>GC1</name><type>Geocache</type>"), "comment"), "");
}

TEST(GpxReader, GeocacheTypeOfTheExtensionComesBeforeTheWaypoints)
{
    EXPECT_EQ(textUnder(waypointFrom("<type>Geocache|Virtual Cache</type>"), "geocacheType"),
              "Virtual Cache");
    EXPECT_EQ(textUnder(waypointFrom("<type>Geocache</type>"), "geocacheType"), "");
    EXPECT_EQ(
        textUnder(waypointFrom("<type>Geocache|A</type><g:cache><g:type>B</g:type></g:cache>"),
                  "geocacheType"),
        "B");
}

TEST(GpxReader, GeocacheDatesAreDayMonthAndYear)
{
    const auto placed = [](std::string_view time, std::string_view published) {
        std::string content = "<type>Geocache</type><time>" + std::string{time} + "</time>";
        if (!published.empty())
            content += "<cache><logs><log><date>" + std::string{published} +
                       "</date><type>Publish Listing</type></log></logs></cache>";
        return textUnder(waypointFrom(content), "datePlaced");
    };
    EXPECT_EQ(placed("2004-03-02T08:00:00Z", ""), "020304");
    EXPECT_EQ(placed("2004-03-02T08:00:00Z", "2005-06-07T00:00:00Z"), "070605");
    EXPECT_EQ(placed("", "2005-06-07"), "070605");
    EXPECT_EQ(placed("", "320199"), "320199") << "a date text of the device's own";
    EXPECT_EQ(placed("", ""), "");
    EXPECT_EQ(placed("1979-12-31T23:59:59Z", ""), "") << "two digits of a year begin in 1980";
    EXPECT_EQ(placed("1980-01-01T00:00:00Z", ""), "010180");
    EXPECT_EQ(placed("2079-12-31T00:00:00Z", ""), "311279");
    EXPECT_EQ(placed("2080-01-01T00:00:00Z", ""), "");
}

TEST(GpxReader, SeveralFilesAppend)
{
    const support::TemporaryFolder folder;
    Dictionary data;
    EXPECT_FALSE(
        host::readGpx(folder.put("a.gpx", gpx("<wpt lat='1' lon='2'><name>A</name></wpt>")), data));
    EXPECT_FALSE(host::readGpx(
        folder.put("b.gpx", gpx("<wpt lat='1' lon='2'><name>B</name></wpt><trk/>")), data));
    ASSERT_EQ(listUnder(data, "waypoint").size(), 2U);
    EXPECT_EQ(textUnder(*listUnder(data, "waypoint")[1].as<Dictionary>(), "name"), "B");
    EXPECT_EQ(listUnder(data, "track").size(), 1U);

    const auto before = data;
    EXPECT_TRUE(host::readGpx(
        folder.put("c.gpx", gpx("<wpt lat='1' lon='2'/><trk/><wpt lat='99' lon='2'/>")), data));
    EXPECT_EQ(data, before) << "a bad file adds nothing";
}

TEST(GpxReader, InvalidWaypointsAreSkippedOnRequest)
{
    const support::TemporaryFolder folder;
    std::string content = "<wpt lat='1' lon='2'><name>A</name></wpt>";
    for (int i = 0; i < 12; ++i)
        content += "\n<wpt lat='91' lon='2'/>";
    const auto file = folder.put("a.gpx", gpx(content + "<wpt lat='3' lon='4'/>"));
    Dictionary data;
    host::UnreadParts unread;
    EXPECT_FALSE(host::readGpx(file, data, &unread));
    EXPECT_EQ(listUnder(data, "waypoint").size(), 2U);
    EXPECT_EQ(unread.waypoints, 12U);
    ASSERT_EQ(unread.firstWaypoints.size(), 10U);
    EXPECT_EQ(unread.firstWaypoints[1].description(),
              "a.gpx, line 4: a <wpt> has invalid coordinates: its latitude is \"91\", its "
              "longitude \"2\", so it was skipped");
    EXPECT_EQ(unread.firstWaypoints[1].suggestion(), "Correct it, and try again");
    EXPECT_FALSE(host::readGpx(file, data, &unread));
    EXPECT_EQ(unread.waypoints, 24U);
}

TEST(GpxReader, InvalidPointsOfRoutesAndTracksAreNeverSkipped)
{
    const support::TemporaryFolder folder;
    for (const auto* const content : {"<rte><rtept lat='91' lon='2'/></rte>",
                                      "<trk><trkseg><trkpt lat='91' lon='2'/></trkseg></trk>"}) {
        Dictionary data;
        host::UnreadParts unread;
        EXPECT_TRUE(host::readGpx(
            folder.put("a.gpx", gpx(std::string{"<wpt lat='91' lon='2'/>"} + content)), data,
            &unread));
        EXPECT_TRUE(data.empty());
        EXPECT_EQ(unread.waypoints, 0U);
    }
}

TEST(GpxReader, AnythingButGpxIsRejected)
{
    for (const std::string_view bytes :
         {"", " \n", "hello", "{\"a\":1}", "<?xml version='1.0'?>", "<kml><wpt/></kml>", "<GPX/>",
          "<html>\n<gpx/></html>", "\xEF\xBB\xBF", "<!-- <gpx/> -->",
          "<!DOCTYPE html>\n<html><p>Sign in<br></html>", "{\"a\":\"<b>&c\"}", "\xEF\xBB\xBFhello",
          "\x89PNG\r\n"})
        EXPECT_EQ(refusal(bytes), "trip.gpx, line 1: this is not a GPX file") << bytes;
}

TEST(GpxReader, DamageIsReportedWithItsLine)
{
    EXPECT_THAT(refusal("<gpx>\n<wpt lat='1' lon='2'>\n</gpx>"),
                StartsWith("trip.gpx, line 3: the file is damaged or cut short"));
    EXPECT_THAT(refusal("<gpx>\n<wpt lat=1 lon='2'/></gpx>"),
                StartsWith("trip.gpx, line 2: the file is not well-formed"));
    for (const auto* const end : {"", "\n", "\r\n \t\n"})
        EXPECT_EQ(refusal("<gpx>\n\n\n<trk>"s + end),
                  "trip.gpx, line 4: the file is damaged or cut short");
    EXPECT_EQ(refusal("<gpx>\n\0</gpx>"s), "trip.gpx, line 2: the file is damaged (a zero byte)");
    for (const char c : "\x01\b\v\x1F"s)
        EXPECT_EQ(refusal("<gpx>\n<wpt lat='1' lon='2'><name>A"s + c + "</name></wpt></gpx>"),
                  "trip.gpx, line 2: the file is damaged (a control character)");
    EXPECT_EQ(refusal("<gpx>\n" + std::string(4096, ' ') + "\x01</gpx>"),
              "trip.gpx, line 2: the file is damaged (a control character)");
    EXPECT_EQ(refusal("<gpx>\t\r\n <wpt lat='1' lon='2'/>\x7F</gpx>"), "read");
    EXPECT_EQ(refusal("<gpx/>\n<gpx/>"),
              "trip.gpx, line 2: there is more text after the end of the document");
    EXPECT_EQ(refusal("<gpx>\n</gpx>\n\nmore"),
              "trip.gpx, line 4: there is more text after the end of the document");
    EXPECT_EQ(refusal("\nmore<gpx/>"), "trip.gpx, line 2: there is text before the document");
    EXPECT_EQ(refusal("\xEF\xBB\xBFmore<gpx>"),
              "trip.gpx, line 1: there is text before the document");
    EXPECT_EQ(refusal("\n<?xml version='1.0'?><gpx/>"),
              "trip.gpx, line 2: \"<?xml\" is not at the start of the file");
    EXPECT_EQ(refusal("<gpx>\n<wpt lat='1' lon='2' lat='3'/></gpx>"),
              "trip.gpx, line 2: the file is not well-formed (an attribute is given twice)");
    EXPECT_EQ(refusal("<!DOCTYPE gpx>\n<!-- a -->\n<?p?><gpx/>\n<!-- b --> \n"), "read");
}

TEST(GpxReader, FileCutAnywhereIsRejected)
{
    const auto whole = gpx(
        "<!-- c --><wpt lat=\"1\" lon=\"2\"><name>A &amp; B</name><cmt><![CDATA[c]]></cmt></wpt>"
        "<rte><rtept lat=\"1\" lon=\"2\"/></rte><trk><trkseg><trkpt lat=\"1\" "
        "lon=\"2\"><ele>3</ele></trkpt>"
        "</trkseg></trk>");
    EXPECT_EQ(refusal(whole), "read");
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_THAT(refusal(whole.substr(0, size)), StartsWith("trip.gpx, line "))
            << whole.substr(0, size);
}

TEST(GpxReader, BrokenByteNeverEndsTheProcess)
{
    const auto whole = gpx(
        "<wpt lat=\"1\" lon=\"2\"><time>2024-06-01T10:00:00Z</time><name>A</name><cache/></wpt>");
    for (const char broken : {'\0', '<', '>', '&', '"', '\xFF'}) {
        for (std::size_t i = 0; i < whole.size(); ++i) {
            auto bytes = whole;
            bytes[i] = broken;
            const auto [failure, data] = reading(bytes);
            EXPECT_TRUE(!failure || data.empty()) << bytes;
        }
    }
}

TEST(GpxReader, DeepNestingIsHarmless)
{
    constexpr std::size_t kDepth = 300000;
    std::string opened;
    std::string closed;
    for (std::size_t i = 0; i < kDepth; ++i) {
        opened += "<x>";
        closed += "</x>";
    }
    EXPECT_EQ(readContent("<wpt lat='1' lon='2'><name>" + opened + closed + "A</name>" + opened +
                          closed + "</wpt>")
                  .size(),
              1U);
    EXPECT_THAT(refusal("<gpx>" + opened), HasSubstr("damaged or cut short"));
}

TEST(GpxReader, UnreadableFileIsAnError)
{
    const support::TemporaryFolder folder;
    Dictionary data;
    const auto refused = [&](const std::string& path) {
        const auto failure = host::readGpx(path, data);
        return failure ? failure->description().value_or("") : "read";
    };
    EXPECT_THAT(refused(folder.path("missing.gpx")), HasSubstr("missing.gpx"));
    EXPECT_THAT(refused(folder.path()), HasSubstr("could not be read"));
    const auto locked = folder.put("locked.gpx", gpx(""));
    ::chmod(locked.c_str(), 0);
    const support::AsNobody nobody;
    EXPECT_THAT(refused(locked), HasSubstr("permission"));
    EXPECT_TRUE(data.empty());
}

TEST(GpxReader, FileBeyondTheLargestSizeIsRejected)
{
    const support::TemporaryFolder folder;
    const auto path = folder.put("huge.gpx", "<gpx/>");
    ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(host::kLargestXml) + 1),
              0); // a sparse file
    Dictionary data;
    EXPECT_TRUE(host::readGpx(path, data));
}

TEST(GpxReader, ProgressRisesThroughAFileOfAnyForm)
{
    const support::TemporaryFolder folder;
    for (const std::string point :
         {"<trkpt lat='1' lon='2'/>\n", "<trkpt lat=\"1\" lon=\"2\"></trkpt>\n"}) {
        std::string xml = "<gpx><trk><trkseg>";
        for (int i = 0; i < 10000; ++i)
            xml += point;
        xml += "</trkseg></trk></gpx>";
        Dictionary data;
        std::vector<std::size_t> reports;
        EXPECT_FALSE(host::readGpx(folder.put("a.gpx", xml), data, nullptr,
                                   [&](std::size_t done, std::size_t total) {
                                       EXPECT_EQ(total, xml.size());
                                       EXPECT_LE(done, total);
                                       reports.push_back(done);
                                   }));
        ASSERT_EQ(reports.size(), 3U) << point; // at the start, and for 4096 points each
        EXPECT_EQ(reports.front(), 0U);
        EXPECT_GE(reports[1], 4095 * point.size());
        EXPECT_GT(reports[2], reports[1]);
    }
}

// Events, written by GpxWriter and read back.
Dictionary roundTrip(const std::vector<host::Event>& events)
{
    support::Written written;
    host::GpxWriter writer{written.output(), written.folder()};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return read(written.text());
}

Dictionary withPoint(Dictionary record, const GPSPoint& point)
{
    record.set("point", point);
    return record;
}

TEST(GpxReader, WaypointSurvivesARoundTrip)
{
    const GPSPoint point{-46.123456789, -179.99999, -5.5, 1717236000, 0};
    for (const Dictionary& record :
         {Dictionary{{"name", "Camp"}, {"comment", "by the lake"}, {"symbol", "Campground"}},
          Dictionary{{"name", " A & <B> \"'"}, {"comment", ""}, {"symbol", "a"}},
          Dictionary{{"name", " "}, {"comment", " x "}, {"symbol", "Caf\xC3\xA9"}}})
        EXPECT_EQ(firstUnder(roundTrip({support::wayPoint(point, record)}), "waypoint"),
                  withPoint(record, point));
}

TEST(GpxReader, GeocacheSurvivesARoundTrip)
{
    const GPSPoint point{46.5, 7.25, 1200, 0, 0};
    for (const Dictionary& record : {Dictionary{{"name", "GC123"},
                                                {"comment", "c"},
                                                {"geocacheOwner", "Ann"},
                                                {"geocacheHint", "stone"},
                                                {"geocacheType", "Traditional Cache"},
                                                {"datePlaced", "311299"},
                                                {"dateFound", "010100"},
                                                {"difficulty", "1.5"},
                                                {"terrain", "5"},
                                                {"symbol", "Geocache Found"}},
                                     Dictionary{{"name", "GC124"},
                                                {"comment", ""},
                                                {"geocacheOwner", ""},
                                                {"geocacheHint", ""},
                                                {"geocacheType", ""},
                                                {"datePlaced", ""},
                                                {"dateFound", ""},
                                                {"difficulty", ""},
                                                {"terrain", ""},
                                                {"symbol", "Geocache"}},
                                     Dictionary{{"name", "GC125"},
                                                {"comment", ""},
                                                {"geocacheOwner", ""},
                                                {"geocacheHint", ""},
                                                {"geocacheType", ""},
                                                {"datePlaced", "010208"},
                                                {"dateFound", "300299"}, // not a valid day
                                                {"difficulty", ""},
                                                {"terrain", ""},
                                                {"symbol", "Geocache Found"}}})
        EXPECT_EQ(firstUnder(roundTrip({support::wayPoint(point, record)}), "waypoint"),
                  withPoint(record, point));
}

TEST(GpxReader, RouteAndTrackSurviveARoundTrip)
{
    const GPSPoint a{46.5, 7.25, 1200, 0, 0};
    const GPSPoint b{-0.1, 0.2, 0, 0, 0};
    const GPSPoint timedPoint{1.5, 2.5, 3.75, 1717236000, 0};
    const Dictionary start{{"name", "A"}, {"comment", ""}, {"symbol", "Flag"}};
    const Dictionary end{{"name", "B"}, {"comment", "there"}, {"symbol", "Flag"}};
    const auto data = roundTrip({support::newRoute({{"name", "Loop"}, {"comment", "round"}}),
                                 support::wayPoint(a, start), support::wayPoint(b, end),
                                 support::newTrack({{"name", "Day"}, {"comment", "long"}}),
                                 support::trackPoint(timedPoint)});
    EXPECT_EQ(
        data,
        (Dictionary{
            {"route", Array{Dictionary{{"name", "Loop"},
                                       {"comment", "round"},
                                       {"points", Array{withPoint(start, a), withPoint(end, b)}}}}},
            {"track", Array{Dictionary{{"name", "Day"},
                                       {"comment", "long"},
                                       {"points", Array{Dictionary{{"point", timedPoint}}}}}}}}));
}

} // namespace
