// SPDX-License-Identifier: MIT

#include <host/places/PlaceTime.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

std::string timeIn(std::string_view zone, std::int64_t time)
{
    return host::timeInZone(time, zone);
}

constexpr std::int64_t kSpring = 1711846800; // 2024-03-31 01:00 UTC

TEST(PlaceTime, FollowsDaylightSavingTimeToTheSecond)
{
    EXPECT_EQ(timeIn("Europe/Zurich", kSpring - 1), "2024-03-31 01:59:59");
    EXPECT_EQ(timeIn("Europe/Zurich", kSpring), "2024-03-31 03:00:00");
}

TEST(PlaceTime, HasTheDayThatItWasThere)
{
    EXPECT_EQ(timeIn("Pacific/Kiritimati", kSpring), "2024-03-31 15:00:00");
    EXPECT_EQ(timeIn("Pacific/Pago_Pago", kSpring), "2024-03-30 14:00:00");
}

TEST(PlaceTime, IsUtcWithoutAZoneAndInAnUnknownOne)
{
    for (const auto* zone : {"", "Europe/Atlantis", "../../etc/passwd"}) {
        EXPECT_EQ(timeIn(zone, kSpring), "2024-03-31 01:00:00") << zone;
        EXPECT_EQ(host::zoneTitle(zone, kSpring), "UTC") << zone;
    }
}

TEST(PlaceTime, IsEmptyWithoutATime)
{
    EXPECT_EQ(host::timeInZone(std::nullopt, "Europe/Zurich"), "");
}

TEST(PlaceTime, StaysWithinYearsOfFourDigits)
{
    constexpr std::int64_t kLast = 253402300799; // 9999-12-31 23:59:59 UTC
    EXPECT_EQ(timeIn("Pacific/Auckland", kLast - 13 * 3600), "9999-12-31 23:59:59");
    EXPECT_EQ(timeIn("Pacific/Auckland", kLast), "9999-12-31 23:59:59");
    EXPECT_EQ(timeIn("America/New_York", 315532800), "1979-12-31 19:00:00"); // the first timestamp
}

TEST(PlaceTime, ZonesAreNamedAfterTheirTown)
{
    EXPECT_EQ(host::zoneTitle("Pacific/Auckland", kSpring), "Auckland");
    EXPECT_EQ(host::zoneTitle("America/Argentina/Buenos_Aires", kSpring), "Buenos Aires");
}

} // namespace
