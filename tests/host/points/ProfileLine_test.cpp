// SPDX-License-Identifier: MIT

#include "host/points/ProfileLine.h"

#include "host/Numbers.h"

#include <gps/GPSPoint.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using host::ProfileValue;
using support::kNaN;
using support::kTen;

// Points along the equator, each 10 s after the one before.
class Track {
public:
    explicit Track(const std::vector<double>& elevations)
    {
        for (const double elevation : elevations) {
            const auto i = points_.size();
            points_.push_back({0, 0.0001 * static_cast<double>(i), elevation,
                               kTen + 10 * static_cast<std::int64_t>(i), 0});
        }
    }

    Track& breakBefore(std::size_t point)
    {
        segments_.push_back(point);
        return *this;
    }

    Track& withoutTimeAt(std::size_t point)
    {
        points_[point].time = 0;
        return *this;
    }

    [[nodiscard]] host::ProfileLine line(ProfileValue value, std::size_t columns) const
    {
        const host::TrackProfile profile{points_, segments_};
        return profileLine(profile, value, profile.metres(), columns);
    }

private:
    std::vector<gps::GPSPoint> points_;
    std::vector<std::size_t> segments_;
};

// For each piece, whether the line leads to it.
std::vector<bool> joins(const host::ProfileLine& line)
{
    std::vector<bool> joins;
    for (const auto& piece : line.pieces)
        joins.push_back(piece.isJoined);
    return joins;
}

TEST(ProfileLine, NeedsTwoPointsWithAValue)
{
    EXPECT_FALSE(Track{{}}.line(ProfileValue::kElevation, 10).canBeDrawn());
    EXPECT_FALSE((Track{{5}}.line(ProfileValue::kElevation, 10).canBeDrawn()));
    EXPECT_FALSE((Track{{5, kNaN}}.line(ProfileValue::kElevation, 10).canBeDrawn()));
    EXPECT_TRUE((Track{{5, 5}}.line(ProfileValue::kElevation, 10).canBeDrawn()));
}

TEST(ProfileLine, NeedsALength)
{
    const std::vector<gps::GPSPoint> points(3, {0, 0, 5, kTen, 0});
    const host::TrackProfile profile{points, {}};
    EXPECT_FALSE(profileLine(profile, ProfileValue::kElevation, profile.metres(), 10).canBeDrawn());
}

TEST(ProfileLine, KeepsTheExtremesOfEachColumn)
{
    const auto line = Track{{100, 900, 50, 200, 300}}.line(ProfileValue::kElevation, 1);
    ASSERT_EQ(line.pieces.size(), 1);
    const auto& column = line.pieces[0];
    EXPECT_EQ(column.first, 100);
    EXPECT_EQ(column.lowest, 50);
    EXPECT_EQ(column.highest, 900);
    EXPECT_EQ(column.last, 300);
    EXPECT_EQ(line.lowest, 50);
    EXPECT_EQ(line.highest, 900);
}

TEST(ProfileLine, LastPointIsInTheLastColumn)
{
    const auto line = Track{{1, 2, 3}}.line(ProfileValue::kElevation, 4);
    ASSERT_EQ(line.pieces.size(), 3);
    EXPECT_EQ(line.pieces[0].column, 0);
    EXPECT_EQ(line.pieces[1].column, 2);
    EXPECT_EQ(line.pieces[2].column, 3);
}

TEST(ProfileLine, IsInterruptedBetweenSegments)
{
    for (const auto value : {ProfileValue::kElevation, ProfileValue::kSpeed})
        EXPECT_EQ((joins(Track{{5, 6, 7, 8}}.breakBefore(2).line(value, 100))),
                  (std::vector<bool>{false, true, false, true}));
}

TEST(ProfileLine, MissingElevationInterruptsIt)
{
    EXPECT_EQ((joins(Track{{5, kNaN, 7, 8}}.line(ProfileValue::kElevation, 100))),
              (std::vector<bool>{false, false, true}));
}

TEST(ProfileLine, MissingSpeedDoesNotInterruptIt)
{
    EXPECT_EQ((joins(Track{{5, 6, 7}}.withoutTimeAt(1).line(ProfileValue::kSpeed, 100))),
              (std::vector<bool>{false, true}));
}

TEST(ProfileLine, MissingSpeedAfterABreakDoesNotCloseTheGap)
{
    const auto line =
        Track{{5, 6, 7, 8}}.breakBefore(2).withoutTimeAt(2).line(ProfileValue::kSpeed, 100);
    EXPECT_EQ(joins(line), (std::vector<bool>{false, true, false}));
}

TEST(NarrowedLine, IsTheLineOfFewerColumns)
{
    std::vector<double> elevations;
    for (int i = 0; i < 1000; ++i)
        elevations.push_back(500 + 100 * std::sin(i / 50.0));
    Track track{elevations};
    track.breakBefore(333);
    const auto narrow = narrowed(track.line(ProfileValue::kElevation, 800), 200);
    const auto direct = track.line(ProfileValue::kElevation, 200);
    ASSERT_EQ(narrow.pieces.size(), direct.pieces.size());
    EXPECT_EQ(narrow.points, direct.points);
    for (std::size_t i = 0; i < direct.pieces.size(); ++i) {
        EXPECT_EQ(narrow.pieces[i].column, direct.pieces[i].column) << i;
        EXPECT_EQ(narrow.pieces[i].lowest, direct.pieces[i].lowest) << i;
        EXPECT_EQ(narrow.pieces[i].highest, direct.pieces[i].highest) << i;
        EXPECT_EQ(narrow.pieces[i].last, direct.pieces[i].last) << i;
        EXPECT_EQ(narrow.pieces[i].isJoined, direct.pieces[i].isJoined) << i;
    }
}

TEST(NarrowedLine, IsNeverWider)
{
    const auto line = Track{{1, 2, 3}}.line(ProfileValue::kElevation, 4);
    EXPECT_EQ(narrowed(line, 5).columns, 4);
    EXPECT_EQ(narrowed(line, 4).columns, 4);
    EXPECT_EQ(narrowed(line, 3).columns, 3);
}

TEST(NarrowedLine, KeepsOnlyAFewGapsInOneColumn)
{
    Track track{std::vector<double>(1000, 5)};
    for (std::size_t i = 2; i < 1000; i += 2)
        track.breakBefore(i);
    const auto line = track.line(ProfileValue::kElevation, 10'000);
    EXPECT_EQ(line.pieces.size(), 1000);
    EXPECT_EQ(narrowed(line, 10).pieces.size(), 40);
}

TEST(RangeOf, ElevationsLeavesSomeRoom)
{
    const auto range =
        rangeOf(host::ProfileLine{.lowest = 100, .highest = 200}, ProfileValue::kElevation);
    EXPECT_NEAR(range.low, 92, 1e-9);
    EXPECT_NEAR(range.high, 214, 1e-9);
}

TEST(RangeOf, LessThanTwentyMetresLooksLevel)
{
    const auto sizeOf = [](double highest) {
        const auto range =
            rangeOf(host::ProfileLine{.lowest = 100, .highest = highest}, ProfileValue::kElevation);
        return range.high - range.low;
    };
    EXPECT_NEAR(sizeOf(100), sizeOf(120), 1e-9);
    EXPECT_GT(sizeOf(121), sizeOf(120) + 1);
}

TEST(RangeOf, SpeedsBeginsAtZeroAndSlowOnesLookSlow)
{
    const auto highOf = [](double highest) {
        const auto range =
            rangeOf(host::ProfileLine{.lowest = 0.1, .highest = highest}, ProfileValue::kSpeed);
        EXPECT_EQ(range.low, 0);
        return range.high;
    };
    EXPECT_NEAR(highOf(5), 6.1, 1e-9);
    EXPECT_EQ(highOf(0.2), highOf(1));
}

} // namespace
