// SPDX-License-Identifier: MIT

#include "host/points/LocalTime.h"

#include <support/Variable.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <string>

namespace {

constexpr std::int64_t kWinter = 1201932000; // 2008-02-02 06:00:00
constexpr std::int64_t kSummer = 1218434400; // 2008-08-11 06:00:00

std::string localTime(const char* zone, std::int64_t time)
{
    const support::Variable variable{"TZ", zone};
    ::tzset();
    std::array<char, host::kMostOfLocalTime> text{};
    return {text.data(), host::putLocalTime(text.data(), time)};
}

TEST(LocalTime, FollowsTheZoneAndItsDaylightSavingTime)
{
    EXPECT_EQ(localTime("Europe/Zurich", kWinter), "2008-02-02 07:00:00+01:00");
    EXPECT_EQ(localTime("Europe/Zurich", kSummer), "2008-08-11 08:00:00+02:00");
    EXPECT_EQ(localTime("UTC", kSummer), "2008-08-11 06:00:00+00:00");
}

TEST(LocalTime, OffsetsMayBeWestAndHaveMinutes)
{
    EXPECT_EQ(localTime("America/Los_Angeles", kSummer), "2008-08-10 23:00:00-07:00");
    EXPECT_EQ(localTime("America/St_Johns", kSummer), "2008-08-11 03:30:00-02:30");
    EXPECT_EQ(localTime("Asia/Kathmandu", kSummer), "2008-08-11 11:45:00+05:45");
}

} // namespace
