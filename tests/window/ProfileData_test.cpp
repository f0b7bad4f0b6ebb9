// SPDX-License-Identifier: MIT

#include "host/window/profile/ProfileData.h"

#include "host/Numbers.h"

#include <gps/GPSPoint.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace {

using host::ProfileAxis;
using host::ProfileValue;
using support::kNaN;
using support::kTen;

host::ProfileData dataOf(std::vector<gps::GPSPoint> points)
{
    host::RecordSet records;
    records.tracks.push_back({{}, std::move(points), {}});
    return {std::make_shared<const host::RecordSet>(std::move(records)), 0};
}

TEST(ProfileData, OfNoPointsOrOneHasNothingToDraw)
{
    for (const auto& points :
         {std::vector<gps::GPSPoint>{}, std::vector<gps::GPSPoint>{{0, 0, 5, kTen, 0}}}) {
        const auto data = dataOf(points);
        EXPECT_FALSE(data.hasAxis(ProfileAxis::kDistance));
        EXPECT_FALSE(data.hasAxis(ProfileAxis::kTime));
        EXPECT_EQ(data.length(ProfileAxis::kDistance), 0);
        EXPECT_EQ(data.length(ProfileAxis::kTime), 0);
    }
}

TEST(ProfileData, OfTwoPointsHasBothAxes)
{
    const auto data = dataOf({{0, 0, 5, kTen, 0}, {0.001, 0, 6, kTen + 60, 0}});
    EXPECT_TRUE(data.hasAxis(ProfileAxis::kDistance));
    EXPECT_TRUE(data.hasAxis(ProfileAxis::kTime));
    EXPECT_NEAR(data.length(ProfileAxis::kDistance), 111.195, 0.001);
    EXPECT_EQ(data.length(ProfileAxis::kTime), 60);
    EXPECT_EQ(data.figures().seconds, 60);
    EXPECT_EQ(data.line(ProfileValue::kElevation, ProfileAxis::kTime).columns,
              host::ProfileData::kColumns);
}

TEST(ProfileData, WithoutTimesHasHeightsOverTheDistanceOnly)
{
    const auto data = dataOf({{0, 0, 5, 0, 0}, {0.001, 0, 6, 0, 0}});
    EXPECT_TRUE(data.hasAxis(ProfileAxis::kDistance));
    EXPECT_FALSE(data.hasAxis(ProfileAxis::kTime));
    EXPECT_TRUE(data.line(ProfileValue::kElevation, ProfileAxis::kDistance).canBeDrawn());
    EXPECT_FALSE(data.line(ProfileValue::kSpeed, ProfileAxis::kDistance).canBeDrawn());
}

TEST(ProfileData, WithoutHeightsHasSpeedsOnly)
{
    const auto data = dataOf({{0, 0, kNaN, kTen, 0}, {0.001, 0, kNaN, kTen + 60, 0}});
    EXPECT_FALSE(data.line(ProfileValue::kElevation, ProfileAxis::kDistance).canBeDrawn());
    EXPECT_TRUE(data.line(ProfileValue::kSpeed, ProfileAxis::kDistance).canBeDrawn());
    EXPECT_TRUE(std::isnan(data.figures().ascent));
}

TEST(ProfileData, ThatStandsStillHasATimeAxisOnly)
{
    const auto data = dataOf({{0, 0, 5, kTen, 0}, {0, 0, 6, kTen + 60, 0}});
    EXPECT_FALSE(data.hasAxis(ProfileAxis::kDistance));
    EXPECT_TRUE(data.hasAxis(ProfileAxis::kTime));
}

TEST(ProfileData, WhoseTimesRunBackwardHasNoTimeAxis)
{
    const auto data = dataOf({{0, 0, 5, kTen, 0}, {0.001, 0, 6, kTen - 60, 0}});
    EXPECT_TRUE(data.hasAxis(ProfileAxis::kDistance));
    EXPECT_FALSE(data.hasAxis(ProfileAxis::kTime)) << "it has no length";
}

} // namespace
