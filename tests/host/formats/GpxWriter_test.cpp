// SPDX-License-Identifier: MIT

#include "host/formats/GpxWriter.h"

#include "host/formats/Written.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace {

using host::Event;
using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;
using testing::HasSubstr;
using testing::Not;

constexpr char kHead[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gpx version=\"1.1\" creator=\"magellangps\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n"
    "<metadata>";
constexpr std::int64_t kTime = 1717236000;

struct Gpx {
    std::string text;
    std::string remark;
};

Gpx gpxOf(const std::vector<Event>& events, host::Output::Kind kind,
          const host::RecordOrigin& origin = {}, const char* sourceFile = nullptr)
{
    support::Written written{kind};
    host::GpxWriter writer{written.output(), written.folder(), origin};
    if (sourceFile != nullptr)
        writer.sourceFile(sourceFile);
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return {written.text(), writer.remark()};
}

std::string metadataOf(const Gpx& gpx)
{
    EXPECT_THAT(gpx.text, testing::StartsWith(kHead));
    const auto start = sizeof kHead - 1;
    return gpx.text.substr(start, gpx.text.find('\n', start) - start);
}

std::string metadataOf(const std::vector<Event>& events, const host::RecordOrigin& origin = {},
                       host::Output::Kind kind = host::Output::Kind::kFile)
{
    return metadataOf(gpxOf(events, kind, origin));
}

// A file and a stream get the same records.
Gpx gpxOf(const std::vector<Event>& events)
{
    auto gpx = gpxOf(events, host::Output::Kind::kFile);
    const auto stream = gpxOf(events, host::Output::Kind::kStream);
    EXPECT_EQ(gpx.text.substr(sizeof kHead - 1 + metadataOf(gpx).size()),
              stream.text.substr(sizeof kHead - 1 + metadataOf(stream).size()));
    return gpx;
}

std::string gpxBodyOf(const std::vector<Event>& events)
{
    const auto gpx = gpxOf(events);
    EXPECT_THAT(gpx.text, testing::EndsWith("</gpx>\n"));
    const auto start = sizeof kHead - 1 + metadataOf(gpx).size() + 1;
    return gpx.text.substr(start, gpx.text.size() - start - 7);
}

TEST(GpxWriter, SegmentIsAnElementOfItsOwn)
{
    EXPECT_EQ(gpxBodyOf({newTrack({{"name", "A"}}), trackPoint({1, 2, 3, 0, 0}),
                         support::newSegment(), trackPoint({4, 5, 6, 0, 0})}),
              "<trk><name>A</name><trkseg>\n"
              "<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt>\n"
              "</trkseg><trkseg>\n"
              "<trkpt lat=\"4\" lon=\"5\"><ele>6</ele></trkpt>\n"
              "</trkseg></trk>\n");
}

TEST(GpxWriter, WithoutEventsItIsAnEmptyDocument)
{
    EXPECT_EQ(gpxBodyOf({}), "");
}

TEST(GpxWriter, MetadataHaveTheReceiverTheTimeAndTheBoundsOfAllPointsInTheOrderOfTheSchema)
{
    const std::vector<Event> events{newTrack({}),
                                    trackPoint({46.5, -7.25, 0, 0, 0}),
                                    trackPoint({46, -7, 0, 0, 0}),
                                    newRoute({}),
                                    wayPoint({47.25, -7.5, 0, 0, 0}),
                                    support::stateChange(0),
                                    wayPoint({45, -7.125, 0, 0, 0}),
                                    wayPoint({91, 0, 0, 0, 0})};
    const std::string start = "<desc>From A &amp; B</desc><time>2024-06-01T10:00:00Z</time>";
    const std::string bounds =
        R"(<bounds minlat="45" minlon="-7.5" maxlat="47.25" maxlon="-7"/></metadata>)";
    const auto metadata = metadataOf(events, {.receiver = "A & B", .time = kTime});
    EXPECT_THAT(metadata, testing::StartsWith(start + bounds));
    EXPECT_EQ(metadata.find_last_not_of(' '), start.size() + bounds.size() - 1);
}

TEST(GpxWriter, MetadataAreAsLongWithTheLongestBoundsAsWithNone)
{
    const auto longest = metadataOf({wayPoint({-80.123456789, -170.123456789, 0, 0, 0}),
                                     wayPoint({-79.123456789, -169.123456789, 0, 0, 0})});
    EXPECT_EQ(longest, R"(<bounds minlat="-80.123456789" minlon="-170.123456789" )"
                       R"(maxlat="-79.123456789" maxlon="-169.123456789"/></metadata>)");
    const auto none = metadataOf(std::vector<Event>{});
    EXPECT_EQ(none.size(), longest.size());
    EXPECT_EQ(none.substr(0, none.find(' ')), "</metadata>");
}

TEST(GpxWriter, BoundsOfOnePointAreThatPointAsItIsWritten)
{
    EXPECT_THAT(metadataOf({wayPoint({90, 180, 0, 0, 0})}),
                HasSubstr(R"(minlat="90" minlon="-180" maxlat="90" maxlon="-180")"));
}

TEST(GpxWriter, StreamHasNoBoundsAndNoRoomForThem)
{
    EXPECT_EQ(metadataOf({wayPoint({1, 2, 3, 0, 0})}, {.time = kTime}, host::Output::Kind::kStream),
              "<time>2024-06-01T10:00:00Z</time></metadata>");
}

TEST(GpxWriter, RoutesAndTracksHaveTheReceiverOrTheirFileAsTheirSource)
{
    const std::vector<Event> events{newRoute({{"name", "R"}, {"comment", "c"}}),
                                    newTrack({{"name", "T"}})};
    const auto kind = host::Output::Kind::kFile;
    const auto received = gpxOf(events, kind, {.receiver = "A & B"}).text;
    EXPECT_THAT(received, HasSubstr("<rte><name>R</name><cmt>c</cmt><src>A &amp; B</src>\n"));
    EXPECT_THAT(received, HasSubstr("<trk><name>T</name><src>A &amp; B</src><trkseg>\n"));
    const auto imported = gpxOf(events, kind, {}, "a<b.log").text;
    EXPECT_THAT(imported, HasSubstr("<src>a&lt;b.log</src><trkseg>\n"));
    EXPECT_THAT(gpxOf(events, kind).text, Not(HasSubstr("<src>")));
}

TEST(GpxWriter, BoundsReachTheHeadOfAFileThatIsLargerThanTheBuffer)
{
    std::vector<Event> events{newTrack({})};
    for (int i = 0; i < 2000; ++i)
        events.push_back(trackPoint({i / 100.0, 1, 0, 0, 0}));
    events.push_back(support::stateChange(0));
    events.push_back(wayPoint({-1, 2, 0, 0, 0})); // inserted before the track
    const auto gpx = gpxOf(events);
    EXPECT_GT(gpx.text.size(), 65536U);
    EXPECT_THAT(metadataOf(gpx),
                HasSubstr(R"(minlat="-1" minlon="1" maxlat="19.99" maxlon="2"/></metadata>)"));
}

TEST(GpxWriter, WayPointHasItsChildrenInTheOrderOfTheSchema)
{
    EXPECT_EQ(
        gpxBodyOf({wayPoint({46.5, -7.25, 1200.5, 1717236000, 0},
                            {{"symbol", "Camp"}, {"comment", "by the lake"}, {"name", "A"}})}),
        "<wpt lat=\"46.5\" "
        "lon=\"-7.25\"><ele>1200.5</ele><time>2024-06-01T10:00:00Z</time><name>A</name>"
        "<cmt>by the lake</cmt><sym>Camp</sym></wpt>\n");
}

TEST(GpxWriter, EmptyTextsAreLeftOut)
{
    EXPECT_EQ(gpxBodyOf({wayPoint({}, {{"name", ""}, {"comment", ""}, {"symbol", ""}})}),
              "<wpt lat=\"0\" lon=\"0\"><ele>0</ele></wpt>\n");
}

TEST(GpxWriter, TextsAreEscaped)
{
    EXPECT_THAT(gpxBodyOf({wayPoint({}, {{"name", "<&\x01\xff"}})}),
                HasSubstr("<name>&lt;&amp;\xEF\xBF\xBD</name>"));
}

TEST(GpxWriter, NumbersHaveNoExponent)
{
    const auto body = gpxBodyOf({wayPoint({1e-7, -1e-9, 1e8, 0, 0})});
    EXPECT_EQ(body, "<wpt lat=\"0.0000001\" lon=\"-0.000000001\"><ele>100000000</ele></wpt>\n");
}

TEST(GpxWriter, ElevationThatIsNotStatedIsOmittedAndCounted)
{
    const auto written = gpxOf({trackPoint({0, 0, 1.1e8, 0, 0}), trackPoint({0, 0, 1e300, 0, 0})});
    EXPECT_THAT(written.text, Not(HasSubstr("<ele>")));
    EXPECT_EQ(written.remark, "2 elevations of more than 100,000 km were left out");
}

TEST(GpxWriter, TimeBefore1980IsOmitted)
{
    EXPECT_THAT(gpxBodyOf({trackPoint({0, 0, 0, 315532799, 0})}), Not(HasSubstr("<time>")));
    EXPECT_THAT(gpxBodyOf({trackPoint({0, 0, 0, 315532800, 0})}),
                HasSubstr("<time>1980-01-01T00:00:00Z</time>"));
}

TEST(GpxWriter, LongitudeOf180IsWrittenFromTheOtherSide)
{
    EXPECT_THAT(gpxBodyOf({wayPoint({0, 180, 0, 0, 0})}), HasSubstr("lon=\"-180\""));
    EXPECT_THAT(gpxBodyOf({wayPoint({0, -180, 0, 0, 0})}), HasSubstr("lon=\"-180\""));
    EXPECT_THAT(gpxBodyOf({wayPoint({0, 179.999999999, 0, 0, 0})}),
                HasSubstr("lon=\"179.999999999\""));
    EXPECT_THAT(gpxBodyOf({wayPoint({0, 179.9999999996, 0, 0, 0})}), HasSubstr("lon=\"-180\""));
}

TEST(GpxWriter, PointOffTheGlobeIsLeftOutAndCounted)
{
    const auto one = gpxOf({wayPoint({90.1, 0, 0, 0, 0}), wayPoint({90, 0, 0, 0, 0})});
    EXPECT_EQ(one.remark, "1 point without valid coordinates was left out");
    EXPECT_THAT(one.text, HasSubstr("lat=\"90\""));
    EXPECT_THAT(one.text, Not(HasSubstr("90.1")));
    EXPECT_EQ(gpxOf({trackPoint({0, 181, 0, 0, 0}), newRoute({}),
                     wayPoint({std::numeric_limits<double>::quiet_NaN(), 0, 0, 0, 0})})
                  .remark,
              "2 points without valid coordinates were left out");
    EXPECT_EQ(gpxOf({wayPoint({})}).remark, "");
}

TEST(GpxWriter, PointOffTheGlobeDoesNotRepeatThePointBefore)
{
    const gps::GPSPoint good{1, 2, 3, 0, 0};
    const gps::GPSPoint offTheGlobe{91, 2, 3, 0, 0};
    EXPECT_EQ(gpxBodyOf({wayPoint(good), wayPoint(offTheGlobe)}),
              "<wpt lat=\"1\" lon=\"2\"><ele>3</ele></wpt>\n");
    EXPECT_EQ(gpxBodyOf({newRoute({}), wayPoint(good), wayPoint(offTheGlobe)}),
              "<rte>\n<rtept lat=\"1\" lon=\"2\"><ele>3</ele></rtept>\n</rte>\n");
    EXPECT_EQ(gpxBodyOf({newTrack({}), trackPoint(good), trackPoint(offTheGlobe)}),
              "<trk><trkseg>\n<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt>\n"
              "</trkseg></trk>\n");
}

TEST(GpxWriter, AltitudeThatIsNotFiniteIsLeftOut)
{
    EXPECT_EQ(gpxBodyOf({wayPoint({1, 2, std::numeric_limits<double>::infinity(), 0, 0})}),
              "<wpt lat=\"1\" lon=\"2\"></wpt>\n");
}

TEST(GpxWriter, RouteHasItsPoints)
{
    EXPECT_EQ(gpxBodyOf({newRoute({{"name", "Loop"}, {"comment", "nice"}, {"lastIndex", 2}}),
                         wayPoint({1, 2, 3, 0, 0},
                                  {{"name", "A"}, {"point", gps::GPSPoint{1, 2, 3, 0, 0}}})}),
              "<rte><name>Loop</name><cmt>nice</cmt>\n<rtept lat=\"1\" "
              "lon=\"2\"><ele>3</ele><name>A</name></rtept>\n</rte>\n");
}

TEST(GpxWriter, TrackHasOneSegment)
{
    EXPECT_EQ(gpxBodyOf({newTrack({{"name", "Day 1"}}), trackPoint({1, 2, 3, 0, 0}),
                         trackPoint({4, 5, 6, 0, 0})}),
              "<trk><name>Day 1</name><trkseg>\n<trkpt lat=\"1\" lon=\"2\"><ele>3</ele></trkpt>\n"
              "<trkpt lat=\"4\" lon=\"5\"><ele>6</ele></trkpt>\n</trkseg></trk>\n");
}

TEST(GpxWriter, WayPointAfterTheEndOfARouteIsNotOneOfItsPoints)
{
    const auto ended =
        support::transferEvent(host::EventKind::kEndTransfer, gps::TransferKind::kRoutes);
    EXPECT_EQ(gpxBodyOf({newRoute({}), ended, wayPoint({})}),
              "<wpt lat=\"0\" lon=\"0\"><ele>0</ele></wpt>\n<rte>\n</rte>\n");
}

TEST(GpxWriter, TrackPointWithoutATrackOpensOne)
{
    EXPECT_EQ(gpxBodyOf({trackPoint({})}),
              "<trk><trkseg>\n<trkpt lat=\"0\" lon=\"0\"><ele>0</ele></trkpt>\n</trkseg></trk>\n");
}

TEST(GpxWriter, SectionsKeepTheirOrderWhenFilesMixThem)
{
    const auto body = gpxBodyOf({newTrack({{"name", "T1"}}), trackPoint({}),
                                 newRoute({{"name", "R1"}}), wayPoint({}, {{"name", "RP"}}),
                                 support::stateChange(0), wayPoint({}, {{"name", "W1"}}),
                                 newTrack({{"name", "T2"}}), newRoute({{"name", "R2"}}),
                                 support::stateChange(0), wayPoint({}, {{"name", "W2"}})});
    std::vector<std::size_t> positions;
    for (const char* name : {">W1<", ">W2<", ">R1<", ">RP<", ">R2<", ">T1<", ">T2<"})
        positions.push_back(body.find(name));
    EXPECT_THAT(positions, testing::Each(Not(std::string::npos)));
    EXPECT_TRUE(std::is_sorted(positions.begin(), positions.end())) << body;
}

TEST(GpxWriter, GeocacheHasItsExtension)
{
    EXPECT_THAT(
        gpxBodyOf({wayPoint({}, {{"name", "GC1"}, {"symbol", "Geocache"}, {"terrain", "2"}})}),
        HasSubstr(
            "<sym>Geocache</sym><extensions><groundspeak:cache "
            "xmlns:groundspeak=\"http://www.groundspeak.com/cache/1/0\">"
            "<groundspeak:name>GC1</groundspeak:name><groundspeak:terrain>2</groundspeak:terrain>"
            "</groundspeak:cache></extensions></wpt>"));
}

TEST(GpxWriter, GeocacheWithoutAFoundDateIsNotFound)
{
    EXPECT_THAT(gpxBodyOf({wayPoint({}, {{"symbol", "Geocache Found"}, {"datePlaced", "010208"}})}),
                HasSubstr("<sym>Geocache</sym>"));
    EXPECT_THAT(gpxBodyOf({wayPoint({}, {{"symbol", "Geocache Found"}, {"dateFound", "020309"}})}),
                HasSubstr("<sym>Geocache Found</sym>"));
}

TEST(GpxWriter, FailedWriteIsReportedAtTheEnd)
{
    support::Written written;
    host::Output full{::open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full"};
    host::GpxWriter writer{full, written.folder()};
    writer.event(trackPoint({}));
    const auto failure = writer.close();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/dev/full");
}

} // namespace
