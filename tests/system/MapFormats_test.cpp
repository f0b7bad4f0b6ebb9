// SPDX-License-Identifier: MIT
// KML and GeoJSON written by the built program, checked against their schema and against an
// independent reader.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>
#include <map>
#include <sstream>

namespace {

using Json = nlohmann::json;
using support::kSampleReceiver;
using support::magellangps;
using support::Receiver;
using support::TemporaryFolder;
using testing::HasSubstr;

void expectValidKml(const std::string& path)
{
    const auto checked =
        support::run({"xmllint", "--noout", "--schema",
                      MAGELLAN_SOURCE_DIR "/tests/schemas/kml-with-track.xsd", path});
    EXPECT_EQ(checked.status, 0) << checked.err;
}

using Positions = std::vector<std::array<double, 3>>; // longitude, latitude, altitude

// All positions of a geometry, at any depth.
void addPositions(const Json& coordinates, Positions& positions)
{
    if (coordinates[0].is_number()) {
        positions.push_back({coordinates[0], coordinates[1], coordinates[2]});
        return;
    }
    for (const auto& element : coordinates)
        addPositions(element, positions);
}

Positions positionsOf(const Json& features)
{
    Positions positions;
    for (const auto& feature : features)
        addPositions(feature["geometry"]["coordinates"], positions);
    return positions;
}

// The positions that the independent reader finds in a file, or in one folder of it.
Json readBack(const TemporaryFolder& folder, const std::string& path, const std::string& layer = {})
{
    const auto copy = folder.path("copy.json");
    std::vector<std::string> words{"ogr2ogr", "-f", "GeoJSON", "-lco", "COORDINATE_PRECISION=15",
                                   copy,      path};
    if (!layer.empty())
        words.push_back(layer);
    const auto read = support::run(words);
    EXPECT_EQ(read.status, 0) << read.err;
    EXPECT_THAT(read.err, testing::IsEmpty());
    const auto document = Json::parse(folder.read("copy.json"));
    std::filesystem::remove(copy);
    return document["features"];
}

struct Reported {
    Positions tracks;
    Positions routes;
    Positions wayPoints;
    Positions geocaches;
    std::size_t trackCount = 0;
    std::size_t routeCount = 0;
};

// The positions in the event lines.
Reported reportedOf(const std::string& lines)
{
    Reported reported;
    bool inRoute = false;
    std::istringstream stream{lines};
    for (std::string line; std::getline(stream, line);) {
        const auto event = Json::parse(line);
        const std::string kind = event["event"];
        if (kind == "newRoute" || kind == "endTransfer")
            inRoute = kind == "newRoute";
        reported.trackCount += kind == "newTrack" ? 1U : 0U;
        reported.routeCount += kind == "newRoute" ? 1U : 0U;
        if (kind != "trackPoint" && kind != "wayPoint")
            continue;
        auto& positions = kind == "trackPoint"                      ? reported.tracks
                          : inRoute                                 ? reported.routes
                          : event["extra"].contains("geocacheType") ? reported.geocaches
                                                                    : reported.wayPoints;
        positions.push_back(
            {event["point"]["longitude"], event["point"]["latitude"], event["point"]["altitude"]});
    }
    return reported;
}

// @param tolerance  of altitudes, in metres
void expectSame(const Positions& read, const Positions& reported, double tolerance = 1e-9)
{
    ASSERT_EQ(read.size(), reported.size());
    ASSERT_FALSE(reported.empty());
    for (std::size_t i = 0; i < read.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            ASSERT_NEAR(read[i][axis], reported[i][axis], axis == 2 ? tolerance : 1e-9) << i;
    }
}

Reported acquireSample(const std::string& path)
{
    const auto ran =
        magellangps({"acquire", "--test-folder", kSampleReceiver, "--events", "-o", path});
    EXPECT_EQ(ran.status, 0) << ran.err;
    return reportedOf(ran.out);
}

TEST(MapFormats, SampleReceiverAsKmlIsValidAndReadBackPointForPoint)
{
    const TemporaryFolder folder;
    const auto path = folder.path("trip.kml");
    const auto reported = acquireSample(path);
    expectValidKml(path);
    const auto tracks = readBack(folder, path, "Tracks");
    EXPECT_EQ(tracks.size(), reported.trackCount);
    expectSame(positionsOf(tracks), reported.tracks);
    expectSame(positionsOf(readBack(folder, path, "Waypoints")), reported.wayPoints);
    expectSame(positionsOf(readBack(folder, path, "Geocaches")), reported.geocaches);
    EXPECT_EQ(readBack(folder, path, "Coast Walk").size(), 9U + 1); // its points and its line
}

TEST(MapFormats, SampleReceiverAsGeoJsonIsReadBackPointForPoint)
{
    const TemporaryFolder folder;
    const auto path = folder.path("trip.geojson");
    const auto reported = acquireSample(path);
    std::map<std::string, Json> kinds;
    for (const auto& feature : readBack(folder, path))
        kinds[feature["properties"]["kind"]].push_back(feature);
    EXPECT_EQ(kinds["track"].size(), reported.trackCount);
    EXPECT_EQ(kinds["route"].size(), reported.routeCount);
    constexpr double kHalfAMillimetre = 0.0005;
    expectSame(positionsOf(kinds["track"]), reported.tracks, kHalfAMillimetre);
    expectSame(positionsOf(kinds["route"]), reported.routes, kHalfAMillimetre);
    expectSame(positionsOf(kinds["waypoint"]), reported.wayPoints, kHalfAMillimetre);
    expectSame(positionsOf(kinds["geocache"]), reported.geocaches, kHalfAMillimetre);
}

TEST(MapFormats, SampleReceiverAsKmzIsReadBackPointForPointByOthersAndByImport)
{
    const TemporaryFolder folder;
    const auto path = folder.path("trip.kmz");
    const auto reported = acquireSample(path);
    // The independent reader opens archives that are named like this.
    const auto tracks = readBack(folder, "/vsizip/" + path + "/doc.kml", "Tracks");
    expectSame(positionsOf(tracks), reported.tracks);
    const auto ran = magellangps({"import", path, "--events"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    const auto imported = reportedOf(ran.out);
    expectSame(imported.tracks, reported.tracks);
    expectSame(imported.routes, reported.routes);
    expectSame(imported.wayPoints, reported.wayPoints);
    expectSame(imported.geocaches, reported.geocaches);
    EXPECT_EQ(imported.trackCount, reported.trackCount);
    EXPECT_EQ(imported.routeCount, reported.routeCount);
}

TEST(MapFormats, EmptyDownloadIsAValidEmptyFile)
{
    const Receiver receiver;
    for (const char* name : {"a.kml", "a.geojson"}) {
        const auto ran = magellangps({"acquire", "--test-folder", receiver.path(), "--no-waypoints",
                                      "--no-routes", "--no-tracks", "-o", receiver.path(name)});
        EXPECT_EQ(ran.status, 0) << ran.err;
    }
    expectValidKml(receiver.path("a.kml"));
    EXPECT_EQ(readBack(receiver, receiver.path("a.geojson")), Json::array());
}

TEST(MapFormats, HostileNamesAndTheDateLineStayValid)
{
    const TemporaryFolder folder;
    const std::string name = "</name><script>&\"']]>" + std::string(10000, '&');
    const auto points =
        folder.put("a.upt", support::sentences({"PMGNWPL,9000.00000,S,18000.00000,W,0000000,M," +
                                                name + "," + name + ",a"}));
    const auto track = folder.put(
        "b.log", support::sentences(
                     {"PMGNTRK,0000.000,N,17959.000,E,00001,M,100000.00,A," + name + ",010624",
                      "PMGNTRK,0000.000,N,17959.000,W,00001,M,100010.00,A," + name + ",010624"}));
    for (const char* file : {"a.kml", "a.geojson"}) {
        const auto ran = magellangps({"import", points, track, "-o", folder.path(file)});
        EXPECT_EQ(ran.status, 0) << ran.err;
    }
    expectValidKml(folder.path("a.kml"));
    EXPECT_EQ(readBack(folder, folder.path("a.kml"), "Waypoints")[0]["properties"]["Name"], name);
    const auto features = readBack(folder, folder.path("a.geojson"));
    ASSERT_EQ(features.size(), 2U);
    EXPECT_EQ(features[0]["properties"]["name"], name);
    EXPECT_EQ(features[0]["geometry"]["coordinates"], Json({-180.0, -90.0, 0.0}));
    EXPECT_EQ(features[1]["geometry"]["type"], "MultiLineString");
}

TEST(MapFormats, DatesAreFixedInFilesButNotInEventLines)
{
    const TemporaryFolder folder;
    const auto track = folder.put(
        "a.log", support::sentences(
                     {"PMGNTRK,4630.00000,N,00715.00000,E,01200,M,100000.00,A,Day 1,160105"}));
    const auto ran = magellangps(
        {"import", track, "--fix-dates", "auto", "--events", "-o", folder.path("a.kml")});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("\"time\":1105869600,"));
    EXPECT_THAT(folder.read("a.kml"), HasSubstr("<when>2024-09-01T10:00:00Z</when>"));
    EXPECT_EQ(
        magellangps({"import", track, "--fix-dates", "-1024", "-o", folder.path("a.jsonl")}).status,
        0);
    EXPECT_THAT(folder.read("a.jsonl"), HasSubstr("\"time\":486554400,"));
}

} // namespace
