// SPDX-License-Identifier: MIT

#include "host/words/ScaleTicks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using enum host::UnitSystem;
using Texts = std::vector<std::string>;

Texts textsOf(const std::vector<host::Tick>& ticks)
{
    Texts texts;
    for (const auto& tick : ticks)
        texts.push_back(tick.text);
    return texts;
}

Texts distances(double length, host::UnitSystem system = kMetric)
{
    return textsOf(host::distanceTicks(length, 5, system));
}

Texts times(double length)
{
    return textsOf(host::timeTicks(length, 5));
}

TEST(ScaleTicks, RoundStepsAreOneTwoOrFive)
{
    for (const auto& [least, step] : std::vector<std::pair<double, double>>{
             {1, 1}, {1.01, 2}, {2, 2}, {2.1, 5}, {5, 5}, {5.1, 10}, {0.03, 0.05}, {300, 500}})
        EXPECT_NEAR(host::roundStep(least), step, step * 1e-9) << least;
}

TEST(ScaleTicks, DistancesAreInKilometresWithTheUnitAtTheFirst)
{
    EXPECT_EQ(distances(20000), (Texts{"0 km", "5", "10", "15"}));
    EXPECT_EQ(distances(2500), (Texts{"0 km", "0.5", "1", "1.5", "2"}));
    EXPECT_EQ(distances(5e6), (Texts{"0 km", "1,000", "2,000", "3,000", "4,000"}));
}

TEST(ScaleTicks, DistancesBelowAKilometreOrAMileAreInMetresOrFeet)
{
    EXPECT_EQ(distances(999), (Texts{"0 m", "200", "400", "600", "800"}));
    EXPECT_EQ(distances(1000), (Texts{"0 km", "0.2", "0.4", "0.6", "0.8"}));
    EXPECT_EQ(distances(0.02), (Texts{"0 m", "0.005", "0.01", "0.015"}));
    EXPECT_EQ(distances(1609, kImperial), (Texts{"0 ft", "2,000", "4,000"}));
    EXPECT_EQ(distances(1610, kImperial), (Texts{"0 mi", "0.5"}));
    EXPECT_EQ(distances(1852, kNautical), (Texts{"0 NM", "0.2", "0.4", "0.6", "0.8"}));
}

TEST(ScaleTicks, DistanceWithinSixPercentOfTheEndIsOmitted)
{
    EXPECT_EQ(distances(10640).back(), "10");
    EXPECT_EQ(distances(10630).back(), "5");
}

TEST(ScaleTicks, TimesAreMinutesHoursOrDays)
{
    EXPECT_EQ(times(290), (Texts{"0:00 h", "0:01", "0:02", "0:03", "0:04"}));
    EXPECT_EQ(times(3600), (Texts{"0:00 h", "0:15", "0:30", "0:45"}));
    EXPECT_EQ(times(5.0 * 3600), (Texts{"0:00 h", "1:00", "2:00", "3:00", "4:00"}));
    EXPECT_EQ(times(5.0 * 86400), (Texts{"0 days", "1", "2", "3", "4"}));
    EXPECT_EQ(times(60), (Texts{"0:00 h"}));
}

TEST(ScaleTicks, ValuesAreRoundAndWithinTheScale)
{
    EXPECT_EQ(textsOf(host::valueTicks(92, 214, 1, 4)), (Texts{"100", "150", "200"}));
    EXPECT_EQ(textsOf(host::valueTicks(-12, 12, 1, 4)), (Texts{"−10", "0", "10"}));
    const auto speeds = host::valueTicks(0, 6.1, 1 / 3.6, 3);
    EXPECT_EQ(textsOf(speeds), (Texts{"0", "10", "20"}));
    EXPECT_NEAR(speeds.back().position, 20 / 3.6, 1e-9);
}

} // namespace
