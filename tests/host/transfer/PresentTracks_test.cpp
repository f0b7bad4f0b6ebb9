// SPDX-License-Identifier: MIT

#include "host/transfer/PresentTracks.h"

#include "host/FakeDriver.h"
#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using gps::Array;
using gps::Dictionary;
using gps::GPSPoint;
using host::RecordCounts;
using Points = std::vector<GPSPoint>;

constexpr std::int64_t kNoon = 1'200'000'000;

Dictionary track(const Points& points)
{
    Array records;
    for (const auto& point : points)
        records.emplace_back(Dictionary{{"point", point}});
    return {{"name", "Walk"}, {"points", std::move(records)}};
}

class PresentTracks : public testing::Test {
protected:
    PresentTracks()
    {
        driver_.tracks = [this](gps::GPSOutputReceiver& status) {
            ++readings_;
            for (const auto& points : onDevice_) {
                status.newTrack({{"name", "Log"}});
                for (const auto& point : points)
                    status.trackPoint(point, {});
            }
        };
    }

    // Whether a track is recognised.
    [[nodiscard]] bool isPresent(const Points& points)
    {
        Dictionary data{{"track", Array{track(points)}}};
        const auto removed = host::removePresentTracks(data, *driver_.takeSnapshot());
        EXPECT_EQ(removed.tracks, data.contains("track") ? 0U : 1U);
        EXPECT_EQ(removed.trackPoints, removed.tracks * points.size());
        return removed.tracks > 0;
    }

    support::FakeFileDriver driver_;
    GPSPoint first_{46, 7, 500, kNoon, 0};
    GPSPoint second_{46.1, 7.1, 510, kNoon + 5, 0};
    std::vector<Points> onDevice_{{second_}, {first_, second_}};
    int readings_ = 0;
};

TEST_F(PresentTracks, TrackWithTheSamePointsIsRecognised)
{
    EXPECT_TRUE(isPresent({first_, second_}));
    EXPECT_TRUE(isPresent({second_}));
    EXPECT_EQ(readings_, 2) << "once for each send";
}

TEST_F(PresentTracks, TrackWithOtherPointsIsNot)
{
    EXPECT_FALSE(isPresent({first_}));
    EXPECT_FALSE(isPresent({second_, first_}));
    EXPECT_FALSE(isPresent({first_, second_, second_}));
    auto other = second_;
    other.latitude += 2.1 * support::kUnit;
    EXPECT_FALSE(isPresent({first_, other}));
    other = second_;
    other.altitude = 511;
    EXPECT_FALSE(isPresent({first_, other}));
    other = second_;
    ++other.time;
    EXPECT_FALSE(isPresent({first_, other}));
}

TEST_F(PresentTracks, WhatTheDeviceRoundsIsTheSame)
{
    second_.latitude += support::kUnit;
    second_.altitude = 510.9;
    EXPECT_TRUE(isPresent({first_, second_}));
}

TEST_F(PresentTracks, UnknownTimesAndAltitudesAreTheSame)
{
    onDevice_ = {{{46, 7, 0, 3600, 0}}}; // an hour of a day that is not known
    const auto unknown = support::kNaN;
    EXPECT_TRUE(isPresent({{46, 7, unknown, 0, 0}}));
    EXPECT_FALSE(isPresent({{46, 7, unknown, kNoon, 0}}));
}

TEST_F(PresentTracks, PointsThatNobodyCanStoreDoNotCount)
{
    Dictionary data{{"track", Array{track({first_, {97, 7, 0, kNoon, 0}, second_})}}};
    const auto removed = host::removePresentTracks(data, *driver_.takeSnapshot());
    EXPECT_EQ(removed, (RecordCounts{.tracks = 1, .trackPoints = 2}));
}

TEST_F(PresentTracks, OnlyPresentTracksAreRemoved)
{
    auto other = first_;
    other.latitude = 45;
    Dictionary data{{"track", Array{track({other}), track({second_}), 1}}, {"route", Array{}}};
    EXPECT_EQ(host::removePresentTracks(data, *driver_.takeSnapshot()),
              (RecordCounts{.tracks = 1, .trackPoints = 1}));
    EXPECT_EQ(data, (Dictionary{{"track", Array{track({other}), 1}}, {"route", Array{}}}));
}

TEST_F(PresentTracks, DeviceIsNotReadForDataWithoutTracks)
{
    Dictionary data{{"waypoint", Array{}}};
    EXPECT_TRUE(host::removePresentTracks(data, *driver_.takeSnapshot()).isEmpty());
    EXPECT_EQ(readings_, 0);
}

TEST_F(PresentTracks, EmptyTrackIsNeverPresent)
{
    onDevice_.clear();
    EXPECT_FALSE(isPresent({}));
}

} // namespace
