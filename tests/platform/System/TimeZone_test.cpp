// SPDX-License-Identifier: MIT

#include <platform/System/TimeZone.h>

#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <string>

namespace gps {
namespace {

constexpr std::int64_t kSummerTimeOf2024 = 1711846800; // 2024-03-31 01:00 UTC
constexpr std::int64_t kWinterTimeOf2024 = 1729990800; // 2024-10-27 01:00 UTC

TEST(TimeZone, DaylightSavingCountsFromItsFirstToItsLastSecond)
{
    EXPECT_EQ(secondsFromGMT("Europe/Zurich", kSummerTimeOf2024 - 1), 3600);
    EXPECT_EQ(secondsFromGMT("Europe/Zurich", kSummerTimeOf2024), 7200);
    EXPECT_EQ(secondsFromGMT("Europe/Zurich", kWinterTimeOf2024 - 1), 7200);
    EXPECT_EQ(secondsFromGMT("Europe/Zurich", kWinterTimeOf2024), 3600);
}

TEST(TimeZone, ZonesWestOfGreenwichAreNegativeAndHalfHoursAreKept)
{
    EXPECT_EQ(secondsFromGMT("America/New_York", kSummerTimeOf2024), -4 * 3600);
    EXPECT_EQ(secondsFromGMT("Asia/Kolkata", 0), 5 * 3600 + 1800);
    EXPECT_EQ(secondsFromGMT("UTC", kSummerTimeOf2024), 0);
    EXPECT_EQ(secondsFromGMT("Etc/GMT+5", 0), -5 * 3600);
}

TEST(TimeZone, InstantsBeyondTheTablesHaveAnOffset)
{
    EXPECT_EQ(secondsFromGMT("Europe/Zurich", 4'102'444'800), 3600); // 2100-01-01
    for (const auto time :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        const auto offset = secondsFromGMT("Europe/Zurich", time);
        ASSERT_TRUE(offset);
        EXPECT_LE(std::abs(*offset), 86400);
    }
}

TEST(TimeZone, AnInvalidNameHasNoOffset)
{
    const std::string names[] = {"",
                                 "Nowhere",
                                 "Europe",
                                 "Europe/",
                                 "/etc/localtime",
                                 "/usr/share/zoneinfo/UTC",
                                 "../zoneinfo/UTC",
                                 "Europe/../UTC",
                                 ":UTC",
                                 "file:UTC",
                                 "file:/etc/localtime",
                                 "libc:localtime",
                                 "libc:UTC",
                                 "Fixed/UTC+01:00:00",
                                 "UTC ",
                                 "tzdata.zi",
                                 std::string{"UTC\0", 4},
                                 std::string(10'000, 'A')};
    for (const auto& name : names)
        EXPECT_EQ(secondsFromGMT(name, 0), std::nullopt) << name;
}

TEST(TimeZone, NowIsTheSystemsTime)
{
    const auto before = std::time(nullptr);
    const auto now = unixTimeNow();
    EXPECT_LE(before - 1, now); // time() may read a coarser clock
    EXPECT_LE(now, std::time(nullptr) + 1);
}

} // namespace
} // namespace gps
