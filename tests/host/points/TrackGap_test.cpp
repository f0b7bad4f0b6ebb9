// SPDX-License-Identifier: MIT

#include "host/points/TrackGap.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

namespace {

using host::GapFinder;
using host::GapRule;
using host::isImpossibleJump;
using host::readGapRule;
using support::kNaN;
using support::kTen;

constexpr double kMetreNorth = 1 / 111195.08; // in degrees of latitude

gps::GPSPoint pointAt(double metresNorth, std::int64_t time)
{
    return {.latitude = metresNorth * kMetreNorth, .time = time};
}

TEST(TrackGap, JumpIsImpossibleAbove515MetresPerSecond)
{
    EXPECT_FALSE(isImpossibleJump(pointAt(0, kTen), pointAt(5149, kTen + 10)));
    EXPECT_TRUE(isImpossibleJump(pointAt(0, kTen), pointAt(5151, kTen + 10)));
    EXPECT_TRUE(isImpossibleJump(pointAt(0, kTen), pointAt(5151, kTen - 10))) << "time runs back";
}

TEST(TrackGap, PointsOfTheSameSecondAreOneSecondApart)
{
    EXPECT_FALSE(isImpossibleJump(pointAt(0, kTen), pointAt(514, kTen)));
    EXPECT_TRUE(isImpossibleJump(pointAt(0, kTen), pointAt(516, kTen)));
}

TEST(TrackGap, NearPointsAreNoJumpAtAnyLatitude)
{
    for (const double latitude : {-89.99, 0.0, 46.5}) {
        const gps::GPSPoint a{.latitude = latitude, .longitude = 7, .time = kTen};
        EXPECT_FALSE(isImpossibleJump(
            a, {.latitude = latitude + 0.0029, .longitude = 7.0029, .time = kTen}));
    }
}

TEST(TrackGap, PointsWithoutATimeOrPositionMakeNoJump)
{
    EXPECT_FALSE(isImpossibleJump(pointAt(0, 0), pointAt(90000, kTen)));
    EXPECT_FALSE(isImpossibleJump(pointAt(0, kTen), pointAt(90000, 0)));
    EXPECT_FALSE(isImpossibleJump({.latitude = 91, .time = kTen}, pointAt(0, kTen)));
    EXPECT_FALSE(isImpossibleJump(pointAt(0, kTen), {.latitude = kNaN, .time = kTen}));
}

TEST(TrackGap, DateLineIsNoJump)
{
    EXPECT_FALSE(isImpossibleJump({.longitude = 179.999, .time = kTen},
                                  {.longitude = -179.999, .time = kTen}));
}

TEST(TrackGap, RulesAreReadWithTheirUnits)
{
    EXPECT_EQ(readGapRule("30s")->seconds, 30);
    EXPECT_EQ(readGapRule("10min")->seconds, 600);
    EXPECT_EQ(readGapRule("1.5h")->seconds, 5400);
    EXPECT_EQ(readGapRule("500m")->metres, 500);
    EXPECT_EQ(readGapRule("2.5km")->metres, 2500);
    EXPECT_TRUE(readGapRule("off")->isOff);
    for (const char* const text : {"", "10", "min", "-5min", "0s", "0.5s", "0m", "5 min", "5MIN",
                                   "1e999m", "nans", "5mi", "on", "5minutes", "5sm"})
        EXPECT_FALSE(readGapRule(text)) << text;
}

TEST(TrackGap, RuleIsAtMostAYearOrTheEarthsCircumference)
{
    EXPECT_TRUE(readGapRule("8784h"));
    EXPECT_FALSE(readGapRule("8785h"));
    EXPECT_TRUE(readGapRule("40075km"));
    EXPECT_FALSE(readGapRule("40076km"));
}

/// Whether there is a gap before the second of two points.
bool isGap(const GapRule& rule, const gps::GPSPoint& a, const gps::GPSPoint& b)
{
    GapFinder finder{rule};
    EXPECT_FALSE(finder.isGapBefore(a));
    return finder.isGapBefore(b);
}

TEST(TrackGap, TimeIsAGapOnlyAboveTheRules)
{
    const GapRule rule{.seconds = 60};
    EXPECT_FALSE(isGap(rule, pointAt(0, kTen), pointAt(1, kTen + 60)));
    EXPECT_TRUE(isGap(rule, pointAt(0, kTen), pointAt(1, kTen + 61)));
    EXPECT_TRUE(isGap(rule, pointAt(0, kTen), pointAt(1, kTen - 61)));
    EXPECT_FALSE(isGap(rule, pointAt(0, 0), pointAt(1, kTen))) << "no time";
}

TEST(TrackGap, DistanceIsAGapOnlyAboveTheRules)
{
    const GapRule rule{.metres = 100};
    EXPECT_FALSE(isGap(rule, pointAt(0, 0), pointAt(99.9, 0)));
    EXPECT_TRUE(isGap(rule, pointAt(0, 0), pointAt(100.1, 0)));
}

TEST(TrackGap, JumpIsAGapWithAnyRuleButOff)
{
    for (const GapRule& rule : {GapRule{}, {.seconds = 3600}, {.metres = 1e6}})
        EXPECT_TRUE(isGap(rule, pointAt(0, kTen), pointAt(1000, kTen)));
    EXPECT_FALSE(isGap({.isOff = true}, pointAt(0, kTen), pointAt(1000, kTen)));
}

TEST(TrackGap, PointsWithoutAPositionAreSkipped)
{
    GapFinder finder{GapRule{}};
    EXPECT_FALSE(finder.isGapBefore(pointAt(0, kTen)));
    EXPECT_FALSE(finder.isGapBefore({.latitude = kNaN, .time = kTen}));
    EXPECT_FALSE(finder.isGapBefore({.latitude = 91, .time = kTen}));
    EXPECT_TRUE(finder.isGapBefore(pointAt(1000, kTen)));
}

TEST(TrackGap, NothingIsAGapAtTheStartOfATrack)
{
    GapFinder finder{GapRule{}};
    EXPECT_FALSE(finder.isGapBefore(pointAt(0, kTen)));
    finder.restart();
    EXPECT_FALSE(finder.isGapBefore(pointAt(90000, kTen)));
    EXPECT_TRUE(finder.isGapBefore(pointAt(0, kTen)));
}

} // namespace
