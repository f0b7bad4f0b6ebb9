// SPDX-License-Identifier: MIT

#include "host/points/LocalTime.h"

#include <support/Variable.h>

#include <gtest/gtest.h>

#include <array>
#include <chrono>
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

std::int64_t shownTime(int year, unsigned month, unsigned day, int hour, int minute)
{
    using namespace std::chrono;
    const sys_seconds time =
        sys_days{std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day}} +
        hours{hour} + minutes{minute};
    return time.time_since_epoch().count();
}

struct ShownTimes {
    std::string earliest;
    std::string latest;
};

ShownTimes timesOf(const char* zone, std::int64_t shown)
{
    const support::Variable variable{"TZ", zone};
    ::tzset();
    const auto times = host::whenClocksShow(shown);
    return {localTime(zone, times.earliest), localTime(zone, times.latest)};
}

TEST(LocalTime, IsUtcWhereItsYearWouldHaveFiveDigits)
{
    EXPECT_EQ(localTime("Asia/Kathmandu", 253402280099), "9999-12-31 23:59:59+05:45");
    EXPECT_EQ(localTime("Asia/Kathmandu", 253402280100), "9999-12-31 18:15:00+00:00");
    EXPECT_EQ(localTime("America/Lima", 253402300799), "9999-12-31 18:59:59-05:00");
}

TEST(LocalTime, ClocksShowMostTimesOnce)
{
    const auto times = timesOf("Europe/Zurich", shownTime(2008, 8, 11, 0, 0));
    EXPECT_EQ(times.earliest, "2008-08-11 00:00:00+02:00");
    EXPECT_EQ(times.latest, times.earliest);
    EXPECT_EQ(timesOf("Asia/Kathmandu", shownTime(2008, 2, 2, 23, 59)).latest,
              "2008-02-02 23:59:00+05:45");
}

TEST(LocalTime, ClocksThatArePutBackShowAnHourTwice)
{
    for (const int minute : {0, 59}) {
        const auto times = timesOf("Europe/Zurich", shownTime(2008, 10, 26, 2, minute));
        EXPECT_EQ(times.earliest.substr(19), "+02:00");
        EXPECT_EQ(times.latest.substr(19), "+01:00");
    }
    for (const auto shown : {shownTime(2008, 10, 26, 1, 59), shownTime(2008, 10, 26, 3, 0)}) {
        const auto times = timesOf("Europe/Zurich", shown);
        EXPECT_EQ(times.earliest, times.latest);
    }
}

TEST(LocalTime, TimesThatClocksSkipAreTheChange)
{
    const auto times = timesOf("Europe/Zurich", shownTime(2008, 3, 30, 2, 30));
    EXPECT_EQ(times.earliest, "2008-03-30 03:00:00+02:00");
    EXPECT_EQ(times.latest, times.earliest);
    // Here a day begins at one o'clock.
    EXPECT_EQ(timesOf("America/Santiago", shownTime(2023, 9, 3, 0, 0)).earliest,
              "2023-09-03 01:00:00-03:00");
}

} // namespace
