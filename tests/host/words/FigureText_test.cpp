// SPDX-License-Identifier: MIT

#include "host/words/FigureText.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using enum host::UnitSystem;
using support::kNaN;

TEST(FigureText, OfAnUnknownValueIsADash)
{
    EXPECT_EQ(host::lengthText(kNaN, kMetric), "–");
    EXPECT_EQ(host::heightText(kNaN, kMetric), "–");
    EXPECT_EQ(host::speedText(kNaN, kMetric), "–");
    EXPECT_EQ(host::slopeText(kNaN), "–");
    EXPECT_EQ(host::durationText(kNaN), "–");
}

TEST(FigureText, GroupsDigitsByThree)
{
    EXPECT_EQ(host::numberText(999, 0), "999");
    EXPECT_EQ(host::numberText(1000, 0), "1,000");
    EXPECT_EQ(host::numberText(1234567, 1), "1,234,567.0");
    EXPECT_EQ(host::numberText(-1234, 0), "−1,234");
    EXPECT_EQ(host::numberText(-0.001, 2), "0.00");
}

TEST(FigureText, LengthsHaveTwoDecimals)
{
    EXPECT_EQ(host::lengthText(0, kMetric), "0.00 km");
    EXPECT_EQ(host::lengthText(1234567, kMetric), "1,234.57 km");
    EXPECT_EQ(host::lengthText(1609.344, kImperial), "1.00 mi");
    EXPECT_EQ(host::lengthText(1852, kNautical), "1.00 NM");
}

TEST(FigureText, HeightsAreWhole)
{
    EXPECT_EQ(host::heightText(1234.4, kMetric), "1,234 m");
    EXPECT_EQ(host::heightText(1234.5, kMetric), "1,235 m");
    EXPECT_EQ(host::heightText(-0.5, kMetric), "0 m") << "just below the sea";
    EXPECT_EQ(host::heightText(-0.6, kMetric), "−1 m");
    EXPECT_EQ(host::heightText(304.8, kImperial), "1,000 ft");
    EXPECT_EQ(host::heightText(304.8, kNautical), "305 m");
}

TEST(FigureText, SpeedsHaveOneDecimal)
{
    EXPECT_EQ(host::speedText(1, kMetric), "3.6 km/h");
    EXPECT_EQ(host::speedText(0.01, kMetric), "0.0 km/h");
    EXPECT_EQ(host::speedText(0.44704, kImperial), "1.0 mph");
    EXPECT_EQ(host::speedText(1852.0 / 3600, kNautical), "1.0 kn");
}

TEST(FigureText, SlopesHaveASign)
{
    EXPECT_EQ(host::slopeText(0.125), "+12.5 %");
    EXPECT_EQ(host::slopeText(-0.125), "−12.5 %");
    EXPECT_EQ(host::slopeText(0.0004), "0.0 %");
    EXPECT_EQ(host::slopeText(-0.0004), "0.0 %");
}

TEST(FigureText, DurationsUseLargerUnitsFromAMinuteAnHourAndTwoDaysOn)
{
    const std::vector<std::pair<double, std::string>> cases{{0, "0 s"},
                                                            {59, "59 s"},
                                                            {60, "1 min"},
                                                            {89, "1 min"},
                                                            {90, "2 min"},
                                                            {3569, "59 min"},
                                                            {3570, "1 h 00 min"},
                                                            {47 * 3600 + 59 * 60, "47 h 59 min"},
                                                            {48 * 3600, "2 d 0 h"},
                                                            {51 * 3600 + 1800, "2 d 3 h"},
                                                            {1000.0 * 86400, "1,000 d 0 h"}};
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(host::durationText(seconds), text) << seconds;
}

TEST(FigureText, CoordinatesHaveLettersInsteadOfSigns)
{
    EXPECT_EQ(host::coordinateText(46.5, -7.25), "46.50000° N, 7.25000° W");
    EXPECT_EQ(host::coordinateText(-46.5, 7.25), "46.50000° S, 7.25000° E");
    EXPECT_EQ(host::coordinateText(-0.000004, 0.00001), "0.00000°, 0.00001° E") << "zero has none";
}

} // namespace
