// SPDX-License-Identifier: MIT

#include "host/words/RecordDetail.h"

#include "host/Numbers.h"

#include <gps/Geocache.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using support::kTen;

gps::Dictionary named(std::string_view name)
{
    gps::Dictionary record;
    record.set("name", name);
    return record;
}

host::RecordSet oneTrack()
{
    host::RecordSet records;
    records.tracks.push_back(
        {named("Walk"),
         {{-44.7, 169.15, 300, kTen, 0}, {-44.7, 169.25, 1600, kTen + 4000, 0}},
         {}});
    return records;
}

std::string detailOf(const host::RecordSet& records, const host::Presentation& presentation = {})
{
    return rowDetail(records, recordRows(records).front(), presentation);
}

std::string linesOf(const host::RecordSet& records, const host::Presentation& presentation = {})
{
    std::string text;
    for (const auto& [label, value] :
         recordDetails(records, recordRows(records).front(), presentation))
        text += label + ": " + value + "\n";
    return text;
}

TEST(RecordDetail, OfATrackHasLengthDurationClimbAndLocalTime)
{
    EXPECT_EQ(detailOf(oneTrack()), "2024-06-01 22:00 · 7.90 km · 1 h 07 min · 1,300 m up");
    EXPECT_EQ(detailOf(oneTrack(), {.units = host::UnitSystem::kImperial, .isUtc = true}),
              "2024-06-01 10:00 · 4.91 mi · 1 h 07 min · 4,265 ft up");
}

TEST(RecordDetail, OfATrackWithoutTimesAndHeightsHasItsPoints)
{
    host::RecordSet records;
    records.tracks.push_back({named("Walk"), {{1, 1, 0, 0, 0}}, {}});
    EXPECT_EQ(detailOf(records), "0.00 km · 1 point");
}

TEST(RecordDetail, OfAWaypointHasItsSymbol)
{
    host::RecordSet records;
    auto record = named("Hut");
    record.set("symbol", "Campground");
    records.points.push_back({{1, 1, 0, 0, 0}, record});
    EXPECT_EQ(detailOf(records), "Waypoint · Campground");
}

TEST(RecordDetail, InFullNamesThePlace)
{
    EXPECT_EQ(linesOf(oneTrack()), "Name: Walk\n"
                                   "Kind: Track\n"
                                   "Location: near Wanaka\n"
                                   "Starts at: 44.70000° S, 169.15000° E\n"
                                   "Length: 7.90 km\n"
                                   "Start: 2024-06-01 22:00:00 Auckland time\n"
                                   "End: 2024-06-01 23:06:40 Auckland time\n"
                                   "Duration: 1 h 07 min\n"
                                   "Ascent: 1,300 m\n"
                                   "Descent: 0 m\n"
                                   "Points: 2\n");
}

TEST(RecordDetail, OfAGeocacheInFull)
{
    host::RecordSet records;
    gps::Dictionary record;
    for (const auto key : gps::kGeocacheKeys)
        record.set(std::string{key}, std::string{key} + "!");
    record.set("symbol", gps::kGeocacheSymbol);
    records.points.push_back({{0, 0, 12, kTen, 0}, record});
    EXPECT_EQ(linesOf(records, {.isUtc = true}), "Name: name!\n"
                                                 "Kind: Geocache\n"
                                                 "Comment: comment!\n"
                                                 "Coordinates: 0.00000°, 0.00000°\n"
                                                 "Symbol: Geocache\n"
                                                 "Elevation: 12 m\n"
                                                 "Time: 2024-06-01 10:00:00 UTC\n"
                                                 "Type: geocacheType!\n"
                                                 "Difficulty: difficulty!\n"
                                                 "Terrain: terrain!\n"
                                                 "Owner: geocacheOwner!\n"
                                                 "Hint: geocacheHint!\n"
                                                 "Placed: datePlaced!\n"
                                                 "Found: dateFound!\n");
}

TEST(RecordDetail, OfAnInvalidPositionHasNoCoordinates)
{
    host::RecordSet records;
    records.points.push_back({{91, 0, 0, 0, 0}, named("Hut")});
    EXPECT_EQ(linesOf(records), "Name: Hut\nKind: Waypoint\n");
}

TEST(RecordDetail, TextsAreSafeToShow)
{
    host::RecordSet records;
    auto record = named("A\x1B[2J");
    record.set("comment", "one\ntwo");
    records.points.push_back({{91, 0, 0, 0, 0}, record});
    EXPECT_EQ(linesOf(records), "Name: A\uFFFD[2J\nKind: Waypoint\nComment: one two\n");
}

TEST(RowName, OfARecordWithoutOneSaysSo)
{
    EXPECT_EQ(host::rowName({.kind = host::RecordKind::kTrack}), "Track without a name");
    EXPECT_EQ(host::rowName({.isGeocache = true}), "Geocache without a name");
    EXPECT_EQ(host::rowName({.name = "<b>"}), "<b>");
}

} // namespace
