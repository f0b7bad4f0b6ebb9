// SPDX-License-Identifier: MIT

#include "host/points/DevicePosition.h"

#include "host/Numbers.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace {

using host::DevicePosition;
using support::kNaN;
using support::kUnit;

DevicePosition positionAt(double latitude, double longitude)
{
    return DevicePosition::of({latitude, longitude, 0, 0, 0}).value();
}

TEST(DevicePosition, UnitIsAHundredThousandthOfAMinute)
{
    EXPECT_EQ(positionAt(46.5 + 0.49 * kUnit, 7), positionAt(46.5, 7));
    EXPECT_NE(positionAt(46.5 + 0.51 * kUnit, 7), positionAt(46.5, 7));
    EXPECT_EQ(positionAt(46.5, 7 - 0.49 * kUnit), positionAt(46.5, 7));
    EXPECT_NE(positionAt(46.5, 7 - 0.51 * kUnit), positionAt(46.5, 7));
}

TEST(DevicePosition, MatchesUpToOneUnitOnEachAxis)
{
    for (const double off : {-1.0, 0.0, 1.0}) {
        EXPECT_TRUE(positionAt(46.5, -7.25).matches(positionAt(46.5 + off * kUnit, -7.25))) << off;
        EXPECT_TRUE(positionAt(46.5, -7.25).matches(positionAt(46.5, -7.25 + off * kUnit))) << off;
        EXPECT_TRUE(
            positionAt(46.5, -7.25).matches(positionAt(46.5 - off * kUnit, -7.25 + off * kUnit)))
            << off;
    }
    for (const double off : {-2.0, 2.0}) {
        EXPECT_FALSE(positionAt(46.5, -7.25).matches(positionAt(46.5 + off * kUnit, -7.25))) << off;
        EXPECT_FALSE(positionAt(46.5, -7.25).matches(positionAt(46.5, -7.25 + off * kUnit))) << off;
    }
}

TEST(DevicePosition, OnlyValidCoordinatesHaveOne)
{
    EXPECT_TRUE(DevicePosition::of({90, 180, 0, 0, 0}));
    EXPECT_TRUE(DevicePosition::of({-90, -180, 0, 0, 0}));
    EXPECT_FALSE(DevicePosition::of({90.0000001, 0, 0, 0, 0}));
    EXPECT_FALSE(DevicePosition::of({0, -180.0000001, 0, 0, 0}));
    EXPECT_FALSE(DevicePosition::of({kNaN, 0, 0, 0, 0}));
    EXPECT_FALSE(DevicePosition::of({1e300, 0, 0, 0, 0}));
}

TEST(DevicePosition, SidesOfTheDateLineDoNotMatch)
{
    EXPECT_FALSE(positionAt(0, 180).matches(positionAt(0, -180)));
}

TEST(DevicePosition, KeysOfDifferentPositionsDiffer)
{
    // The outermost longitudes of two neighbouring latitudes are where keys would collide first.
    std::unordered_set<std::int64_t> keys;
    for (const double latitude : {-90.0, -kUnit, 0.0, kUnit, 90.0}) {
        for (const double longitude : {-180.0, -kUnit, 0.0, kUnit, 180.0}) {
            for (const auto key : positionAt(latitude, longitude).matchingKeys())
                keys.insert(key);
        }
    }
    constexpr std::size_t kLatitudes = 3 + 5 + 3; // the three in the middle share neighbours
    EXPECT_EQ(keys.size(), kLatitudes * kLatitudes);
}

TEST(DevicePosition, MatchingKeysAreThoseOfTheMatchesAndItsOwnComesFirst)
{
    const auto position = positionAt(46.5, -7.25);
    const auto keys = position.matchingKeys();
    EXPECT_EQ(keys.front(), position.key());
    const std::unordered_set<std::int64_t> distinct{keys.begin(), keys.end()};
    EXPECT_EQ(distinct.size(), 9U);
    EXPECT_TRUE(distinct.contains(positionAt(46.5 - kUnit, -7.25 + kUnit).key()));
    EXPECT_FALSE(distinct.contains(positionAt(46.5 - 2 * kUnit, -7.25).key()));
}

TEST(DevicePosition, AltitudeIsCutToWholeMetresAndAnUnknownOneIsZero)
{
    const auto stored = [](double altitude) {
        return host::deviceAltitude({.altitude = altitude});
    };
    EXPECT_EQ(stored(123.9), 123);
    EXPECT_EQ(stored(-12.7), -12);
    EXPECT_EQ(stored(kNaN), 0);
}

TEST(DevicePosition, PointsAreTheSameIfPositionAndAltitudeAre)
{
    const gps::GPSPoint point{46, 7, 500.2, 1, 0};
    EXPECT_TRUE(host::isSameOnDevice(point, {46 + kUnit, 7 - kUnit, 500.9, 2, 3}));
    EXPECT_FALSE(host::isSameOnDevice(point, {46 + 2 * kUnit, 7, 500.2, 1, 0}));
    EXPECT_FALSE(host::isSameOnDevice(point, {46, 7, 501, 1, 0}));
    EXPECT_FALSE(host::isSameOnDevice({97, 7, 0, 0, 0}, {97, 7, 0, 0, 0})) << "not on the globe";
}

TEST(DevicePosition, TimesFrom1980To2079AreStored)
{
    const auto stored = [](std::int64_t time) { return host::deviceTime({.time = time}); };
    EXPECT_EQ(stored(315532799), 0);
    EXPECT_EQ(stored(315532800), 315532800);
    EXPECT_EQ(stored(3471292799), 3471292799);
    EXPECT_EQ(stored(3471292800), 0);
    EXPECT_EQ(stored(-1), 0);
}

} // namespace
