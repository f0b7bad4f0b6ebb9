// SPDX-License-Identifier: MIT
// Each field that a kind of record loses, and those that it keeps.

#include "Waypoint.h"

#include <plugin/fsdevice/LostFields.h>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

using magellan::RecordKind;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

constexpr std::int64_t kTime = 1'717'236'000; // in 2024

gps::Dictionary at(double altitude, std::int64_t time)
{
    return {{"name", "A"}, {"point", gps::GPSPoint{46, 7, altitude, time, 0}}};
}

gps::Dictionary withPoints(gps::Array points)
{
    return {{"name", "Walk"}, {"points", std::move(points)}};
}

// "tracks name 2" for each lost field.
std::vector<std::string> lostIn(RecordKind kind, gps::Array records)
{
    std::vector<gps::LostField> lost;
    magellan::countLostFields({kind, std::move(records), "folder"}, lost);
    std::vector<std::string> texts;
    for (const auto& [name, field, count] : lost)
        texts.push_back(std::string{name} + ' ' + std::string{field} + ' ' + std::to_string(count));
    return texts;
}

TEST(LostFields, TracksLoseTheirNamesAndUnknownAltitudes)
{
    EXPECT_THAT(
        lostIn(RecordKind::kTracks,
               {withPoints({at(kUnknown, kTime), at(5, kTime), at(kUnknown, 0)}), withPoints({})}),
        ElementsAre("tracks name 2", "tracks altitude 2"));
}

TEST(LostFields, TracksKeepTheirTimesAndKnownAltitudes)
{
    EXPECT_THAT(lostIn(RecordKind::kTracks,
                       {gps::Dictionary{{"points", gps::Array{at(0, kTime), at(5, 0)}}},
                        gps::Dictionary{{"name", ""}}}),
                IsEmpty());
}

TEST(LostFields, TracksLoseTimesBefore1980AndAfter2079)
{
    const auto lost = [](std::int64_t time) {
        return lostIn(RecordKind::kTracks, {gps::Dictionary{{"points", gps::Array{at(0, time)}}}});
    };
    EXPECT_THAT(lost(315532799), ElementsAre("tracks time 1"));
    EXPECT_THAT(lost(315532800), IsEmpty());
    EXPECT_THAT(lost(3471292799), IsEmpty());
    EXPECT_THAT(lost(3471292800), ElementsAre("tracks time 1"));
    EXPECT_THAT(lost(-1), ElementsAre("tracks time 1"));
}

TEST(LostFields, WaypointsLoseTheirTimesAndUnknownAltitudes)
{
    EXPECT_THAT(lostIn(RecordKind::kWaypoints, {at(kUnknown, 1), at(5, 1), at(5, 0)}),
                ElementsAre("waypoints time 2", "waypoints altitude 1"));
    EXPECT_THAT(lostIn(RecordKind::kWaypoints, {at(0, 0)}), IsEmpty());
}

TEST(LostFields, PointsOfRoutesLoseTheSame)
{
    EXPECT_THAT(lostIn(RecordKind::kRoutes, {withPoints({at(kUnknown, 1), at(5, 1)})}),
                ElementsAre("routes time 2", "routes altitude 1"));
}

TEST(LostFields, GeocachesLoseOnlyUnknownAltitudes)
{
    EXPECT_THAT(lostIn(RecordKind::kGeocaches, {at(kUnknown, 1)}),
                ElementsAre("geocaches altitude 1"));
}

TEST(LostFields, RecordsWithoutAPointLoseNothing)
{
    EXPECT_THAT(lostIn(RecordKind::kWaypoints, {gps::Dictionary{{"name", "A"}}, gps::Value{1}}),
                IsEmpty());
    EXPECT_THAT(lostIn(RecordKind::kRoutes, {gps::Dictionary{}, withPoints({gps::Value{1}})}),
                ElementsAre());
}

} // namespace
