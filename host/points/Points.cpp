// SPDX-License-Identifier: MIT
// Timestamps are formatted digit by digit: map files hold one for each track point.

#include "host/points/Points.h"

#include <gps/NumberText.h>

#include <array>
#include <chrono>
#include <cmath>

namespace host {
namespace {

constexpr std::int64_t kFirstTimestamp = 315532800;     // 1980-01-01 00:00 UTC
constexpr std::int64_t kEndOfTimestamps = 253402300800; // 10000-01-01 00:00 UTC

void putTwoDigits(char* at, unsigned number) noexcept
{
    at[0] = static_cast<char>('0' + number / 10);
    at[1] = static_cast<char>('0' + number % 10);
}

} // namespace

bool hasTimestamp(const gps::GPSPoint& point) noexcept
{
    return point.time >= kFirstTimestamp && point.time < kEndOfTimestamps;
}

void appendDegrees(std::string& out, double degrees)
{
    gps::appendRounded(out, degrees);
}

void appendTimestamp(std::string& out, std::int64_t time, char separator)
{
    using namespace std::chrono;
    const sys_seconds timestamp{seconds{time}};
    const auto day = floor<days>(timestamp);
    const year_month_day date{day};
    const auto year = static_cast<unsigned>(static_cast<int>(date.year()));
    const auto inDay = static_cast<unsigned>((timestamp - day).count());
    std::array<char, 19> text{'0',       '0', '0', '0', '-', '0', '0', '-', '0', '0',
                              separator, '0', '0', ':', '0', '0', ':', '0', '0'};
    putTwoDigits(text.data(), year / 100);
    putTwoDigits(&text[2], year % 100);
    putTwoDigits(&text[5], static_cast<unsigned>(date.month()));
    putTwoDigits(&text[8], static_cast<unsigned>(date.day()));
    putTwoDigits(&text[11], inDay / 3600);
    putTwoDigits(&text[14], inDay / 60 % 60);
    putTwoDigits(&text[17], inDay % 60);
    out.append(text.data(), text.size());
}

bool isOnGlobe(const gps::GPSPoint& point) noexcept
{
    return std::abs(point.latitude) <= 90 && std::abs(point.longitude) <= 180; // false for NaN
}

} // namespace host
