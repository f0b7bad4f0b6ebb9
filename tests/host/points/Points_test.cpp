// SPDX-License-Identifier: MIT

#include "host/points/Points.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace {

using support::kNaN;

std::string timestamp(std::int64_t time)
{
    std::string out;
    host::appendTimestamp(out, time, 'T');
    return out;
}

TEST(Points, TimestampsBeginIn1980AndEndWithTheYear9999)
{
    EXPECT_FALSE(host::hasTimestamp({0, 0, 0, 0, 0}));
    EXPECT_FALSE(host::hasTimestamp({0, 0, 0, 315532799, 0}));
    EXPECT_TRUE(host::hasTimestamp({0, 0, 0, 315532800, 0}));
    EXPECT_TRUE(host::hasTimestamp({0, 0, 0, 253402300799, 0}));
    EXPECT_FALSE(host::hasTimestamp({0, 0, 0, 253402300800, 0}));
}

TEST(Points, ElevationsAreStatedUpTo100000KilometresEitherWay)
{
    const auto isStated = [](double metres) {
        return host::isElevationStated({0, 0, metres, 0, 0});
    };
    EXPECT_TRUE(isStated(0));
    EXPECT_TRUE(isStated(1e8));
    EXPECT_TRUE(isStated(-1e8));
    EXPECT_FALSE(isStated(std::nextafter(1e8, 2e8)));
    EXPECT_FALSE(isStated(-1.1e8));
    EXPECT_FALSE(isStated(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(isStated(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Points, TimestampsAreWrittenInUtc)
{
    EXPECT_EQ(timestamp(315532800), "1980-01-01T00:00:00");
    EXPECT_EQ(timestamp(951782399), "2000-02-28T23:59:59");
    EXPECT_EQ(timestamp(951782400), "2000-02-29T00:00:00");
    EXPECT_EQ(timestamp(253402300799), "9999-12-31T23:59:59");
}

TEST(Points, TimestampsOfOneObjectChangeTheirDateAtMidnight)
{
    host::TimestampText times;
    std::array<char, host::TimestampText::kSize> text;
    const auto put = [&](std::int64_t time) {
        return std::string{text.data(), times.put(text.data(), time, ' ')};
    };
    EXPECT_EQ(put(951782399), "2000-02-28 23:59:59");
    EXPECT_EQ(put(951782400), "2000-02-29 00:00:00");
    EXPECT_EQ(put(951782401), "2000-02-29 00:00:01");
    EXPECT_EQ(put(951782399), "2000-02-28 23:59:59") << "time may run backward";
}

TEST(Points, DegreesHaveNineDecimals)
{
    std::array<char, host::kMostOfDegrees> text;
    const auto put = [&](double degrees) {
        return std::string{text.data(), host::putDegrees(text.data(), degrees)};
    };
    EXPECT_EQ(put(46.5), "46.5");
    EXPECT_EQ(put(-179.123456789), "-179.123456789");
    EXPECT_EQ(put(0.0000000004), "0");
}

TEST(Points, CoordinatesAreValidUpTo90And180Degrees)
{
    const auto isOnGlobe = [](double latitude, double longitude) {
        return host::isOnGlobe({latitude, longitude, 0, 0, 0});
    };
    EXPECT_TRUE(isOnGlobe(90, 180));
    EXPECT_TRUE(isOnGlobe(-90, -180));
    EXPECT_FALSE(isOnGlobe(90.0000001, 0));
    EXPECT_FALSE(isOnGlobe(-90.0000001, 0));
    EXPECT_FALSE(isOnGlobe(0, 180.0000001));
    EXPECT_FALSE(isOnGlobe(0, -180.0000001));
    EXPECT_FALSE(isOnGlobe(kNaN, 0));
    EXPECT_FALSE(isOnGlobe(0, kNaN));
}

} // namespace
