// SPDX-License-Identifier: MIT

#include "host/formats/GeoJsonWriter.h"

#include "host/Numbers.h"
#include "host/formats/Written.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace {

using host::Event;
using Json = nlohmann::json;
using support::kTen;
using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;

struct GeoJson {
    std::string text;
    std::string remark;
};

GeoJson geoJsonOf(const std::vector<Event>& events, host::Output::Kind kind)
{
    support::Written written{kind};
    host::GeoJsonWriter writer{written.output(), written.folder()};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return {written.text(), writer.remark()};
}

// A file and a stream get the same text.
GeoJson geoJsonOf(const std::vector<Event>& events)
{
    auto geoJson = geoJsonOf(events, host::Output::Kind::kFile);
    EXPECT_EQ(geoJson.text, geoJsonOf(events, host::Output::Kind::kStream).text);
    return geoJson;
}

Json featuresOf(const std::vector<Event>& events)
{
    const auto document = Json::parse(geoJsonOf(events).text);
    EXPECT_EQ(document["type"], "FeatureCollection");
    for (const auto& feature : document["features"]) {
        EXPECT_EQ(feature["type"], "Feature");
        EXPECT_EQ(feature.size(), 3U) << feature;
    }
    return document["features"];
}

Json geometryOf(const std::vector<Event>& events)
{
    const auto features = featuresOf(events);
    EXPECT_EQ(features.size(), 1U);
    return features[0]["geometry"];
}

TEST(GeoJsonWriter, WithoutEventsItIsAnEmptyCollection)
{
    EXPECT_EQ(geoJsonOf({}).text, "{\"type\":\"FeatureCollection\",\"features\":[\n]}\n");
}

TEST(GeoJsonWriter, SegmentsAreThePartsOfAMultiLineString)
{
    const auto geometry = geometryOf({newTrack({}), trackPoint({1, 2, 3, 0, 0}),
                                      trackPoint({2, 3, 4, 0, 0}), support::newSegment(),
                                      trackPoint({4, 5, 6, 0, 0}), trackPoint({5, 6, 7, 0, 0})});
    EXPECT_EQ(geometry["type"], "MultiLineString");
    EXPECT_EQ(geometry["coordinates"], Json::parse("[[[2,1,3],[3,2,4]],[[5,4,6],[6,5,7]]]"));
}

TEST(GeoJsonWriter, SegmentOfOnePointIsALineOfTwoEqualPositions)
{
    const std::vector points{trackPoint({1, 2, 3, kTen, 0}), trackPoint({2, 3, 4, kTen, 0}),
                             trackPoint({4, 5, 6, kTen, 0})};
    const auto feature = featuresOf({newTrack({}), points[0], support::newSegment(), points[1],
                                     support::newSegment(), points[2]})[0];
    EXPECT_EQ(feature["geometry"]["coordinates"],
              Json::parse("[[[2,1,3],[2,1,3]],[[3,2,4],[3,2,4]],[[5,4,6],[5,4,6]]]"));
    const Json time = "2024-06-01T10:00:00Z";
    const auto once = Json::array({time, nullptr});
    EXPECT_EQ(feature["properties"]["coordTimes"], Json::array({once, once, once}));
}

TEST(GeoJsonWriter, BreakAtEitherEndOfATrackMakesNoPart)
{
    const std::vector points{trackPoint({1, 2, 3, 0, 0}), trackPoint({2, 3, 4, 0, 0})};
    const auto whole = geometryOf({newTrack({}), points[0], points[1]});
    EXPECT_EQ(geometryOf({newTrack({}), support::newSegment(), points[0], points[1],
                          support::newSegment()}),
              whole);
    EXPECT_EQ(featuresOf({newTrack({}), support::newSegment(), newTrack({}), points[0],
                          points[1]})[1]["geometry"],
              whole);
}

TEST(GeoJsonWriter, SegmentThatBeginsBeyondTheDateLineIsNotCutTwice)
{
    EXPECT_EQ(
        geometryOf({newTrack({}), trackPoint({0, 179, 0, 0, 0}), trackPoint({0, 179.5, 0, 0, 0}),
                    support::newSegment(), trackPoint({0, -179.5, 0, 0, 0}),
                    trackPoint({0, -179, 0, 0, 0})})["coordinates"],
        Json::parse("[[[179,0,0],[179.5,0,0]],[[-179.5,0,0],[-179,0,0]]]"));
}

TEST(GeoJsonWriter, EachFeatureIsOneLineOfText)
{
    EXPECT_EQ(geoJsonOf({wayPoint({46.5, -7.25, 1200.5, kTen, 0}, {{"name", "A"}}),
                         wayPoint({1, 2, 3, 0, 0})})
                  .text,
              "{\"type\":\"FeatureCollection\",\"features\":[\n"
              "{\"type\":\"Feature\",\"properties\":{\"kind\":\"waypoint\",\"time\":\"2024-06-"
              "01T10:00:00Z\",\"name\":\"A\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[-7.25,46.5,1200.5]}},\n"
              "{\"type\":\"Feature\",\"properties\":{\"kind\":\"waypoint\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[2,1,3]}}\n"
              "]}\n");
}

TEST(GeoJsonWriter, EveryFieldOfARecordButItsPointIsAProperty)
{
    const auto features = featuresOf({wayPoint({}, {{"name", "C"},
                                                    {"comment", ""},
                                                    {"symbol", "Geocache Found"},
                                                    {"geocacheOwner", "O"},
                                                    {"geocacheHint", "H"},
                                                    {"geocacheType", "Traditional"},
                                                    {"datePlaced", "010208"},
                                                    {"dateFound", "soon"},
                                                    {"difficulty", "1.5"},
                                                    {"count", 3},
                                                    {"open", true},
                                                    {"list", gps::Array{1, "x"}},
                                                    {"point", gps::GPSPoint{}}})});
    EXPECT_EQ(
        features[0]["properties"],
        Json::parse(
            R"({"kind":"geocache","name":"C","comment":"","symbol":"Geocache Found","owner":"O",
        "hint":"H","type":"Traditional","placed":"2008-02-01","found":"soon","difficulty":"1.5","count":3,"open":true,"list":[1,"x"]})"));
}

TEST(GeoJsonWriter, GeocacheWithoutAFoundDateIsNotFound)
{
    const auto features =
        featuresOf({wayPoint({}, {{"symbol", "Geocache Found"}, {"datePlaced", "010208"}}),
                    wayPoint({}, {{"symbol", "Geocache Found"}, {"dateFound", "020309"}})});
    EXPECT_EQ(features[0]["properties"]["symbol"], "Geocache");
    EXPECT_EQ(features[1]["properties"]["symbol"], "Geocache Found");
}

TEST(GeoJsonWriter, ReservedPropertyIsWrittenOnce)
{
    const auto text =
        geoJsonOf(
            {wayPoint(
                {0, 0, 0, kTen, 0},
                {{"kind", "mine"}, {"time", 1}, {"coordTimes", 2}, {"points", 3}, {"name", "A"}})})
            .text;
    EXPECT_THAT(
        text, testing::HasSubstr(
                  R"("properties":{"kind":"waypoint","time":"2024-06-01T10:00:00Z","name":"A"})"));
}

TEST(GeoJsonWriter, TrackIsALineWithItsTimes)
{
    const auto features = featuresOf({newTrack({{"name", "Day 1"}}), trackPoint({1, 2, 3, kTen, 0}),
                                      trackPoint({4, 5, 6, kTen + 1, 0})});
    EXPECT_EQ(features, Json::parse(R"([{"type":"Feature",
        "properties":{"kind":"track","name":"Day 1","coordTimes":["2024-06-01T10:00:00Z","2024-06-01T10:00:01Z"]},
        "geometry":{"type":"LineString","coordinates":[[2,1,3],[5,4,6]]}}])"));
}

TEST(GeoJsonWriter, PointWithoutATimestampHasNullAmongTheTimes)
{
    const auto times = [](const std::vector<Event>& events) {
        return featuresOf(events)[0]["properties"].value("coordTimes", Json{});
    };
    const auto at = [](std::int64_t time) { return trackPoint({0, 0, 0, time, 0}); };
    EXPECT_EQ(times({at(0), at(0), at(kTen), at(0)}),
              Json::parse(R"([null,null,"2024-06-01T10:00:00Z",null])"));
    EXPECT_EQ(times({at(kTen), at(0)}), Json::parse(R"(["2024-06-01T10:00:00Z",null])"));
    EXPECT_EQ(times({at(0), at(315532799)}), Json{}); // omitted if no point has a timestamp
}

TEST(GeoJsonWriter, LineOfOnePointIsAPointAndAnEmptyLineHasNoGeometry)
{
    EXPECT_EQ(geometryOf({trackPoint({1, 2, 3, 0, 0})}),
              Json::parse(R"({"type":"Point","coordinates":[2,1,3]})"));
    EXPECT_EQ(geometryOf({newTrack({{"name", "T"}})}), Json{});
    EXPECT_EQ(geometryOf({newRoute({}), wayPoint({1, 2, 3, 0, 0})}),
              Json::parse(R"({"type":"Point","coordinates":[2,1,3]})"));
    EXPECT_EQ(geometryOf({newRoute({})}), Json{});
}

TEST(GeoJsonWriter, RouteHasTheRecordsOfItsPoints)
{
    const auto features =
        featuresOf({newRoute({{"name", "Loop"}, {"lastIndex", 2}, {"comment", "nice"}}),
                    wayPoint({1, 2, 3, kTen, 0},
                             {{"name", "A"}, {"symbol", "Camp"}, {"point", gps::GPSPoint{}}}),
                    wayPoint({4, 5, 6, 0, 0})});
    EXPECT_EQ(features,
              Json::parse(
                  R"([{"type":"Feature","properties":{"kind":"route","name":"Loop","comment":"nice",
        "points":[{"time":"2024-06-01T10:00:00Z","name":"A","symbol":"Camp"},{}]},
        "geometry":{"type":"LineString","coordinates":[[2,1,3],[5,4,6]]}}])"));
}

TEST(GeoJsonWriter, LineAcrossTheDateLineIsCutThere)
{
    const auto features =
        featuresOf({trackPoint({0, 178, 0, kTen, 0}), trackPoint({0, 179, 0, kTen, 0}),
                    trackPoint({2, -179, 4, kTen, 0}), trackPoint({4, 179, 4, kTen, 0})});
    EXPECT_EQ(features[0]["geometry"], Json::parse(R"({"type":"MultiLineString","coordinates":[
        [[178,0,0],[179,0,0],[180,1,2]],[[-180,1,2],[-179,2,4],[-180,3,4]],[[180,3,4],[179,4,4]]]})"));
    const std::string at = "2024-06-01T10:00:00Z";
    EXPECT_EQ(features[0]["properties"]["coordTimes"],
              Json({{at, at, nullptr}, {nullptr, at, nullptr}, {nullptr, at}}));
    const auto route = featuresOf(
        {newRoute({}), wayPoint({0, 179, 0, 0, 0}, {{"name", "A"}}), wayPoint({0, -179, 0, 0, 0})});
    EXPECT_EQ(route[0]["geometry"]["type"], "MultiLineString");
    EXPECT_EQ(route[0]["properties"]["points"], Json::parse(R"([[{"name":"A"},null],[null,{}]])"));
}

TEST(GeoJsonWriter, StateOfOneLineDoesNotReachTheNext)
{
    const auto features =
        featuresOf({newTrack({}), trackPoint({0, 179, 0, kTen, 0}), trackPoint({0, -179, 0, 0, 0}),
                    newTrack({}), trackPoint({0, 179, 0, 0, 0}), trackPoint({0, 178, 0, 0, 0})});
    ASSERT_EQ(features.size(), 2U);
    EXPECT_EQ(features[1]["geometry"],
              Json::parse(R"({"type":"LineString","coordinates":[[179,0,0],[178,0,0]]})"));
    EXPECT_FALSE(features[1]["properties"].contains("coordTimes"));
}

TEST(GeoJsonWriter, PointOffTheGlobeIsLeftOutAndCounted)
{
    const auto poles =
        geoJsonOf({wayPoint({90.1, 0, 0, 0, 0}), newRoute({}), wayPoint({0, -181, 0, 0, 0}),
                   newTrack({}), trackPoint({90, 180, 0, kTen, 0}),
                   trackPoint({0, std::numeric_limits<double>::quiet_NaN(), 0, kTen, 0}),
                   trackPoint({-90, 180, 0, kTen, 0})});
    EXPECT_EQ(poles.remark, "3 points without valid coordinates were left out");
    const auto features = Json::parse(poles.text)["features"];
    EXPECT_EQ(features[0]["geometry"], Json{});
    EXPECT_EQ(features[1]["geometry"]["coordinates"], Json::parse("[[180,90,0],[180,-90,0]]"));
    EXPECT_EQ(features[1]["properties"]["coordTimes"].size(), 2U);
    EXPECT_EQ(geoJsonOf({wayPoint({})}).remark, "");
}

TEST(GeoJsonWriter, AltitudeThatIsNotFiniteIsLeftOut)
{
    EXPECT_EQ(geometryOf(
                  {wayPoint({1, 2, std::numeric_limits<double>::infinity(), 0, 0})})["coordinates"],
              Json({2, 1}));
}

TEST(GeoJsonWriter, CutBeforeTheFirstTimestampHasItsNullsInEachPart)
{
    const auto features =
        featuresOf({trackPoint({0, 179, 0, 0, 0}), trackPoint({0, -179, 0, 0, 0}),
                    trackPoint({0, 179, 0, 0, 0}), trackPoint({0, 178, 0, kTen, 0})});
    EXPECT_EQ(features[0]["properties"]["coordTimes"],
              Json::parse(R"([[null,null],[null,null,null],[null,null,"2024-06-01T10:00:00Z"]])"));
    EXPECT_EQ(features[0]["geometry"]["coordinates"][2].size(), 3U);
}

TEST(GeoJsonWriter, KeysThatOnlyADriverUsesAreNoProperties)
{
    const auto features = featuresOf({newTrack({{"name", "T"}, {"trackName", "x"}}),
                                      newRoute({{"name", "R"}, {"lastIndex", 2}})});
    EXPECT_EQ(features[0]["properties"], Json::parse(R"({"kind":"track","name":"T"})"));
    EXPECT_EQ(features[1]["properties"], Json::parse(R"({"kind":"route","name":"R"})"));
}

TEST(GeoJsonWriter, AltitudeIsRoundedToMillimetres)
{
    for (const auto& [altitude, text] :
         std::vector<std::pair<double, std::string>>{{466 / 3.2808399, "142.037"},
                                                     {-0.0004, "0"},
                                                     {-0.0006, "-0.001"},
                                                     {99999999.4999, "99999999.5"},
                                                     {100000, "100000"},
                                                     {-1e8, "-100000000"}})
        EXPECT_THAT(geoJsonOf({wayPoint({0, 0, altitude, 0, 0})}).text,
                    testing::HasSubstr("[0,0," + text + "]"));
}

TEST(GeoJsonWriter, CoordinatesAreRoundedToABillionthOfADegree)
{
    const gps::GPSPoint point{-46.08298333333333, 179.9999999996, 0.001, 0, 0};
    const auto coordinates = geometryOf({wayPoint(point)})["coordinates"];
    EXPECT_EQ(coordinates[0].get<double>(), 180);
    EXPECT_EQ(coordinates[1].get<double>(), -46.082983333);
    EXPECT_EQ(coordinates[2].get<double>(), point.altitude);
}

TEST(GeoJsonWriter, HostileTextsAreEscaped)
{
    const std::string arabic = "\xD9\x85\xD8\xB1\xD8\xAD\xD8\xA8\xD8\xA7";
    for (const auto& [name, shown] : std::vector<std::pair<std::string, std::string>>{
             {"</script>\"\\\n\x01", "</script>\"\\\n\x01"},
             {"\xff"
              "a",
              "\xEF\xBF\xBD"
              "a"},
             {std::string(10000, '"'), std::string(10000, '"')},
             {arabic, arabic}})
        EXPECT_EQ(featuresOf({newTrack({{"name", name}})})[0]["properties"]["name"], shown);
}

TEST(GeoJsonWriter, FailedWriteIsReportedAtTheEnd)
{
    support::Written written;
    host::Output full{::open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full"};
    host::GeoJsonWriter writer{full, written.folder()};
    writer.event(trackPoint({}));
    const auto failure = writer.close();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/dev/full");
}

} // namespace
