// SPDX-License-Identifier: MIT

#include "host/points/TrackProfile.h"

#include "host/Numbers.h"
#include "host/points/TrackFigures.h"

#include <gps/GPSPoint.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using support::kNaN;
using support::kTen;

struct MeasuredTrack {
    std::vector<gps::GPSPoint> points{};
    std::vector<std::size_t> segments{};

    [[nodiscard]] host::TrackProfile profile() const { return {points, segments}; }
};

double numberIn(const std::string& word)
{
    double number = kNaN;
    if (word != "-")
        std::istringstream{word} >> number;
    return number;
}

void expectNear(double actual, double expected)
{
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(actual)) << actual;
    else
        EXPECT_NEAR(actual, expected, 0.001);
}

std::vector<double> valuesOf(const host::TrackProfile& profile, const std::string& kind,
                             const std::vector<double>& expected)
{
    if (kind == "top")
        return {profile.topSpeed(0, profile.size() - 1)};
    const auto first = static_cast<std::size_t>(expected[0]);
    if (kind == "at")
        return {expected[0], profile.speed(first), profile.slope(first)};
    const auto stretch = stretchFigures(profile, first, static_cast<std::size_t>(expected[1]));
    return {expected[0],     expected[1],    stretch.metres,  stretch.seconds,
            stretch.moving,  stretch.ascent, stretch.descent, stretch.lowest,
            stretch.highest, stretch.slope,  stretch.average, stretch.movingAverage};
}

// The page's test reads the same file.
TEST(TrackProfile, FiguresAreThoseThatThePageIsHeldTo)
{
    std::ifstream file{MAGELLAN_SOURCE_DIR "/tests/host/points/stretches.txt"};
    ASSERT_TRUE(file);
    MeasuredTrack track;
    int checked = 0;
    for (std::string line; std::getline(file, line);) {
        SCOPED_TRACE(line);
        std::istringstream words{line};
        std::string kind;
        words >> kind;
        std::vector<double> numbers;
        for (std::string word; words >> word;)
            numbers.push_back(numberIn(word));
        if (kind.empty() || kind == "#")
            continue;
        if (kind == "track") {
            track = {};
        } else if (kind == "break") {
            track.segments.push_back(track.points.size());
        } else if (kind == "=" || kind == "top" || kind == "at") {
            const auto values = valuesOf(track.profile(), kind, numbers);
            ASSERT_EQ(values.size(), numbers.size());
            for (std::size_t i = 0; i < values.size(); ++i)
                expectNear(values[i], numbers[i]);
            ++checked;
        } else {
            const auto time = std::isnan(numbers[2]) ? 0 : static_cast<std::int64_t>(numbers[2]);
            track.points.push_back({numberIn(kind), numbers[0], numbers[1], time, 0});
        }
    }
    EXPECT_EQ(checked, 50);
}

// Three points, 111.195 m and a minute apart.
MeasuredTrack walk()
{
    return {{{0, 0, 100, kTen, 0}, {0.001, 0, 110, kTen + 60, 0}, {0.002, 0, 105, kTen + 120, 0}},
            {}};
}

TEST(TrackProfile, OfNothingHasNoFigures)
{
    const host::TrackProfile nothing;
    EXPECT_EQ(nothing.size(), 0);
    EXPECT_EQ(nothing.length(), 0);
    EXPECT_FALSE(nothing.hasDuration());
    EXPECT_EQ(stretchFigures(nothing, 0, 0).metres, 0);
    EXPECT_TRUE(std::isnan(stretchFigures(nothing, 0, 0).ascent));
}

TEST(TrackProfile, WholeTrackHasTheFiguresOfTheSummary)
{
    auto track = walk();
    track.points.push_back({0.01, 0, 300, kTen + 180, 0});
    track.points.push_back({0.011, 0, 280, kTen + 240, 0});
    track.segments = {3};
    host::TrackFigures figures;
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (i == 3)
            figures.breakHere();
        figures.add(track.points[i]);
    }
    const auto whole = stretchFigures(track.profile(), 0, 4);
    EXPECT_DOUBLE_EQ(whole.metres, figures.kilometres() * 1000);
    EXPECT_EQ(whole.ascent, figures.ascentMetres());
    EXPECT_EQ(whole.descent, figures.descentMetres());
    EXPECT_EQ(whole.moving, static_cast<double>(figures.movingSeconds().value()));
    EXPECT_EQ(whole.seconds, static_cast<double>(*figures.last() - *figures.first()));
}

TEST(TrackProfile, LeavesOutPointsWithoutValidCoordinates)
{
    auto track = walk();
    track.points.insert(track.points.begin(), {kNaN, 0, 1, kTen, 0});
    track.points.insert(track.points.begin() + 2, {91, 0, 1, kTen, 0});
    const auto profile = track.profile();
    ASSERT_EQ(profile.size(), 3);
    EXPECT_EQ(profile.elevation(1), 110);
    EXPECT_NEAR(profile.length(), 222.390, 0.001);
}

TEST(TrackProfile, SegmentThatBeginsWithAnInvalidPointBeginsWithTheNextOne)
{
    auto track = walk();
    track.points.insert(track.points.begin() + 2, {91, 0, 1, kTen, 0});
    track.segments = {2};
    const auto profile = track.profile();
    ASSERT_EQ(profile.breaks().size(), 1);
    EXPECT_EQ(profile.breaks()[0], 2);
    EXPECT_NEAR(profile.length(), 111.195, 0.001);
}

TEST(TrackProfile, SegmentBeforeTheFirstValidPointIsNoBreak)
{
    auto track = walk();
    track.points.insert(track.points.begin(), {kNaN, 0, 1, kTen, 0});
    track.segments = {1};
    EXPECT_TRUE(track.profile().breaks().empty());
}

TEST(TrackProfile, ZeroInEveryPointMeansNoElevations)
{
    auto track = walk();
    for (auto& point : track.points)
        point.altitude = 0;
    EXPECT_TRUE(std::isnan(track.profile().elevation(1)));
    track.points[2].altitude = 1;
    EXPECT_EQ(track.profile().elevation(1), 0);
}

TEST(TrackProfile, ImplausibleElevationIsNotKnown)
{
    auto track = walk();
    track.points[0].altitude = kNaN;
    track.points[1].altitude = 1e6;
    const auto profile = track.profile();
    EXPECT_TRUE(std::isnan(profile.elevation(0)));
    EXPECT_TRUE(std::isnan(profile.elevation(1)));
    EXPECT_EQ(profile.elevation(2), 105);
}

TEST(TrackProfile, HasADurationFromTwoTimesOn)
{
    auto track = walk();
    EXPECT_TRUE(track.profile().hasDuration());
    track.points[0].time = track.points[1].time = 0;
    EXPECT_FALSE(track.profile().hasDuration()) << "one time";
    track.points[0].time = track.points[2].time;
    EXPECT_FALSE(track.profile().hasDuration()) << "the same time";
    track.points[0].time = track.points[2].time + 1;
    EXPECT_TRUE(track.profile().hasDuration()) << "backward";
}

TEST(TrackProfile, ElapsedTimeNeverFalls)
{
    MeasuredTrack track;
    for (const std::int64_t time :
         {std::int64_t{0}, kTen, kTen + 10, std::int64_t{0}, kTen + 5, kTen + 30})
        track.points.push_back({0, 0, 0, time, 0});
    EXPECT_EQ(track.profile().elapsedSeconds(), (std::vector<double>{0, 0, 10, 10, 10, 30}));
}

TEST(IndexNearest, BeyondTheEndsToo)
{
    const std::vector<double> values{0, 10, 30, 60};
    const std::vector<std::pair<double, std::size_t>> cases{
        {-5, 0}, {0, 0}, {4.9, 0}, {5, 1}, {5.1, 1}, {19, 1}, {21, 2}, {44, 2}, {46, 3}, {99, 3}};
    for (const auto& [position, index] : cases)
        EXPECT_EQ(host::indexNearest(values, position), index) << position;
    EXPECT_EQ(host::indexNearest(std::vector<double>{0}, 5), 0);
}

} // namespace
