// SPDX-License-Identifier: MIT

#include <gps/GPSPoint.h>
#include <gps/Value.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

namespace gps {
namespace {

TEST(GPSPoint, HasTheLayoutOfItsTypeCode)
{
    EXPECT_STREQ(kGPSPointTypeCode, "{?=dddqq}");
    EXPECT_EQ(sizeof(GPSPoint), 40U);
    EXPECT_EQ(offsetof(GPSPoint, latitude), 0U);
    EXPECT_EQ(offsetof(GPSPoint, longitude), 8U);
    EXPECT_EQ(offsetof(GPSPoint, altitude), 16U);
    EXPECT_EQ(offsetof(GPSPoint, time), 24U);
    EXPECT_EQ(offsetof(GPSPoint, reserved), 32U);
}

TEST(GPSPoint, StartsWithZeros)
{
    EXPECT_EQ(GPSPoint{}, (GPSPoint{0, 0, 0, 0, 0}));
}

TEST(GPSPoint, EqualityComparesEveryField)
{
    const GPSPoint point{1, 2, 3, 4, 5};
    EXPECT_EQ(point, (GPSPoint{1, 2, 3, 4, 5}));
    EXPECT_NE(point, (GPSPoint{0, 2, 3, 4, 5}));
    EXPECT_NE(point, (GPSPoint{1, 0, 3, 4, 5}));
    EXPECT_NE(point, (GPSPoint{1, 2, 0, 4, 5}));
    EXPECT_NE(point, (GPSPoint{1, 2, 3, 0, 5}));
    EXPECT_NE(point, (GPSPoint{1, 2, 3, 4, 0}));
}

TEST(GPSPoint, ABoxedPointIsUnchangedBitForBit)
{
    const GPSPoint points[] = {{-0.0, 0.1, 1e-320, -1, 1},
                               {std::nan("7"), -std::nan(""), HUGE_VAL, INT64_MIN, INT64_MAX}};
    for (const auto& point : points) {
        const Dictionary record{{kPointKey, point}};
        const Dictionary copy = record;
        ASSERT_NE(findPoint(copy), nullptr);
        EXPECT_EQ(*findPoint(copy), point);
        EXPECT_EQ(copy, record);
    }
}

} // namespace
} // namespace gps
