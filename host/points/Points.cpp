// SPDX-License-Identifier: MIT
// Timestamps are formatted digit by digit: map files hold one for each track point.

#include "host/points/Points.h"

#include <chrono>
#include <cmath>
#include <cstring>

namespace host {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kFirstTimestamp = 315532800; // 1980-01-01 00:00 UTC

// Writes "YYYY-MM-DD". @param day  since 1970-01-01
void putDate(char* at, std::int64_t day) noexcept
{
    const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{day}}};
    const auto year = static_cast<unsigned>(static_cast<int>(date.year()));
    gps::putTwoDigits(at, year / 100);
    gps::putTwoDigits(&at[2], year % 100);
    at[4] = '-';
    gps::putTwoDigits(&at[5], static_cast<unsigned>(date.month()));
    at[7] = '-';
    gps::putTwoDigits(&at[8], static_cast<unsigned>(date.day()));
}

} // namespace

bool hasTimestamp(const gps::GPSPoint& point) noexcept
{
    return point.time >= kFirstTimestamp && point.time < kEndOfTimestamps;
}

bool isElevationStated(const gps::GPSPoint& point) noexcept
{
    return std::abs(point.altitude) <= kMostElevation; // false for NaN
}

char* putDegrees(char* at, double degrees) noexcept
{
    return gps::putRounded(at, degrees);
}

char* TimestampText::put(char* at, std::int64_t time, char separator) noexcept
{
    const auto day = time / kSecondsPerDay;
    if (day != day_) {
        day_ = day;
        putDate(date_.data(), day);
    }
    const auto inDay = static_cast<unsigned>(time % kSecondsPerDay);
    std::memcpy(at, date_.data(), date_.size());
    at[10] = separator;
    gps::putTwoDigits(&at[11], inDay / 3600);
    at[13] = ':';
    gps::putTwoDigits(&at[14], inDay / 60 % 60);
    at[16] = ':';
    gps::putTwoDigits(&at[17], inDay % 60);
    return at + kSize;
}

void appendTimestamp(std::string& out, std::int64_t time, char separator)
{
    std::array<char, TimestampText::kSize> text;
    out.append(text.data(), TimestampText{}.put(text.data(), time, separator));
}

bool isOnGlobe(const gps::GPSPoint& point) noexcept
{
    return std::abs(point.latitude) <= 90 && std::abs(point.longitude) <= 180; // false for NaN
}

} // namespace host
