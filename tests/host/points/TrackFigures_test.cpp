// SPDX-License-Identifier: MIT

#include "host/points/TrackFigures.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

using support::kNaN;

constexpr std::int64_t kStart = 1717236000;
constexpr double kDegreesPerMetre = 1 / 111195.08; // of latitude

TEST(PathLength, IsMeasuredAlongTheGreatCircle)
{
    host::PathLength quarter;
    quarter.add({0, 0, 0, 0, 0});
    EXPECT_EQ(quarter.kilometres(), 0);
    quarter.add({0, 90, 0, 0, 0});
    EXPECT_NEAR(quarter.kilometres(), 10007.557, 0.001);
    quarter.add({90, 12, 0, 0, 0});
    EXPECT_NEAR(quarter.kilometres(), 20015.115, 0.001);
}

TEST(PathLength, AcrossTheDateLineIsMeasuredTheShortWay)
{
    host::PathLength length;
    length.add({0, 179.5, 0, 0, 0});
    length.add({0, -179.5, 0, 0, 0});
    EXPECT_NEAR(length.kilometres(), 111.195, 0.001);
}

TEST(PathLength, BetweenAntipodesIsHalfTheCircumference)
{
    host::PathLength length;
    length.add({45, 10, 0, 0, 0});
    length.add({-45, -170, 0, 0, 0});
    EXPECT_NEAR(length.kilometres(), 20015.115, 0.001);
}

TEST(PathLength, IgnoresPointsWithoutValidCoordinates)
{
    host::PathLength length;
    length.add({0, 0, 0, 0, 0});
    length.add({std::numeric_limits<double>::quiet_NaN(), 0, 0, 0, 0});
    length.add({91, 0, 0, 0, 0});
    length.add({1, 0, 0, 0, 0});
    EXPECT_NEAR(length.kilometres(), 111.195, 0.001);
}

TEST(HasElevation, UpTo100KilometresEitherWay)
{
    for (const double metres : {0.0, -430.0, 8849.0, 100'000.0, -100'000.0})
        EXPECT_TRUE(host::hasElevation({0, 0, metres, 0, 0})) << metres;
    for (const double metres :
         {100'000.1, -100'000.1, kNaN, std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(host::hasElevation({0, 0, metres, 0, 0})) << metres;
}

struct ClimbCase {
    std::vector<double> elevations;
    double ascent;
    double descent;
};

TEST(Climb, ChangeOfDirectionCountsInFullFromThreeMetresOn)
{
    const std::vector<ClimbCase> cases{
        {{}, 0, 0},
        {{100}, 0, 0},
        {{100, 102.9, 100, 102.9}, 0, 0}, // wavering
        {{100, 103}, 3, 0},
        {{100, 97}, 0, 3},
        {{100, 101, 102, 103, 104, 105}, 5, 0}, // one slope in small steps
        {{100, 98, 101}, 3, 0},                 // from the low after the start
        {{100, 150, 147.1, 160}, 60, 0},        // a dip too small to count
        {{100, 150, 147, 160}, 63, 3},          // one just large enough
        {{200, 150, 152.9, 140}, 0, 60},
        {{200, 150, 153, 140}, 3, 63},
        {{100, 150, 120, 170, 100}, 100, 100},
        {{-10, 10, -10}, 20, 20},
    };
    for (const auto& one : cases) {
        host::Climb climb;
        for (const double elevation : one.elevations)
            climb.add(elevation);
        EXPECT_NEAR(climb.ascentMetres(), one.ascent, 1e-9)
            << testing::PrintToString(one.elevations);
        EXPECT_NEAR(climb.descentMetres(), one.descent, 1e-9)
            << testing::PrintToString(one.elevations);
    }
}

std::int64_t movingSeconds(double metres, std::int64_t seconds)
{
    host::MovingTime moving;
    moving.add({46, 7, 0, kStart, 0});
    moving.add({46 + metres * kDegreesPerMetre, 7, 0, kStart + seconds, 0});
    return moving.seconds();
}

TEST(MovingTime, CountsFromAFifthOfAMetrePerSecond)
{
    EXPECT_EQ(movingSeconds(2.01, 10), 10);
    EXPECT_EQ(movingSeconds(1.99, 10), 0);
}

TEST(MovingTime, DoesNotCountIntervalsOfMoreThanFiveMinutes)
{
    EXPECT_EQ(movingSeconds(1000, 300), 300);
    EXPECT_EQ(movingSeconds(1000, 301), 0);
}

TEST(MovingTime, DoesNotCountTimeThatStandsStillOrRunsBackward)
{
    EXPECT_EQ(movingSeconds(100, 0), 0);
    EXPECT_EQ(movingSeconds(100, -10), 0);
}

TEST(TrackFigures, AreMissingWithoutPointsExceptForTheLength)
{
    const host::TrackFigures figures;
    EXPECT_EQ(figures.kilometres(), 0);
    EXPECT_FALSE(figures.first());
    EXPECT_FALSE(figures.last());
    EXPECT_FALSE(figures.ascentMetres());
    EXPECT_FALSE(figures.descentMetres());
    EXPECT_FALSE(figures.movingSeconds());
}

TEST(TrackFigures, UseOfEachPointWhatIsValid)
{
    host::TrackFigures figures;
    figures.add({46, 7, 500, kStart, 0});
    figures.add({46.001, 7, kNaN, 0, 0});
    figures.add({95, 7, 9000, kStart + 9000, 0}); // not a valid latitude
    figures.add({46.002, 7, 520, kStart + 120, 0});
    EXPECT_NEAR(figures.kilometres(), 0.22239, 1e-5);
    EXPECT_EQ(figures.first(), kStart);
    EXPECT_EQ(figures.last(), kStart + 120);
    EXPECT_EQ(figures.ascentMetres(), 20);
    EXPECT_EQ(figures.descentMetres(), 0);
    EXPECT_EQ(figures.movingSeconds(), 120);
}

TEST(TrackFigures, FirstAndLastAreTheEarliestAndTheLatest)
{
    host::TrackFigures figures;
    for (const std::int64_t time : {kStart + 5, kStart, kStart + 9, kStart + 7})
        figures.add({0, 0, 0, time, 0});
    EXPECT_EQ(figures.first(), kStart);
    EXPECT_EQ(figures.last(), kStart + 9);
}

TEST(TrackFigures, ZeroInEveryPointMeansNoElevations)
{
    host::TrackFigures figures;
    figures.add({0, 0, 0, 0, 0});
    figures.add({0, 1, 0, 0, 0});
    EXPECT_FALSE(figures.ascentMetres());
    figures.add({0, 2, 4, 0, 0});
    EXPECT_EQ(figures.ascentMetres(), 4);
    EXPECT_EQ(figures.descentMetres(), 0);
}

TEST(PathLength, ReturnsTheDistanceFromThePointBefore)
{
    host::PathLength length;
    EXPECT_EQ(length.add({0, 0, 0, 0, 0}), 0);
    EXPECT_NEAR(length.add({1, 0, 0, 0, 0}), 111.195, 0.001);
    EXPECT_EQ(length.add({91, 0, 0, 0, 0}), 0);
    EXPECT_NEAR(length.add({2, 0, 0, 0, 0}), 111.195, 0.001);
}

TEST(TrackFigures, MovingTimeCountsFromTheLastPointWithATimestamp)
{
    // 10 m in 10 s, with a point far away between them that has no time.
    host::TrackFigures figures;
    figures.add({0, 0, 0, kStart, 0});
    figures.add({1, 0, 0, 0, 0});
    figures.add({10 * kDegreesPerMetre, 0, 0, kStart + 10, 0});
    EXPECT_EQ(figures.movingSeconds(), 10);
    figures.add({10 * kDegreesPerMetre, 0, 0, kStart + 20, 0});
    EXPECT_EQ(figures.movingSeconds(), 10) << "no movement";
    figures.add({20 * kDegreesPerMetre, 0, 0, kStart + 30, 0});
    EXPECT_EQ(figures.movingSeconds(), 20);
}

std::optional<double> numberOf(const std::string& word)
{
    if (word == "-")
        return std::nullopt;
    double number = kNaN;
    std::istringstream{word} >> number;
    return number;
}

void expectNear(const std::optional<double>& actual, const std::optional<double>& expected)
{
    ASSERT_EQ(actual.has_value(), expected.has_value());
    if (actual) {
        EXPECT_NEAR(*actual, expected.value_or(kNaN), 0.001);
    }
}

// The page computes the same figures of a stretch; its test reads the same file.
TEST(TrackFigures, AreThoseThatThePageIsHeldTo)
{
    std::ifstream file{MAGELLAN_SOURCE_DIR "/tests/host/points/figures.txt"};
    ASSERT_TRUE(file);
    host::TrackFigures figures;
    std::string track;
    int checked = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words{line};
        std::string first;
        std::string second;
        std::string third;
        std::string fourth;
        words >> first >> second >> third >> fourth;
        if (first.empty() || first == "#")
            continue;
        SCOPED_TRACE(track);
        if (first == "track") {
            track = line;
            figures = {};
        } else if (first == "=") {
            std::string moving;
            words >> moving;
            expectNear(figures.kilometres(), numberOf(second));
            expectNear(figures.ascentMetres(), numberOf(third));
            expectNear(figures.descentMetres(), numberOf(fourth));
            const auto seconds = figures.movingSeconds();
            expectNear(seconds ? std::optional{static_cast<double>(*seconds)} : std::nullopt,
                       numberOf(moving));
            ++checked;
        } else {
            const auto time = static_cast<std::int64_t>(numberOf(fourth).value_or(0));
            figures.add({numberOf(first).value(), numberOf(second).value(),
                         numberOf(third).value_or(kNaN), time, 0});
        }
    }
    EXPECT_EQ(checked, 7);
}

} // namespace
