// SPDX-License-Identifier: MIT
// The C library knows the zone's rules.

#include "host/points/LocalTime.h"

#include "host/points/Points.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace host {
namespace {

std::int64_t offsetAt(std::int64_t time) noexcept
{
    const std::time_t seconds = time;
    std::tm local{};
    localtime_r(&seconds, &local);
    return local.tm_gmtoff;
}

// Between two times of different offsets, the first with the later one's. Precondition: there is
// one change between them.
std::int64_t changeBetween(std::int64_t before, std::int64_t after) noexcept
{
    const auto offset = offsetAt(after);
    while (after - before > 1) {
        const auto middle = before + (after - before) / 2;
        (offsetAt(middle) == offset ? after : before) = middle;
    }
    return after;
}

} // namespace

char* putLocalTime(char* at, std::int64_t time) noexcept
{
    const std::time_t seconds = time;
    std::tm local{};
    localtime_r(&seconds, &local);
    if (time + local.tm_gmtoff >= kEndOfTimestamps)
        local.tm_gmtoff = 0; // a year of five digits has no place
    at = TimestampText{}.put(at, time + local.tm_gmtoff, ' ');
    const auto minutes = static_cast<unsigned>(std::abs(local.tm_gmtoff) / 60);
    *at = local.tm_gmtoff < 0 ? '-' : '+';
    gps::putTwoDigits(at + 1, minutes / 60);
    at[3] = ':';
    gps::putTwoDigits(at + 4, minutes % 60);
    return at + 6;
}

// The offset is that of a day before or after: no zone changes twice within two days.
ClockTimes whenClocksShow(std::int64_t shown) noexcept
{
    constexpr std::int64_t kOneDay = 86400; // seconds
    const auto before = offsetAt(shown - kOneDay);
    const auto after = offsetAt(shown + kOneDay);
    const auto first = shown - before;
    const auto second = shown - after;
    const bool isFirst = offsetAt(first) == before;
    const bool isSecond = offsetAt(second) == after;
    if (isFirst && isSecond)
        return {std::min(first, second), std::max(first, second)};
    if (isFirst || isSecond)
        return isFirst ? ClockTimes{first, first} : ClockTimes{second, second};
    const auto change = changeBetween(shown - kOneDay, shown + kOneDay);
    return {change, change};
}

} // namespace host
