// SPDX-License-Identifier: MIT

#include "host/words/ProfileText.h"

#include "host/Numbers.h"

#include <gps/GPSPoint.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host::UnitSystem;
using support::kNaN;
using support::kTen;

std::string readingOf(const std::vector<gps::GPSPoint>& points, std::size_t i)
{
    const host::TrackProfile profile{points, {}};
    return readingText(profile, i, "Pacific/Auckland", UnitSystem::kMetric);
}

TEST(ReadingText, HasDistanceHeightSpeedSlopeAndTime)
{
    EXPECT_EQ(readingOf({{0, 0, 100, kTen, 0}, {0.001, 0, 110, kTen + 60, 0}}, 1),
              "0.11 km · 110 m · 6.7 km/h · +9.0 % · 2024-06-01 22:01:00 Auckland time");
}

TEST(ReadingText, LeavesOutWhatIsNotKnown)
{
    EXPECT_EQ(readingOf({{0, 0, kNaN, 0, 0}}, 0), "0.00 km");
    EXPECT_EQ(readingOf({{0, 0, kNaN, kTen, 0}, {0.001, 0, 5, 0, 0}}, 1), "0.11 km · 5 m");
}

TEST(StretchText, HasLengthDurationSpeedsClimbAndSlope)
{
    EXPECT_EQ(stretchText({.metres = 1200,
                           .seconds = 1500,
                           .ascent = 120,
                           .descent = 3,
                           .slope = 0.098,
                           .average = 0.8,
                           .top = 1.1},
                          UnitSystem::kMetric),
              "1.20 km · 25 min · 2.9 km/h on average, 4.0 km/h at most · 120 m up, 3 m down · "
              "mean slope +9.8 %");
}

TEST(StretchText, LeavesOutWhatIsNotKnown)
{
    EXPECT_EQ(stretchText({}, UnitSystem::kMetric), "0.00 km");
    EXPECT_EQ(stretchText({.metres = 1852, .seconds = 0}, UnitSystem::kNautical), "1.00 NM · 0 s");
}

TEST(FigureLines, AreThoseThatAreKnown)
{
    EXPECT_TRUE(host::figureLines({}, UnitSystem::kMetric).empty());
    const auto lines =
        host::figureLines({.moving = 60, .lowest = 5, .highest = 7, .top = 1}, UnitSystem::kMetric);
    std::string text;
    for (const auto& [label, value] : lines)
        text += label + ": " + value + "\n";
    EXPECT_EQ(text, "Moving: 1 min\nTop speed: 3.6 km/h\nHighest: 7 m\nLowest: 5 m\n");
}

} // namespace
