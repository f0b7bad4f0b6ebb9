// SPDX-License-Identifier: MIT

#include "host/window/map/MapRecords.h"

#include "host/window/map/MapNote.h"
#include "host/window/map/RecordPainter.h"

#include <gps/Geocache.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

namespace {

using host::RecordKind;

gps::GPSPoint onGlobe(double latitude, double longitude)
{
    return {.latitude = latitude, .longitude = longitude};
}

host::KeptPoint keptPoint(double latitude, double longitude, const char* name = "",
                          const char* symbol = "", const char* found = "")
{
    gps::Dictionary record;
    record.set("name", name);
    record.set("symbol", symbol);
    record.set("dateFound", found);
    return {onGlobe(latitude, longitude), record};
}

std::shared_ptr<host::MapRecords> shownOf(host::RecordSet records)
{
    return host::mapRecordsOf(std::make_shared<const host::RecordSet>(std::move(records)));
}

std::string noteOn(const host::MapRecords& shown)
{
    return host::mapNote(&shown, host::TickedRecords::all(*shown.records));
}

TEST(MapRecords, SegmentsOfATrackAreLinesOfTheirOwn)
{
    host::RecordSet records;
    records.tracks.push_back({{}, {onGlobe(1, 1), onGlobe(2, 2), onGlobe(3, 3)}, {2}});
    const auto shown = shownOf(records);
    EXPECT_EQ(shown->paths[0].path.linesAt(10).size(), 2U);
    EXPECT_FALSE(shown->paths[0].isRoute);
}

TEST(MapRecords, RoutesFollowTheTracks)
{
    host::RecordSet records;
    records.tracks.resize(2);
    records.routes.push_back({{}, {keptPoint(1, 2), keptPoint(3, 4)}});
    const auto shown = shownOf(records);
    ASSERT_EQ(shown->paths.size(), 3U);
    EXPECT_TRUE(shown->paths[2].isRoute);
    EXPECT_EQ(shown->pathRecord(1), (host::RecordRef{RecordKind::kTrack, 1}));
    EXPECT_EQ(shown->pathRecord(2), (host::RecordRef{RecordKind::kRoute, 0}));
    EXPECT_EQ(shown->extentOf({RecordKind::kRoute, 0}).left, host::mapPositionOf(onGlobe(1, 2)).x);
}

TEST(MapRecords, PointKnowsItsRecordAlthoughOthersAreMissing)
{
    host::RecordSet records;
    records.points = {keptPoint(91, 0), keptPoint(1, 2, "A")};
    const auto shown = shownOf(records);
    ASSERT_EQ(shown->points.size(), 1U);
    EXPECT_EQ(shown->points[0].record, 1U);
    EXPECT_FALSE(shown->extentOf({RecordKind::kPoint, 1}).isEmpty());
    EXPECT_TRUE(shown->extentOf({RecordKind::kPoint, 0}).isEmpty());
    EXPECT_EQ(host::nameOnMap(*shown->records, {RecordKind::kPoint, 1}, 10), "A");
}

TEST(MapRecords, SymbolsAndGeocachesAreTold)
{
    host::RecordSet records;
    records.points = {keptPoint(1, 1, "", "Campground"), keptPoint(1, 1, "", "Waypoint"),
                      keptPoint(1, 1, "", "Geocache"), keptPoint(1, 1, "", "Geocache", "010110")};
    const auto shown = shownOf(records);
    EXPECT_NE(shown->points[0].picture, nullptr);
    EXPECT_EQ(shown->points[1].picture, nullptr);
    EXPECT_TRUE(shown->points[2].isGeocache && !shown->points[2].isFound);
    EXPECT_TRUE(shown->points[3].isGeocache && shown->points[3].isFound);
}

TEST(MapRecords, ExtentLeadsAcrossThe180thMeridian)
{
    host::RecordSet records;
    records.points = {keptPoint(0, 179), keptPoint(0, -179)};
    const auto shown = shownOf(records);
    EXPECT_NEAR(shown->extent.right - shown->extent.left, 2 / 360.0, 1e-9);
}

TEST(MapNote, MapWithoutRecordsHasASentence)
{
    EXPECT_FALSE(host::mapNote(nullptr, {}).empty());
    EXPECT_EQ(noteOn(*shownOf({})), "There are no records to show.");
}

TEST(MapNote, MapThatShowsEverythingHasNone)
{
    host::RecordSet records;
    records.points = {keptPoint(host::kMostLatitude, 0)};
    EXPECT_EQ(noteOn(*shownOf(records)), "");
}

TEST(MapNote, RecordsWithoutCoordinatesAreCounted)
{
    host::RecordSet records;
    records.points = {keptPoint(91, 0)};
    records.tracks.emplace_back();
    EXPECT_EQ(noteOn(*shownOf(records)),
              "No record has valid coordinates, so there is nothing to show on the map.");
    records.points.push_back(keptPoint(1, 1));
    EXPECT_EQ(noteOn(*shownOf(records)),
              "2 records have no valid coordinates and are not on the map.");
}

TEST(MapNote, RecordsBeyondTheMapAreCounted)
{
    host::RecordSet records;
    records.points = {keptPoint(host::kMostLatitude + 0.001, 0), keptPoint(-90, 0),
                      keptPoint(0, 0)};
    records.tracks.push_back({{}, {onGlobe(80, 0), onGlobe(86, 0)}});
    EXPECT_EQ(noteOn(*shownOf(records)), "3 records are nearer to a pole than this map shows, and "
                                         "are drawn at its edge.");
}

TEST(MapNote, NothingTickedIsTold)
{
    host::RecordSet records;
    records.points = {keptPoint(0, 0)};
    const auto shown = shownOf(records);
    EXPECT_EQ(host::mapNote(shown.get(), {.points = {false}}),
              "No record is ticked, so none is shown on the map.");
}

host::MapPicture painted(const std::shared_ptr<host::MapRecords>& shown,
                         const host::TickedRecords& ticked, const host::MapView& view)
{
    return host::RecordPainter{}.paint({shown, std::make_shared<const host::TickedRecords>(ticked)},
                                       view);
}

constexpr host::MapView kWorld{.width = 256, .height = 256};

TEST(RecordPainter, TrackAndPointAreHitWhereTheyAre)
{
    host::RecordSet records;
    records.tracks.push_back({{}, {onGlobe(0, -80), onGlobe(0, 80)}});
    records.points = {keptPoint(0, 0)};
    const auto picture = painted(shownOf(records), host::TickedRecords::all(records), kWorld);
    const auto hit = picture.hitAt({128, 128});
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->record, (host::RecordRef{RecordKind::kPoint, 0}));
    ASSERT_TRUE(picture.hitAt({100, 133}));
    EXPECT_EQ(picture.hitAt({100, 133})->record, (host::RecordRef{RecordKind::kTrack, 0}));
    EXPECT_FALSE(picture.hitAt({100, 136}));
    EXPECT_FALSE(picture.hitAt({40, 128}));
}

TEST(RecordPainter, WhatIsNotTickedIsNotHit)
{
    host::RecordSet records;
    records.tracks.push_back({{}, {onGlobe(0, -80), onGlobe(0, 80)}});
    records.points = {keptPoint(0, 0)};
    const auto picture = painted(shownOf(records), {.points = {false}, .tracks = {false}}, kWorld);
    EXPECT_FALSE(picture.hitAt({128, 128}));
}

TEST(RecordPainter, TrackAcrossThe180thMeridianIsOnBothSides)
{
    host::RecordSet records;
    records.tracks.push_back({{}, {onGlobe(0, 170), onGlobe(0, -170)}});
    const auto picture = painted(shownOf(records), host::TickedRecords::all(records), kWorld);
    EXPECT_TRUE(picture.hitAt({2, 128}));
    EXPECT_TRUE(picture.hitAt({254, 128}));
    EXPECT_FALSE(picture.hitAt({128, 128}));
}

TEST(RecordPainter, LineFromFarOutsideIsHitAtTheDeepestZoom)
{
    host::RecordSet records;
    records.tracks.push_back({{}, {onGlobe(0, -80), onGlobe(0, 80)}});
    const host::MapView view{
        .scale = 256 * std::exp2(host::MapPath::kMostZoom), .width = 400, .height = 400};
    const auto picture = painted(shownOf(records), host::TickedRecords::all(records), view);
    ASSERT_EQ(picture.traces.size(), 1U);
    for (const auto& position : picture.traces[0].points)
        EXPECT_LE(std::abs(position.x - 200), 250); // the drawing library can count that far
    EXPECT_TRUE(picture.hitAt({200, 200}));
}

TEST(RecordPainter, PointsAtTheSamePositionAreOneGroup)
{
    host::RecordSet records;
    records.points = {keptPoint(0, 0), keptPoint(0, 0), keptPoint(60, 0)};
    const auto picture = painted(shownOf(records), host::TickedRecords::all(records), kWorld);
    ASSERT_TRUE(picture.hitAt({128, 128}));
    EXPECT_EQ(picture.hitAt({128, 128})->count, 2U);
}

} // namespace
