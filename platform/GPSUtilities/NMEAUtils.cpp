// SPDX-License-Identifier: MIT
// Coordinates are written by way of integers of 0.00001 minute, so that rounding never yields 60
// minutes.

#include "NMEAUtils.h"

#include <gps/NumberText.h>

#include <chrono>
#include <cmath>

namespace gps::NMEAUtils {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kFirstWritableTime = 315532800; // 1980-01-01 00:00:00
constexpr std::int64_t kLastWritableTime = 3471292799; // 2079-12-31 23:59:59
constexpr std::int64_t kUnitsPerMinute = 100000;       // of a written coordinate's last decimal
constexpr std::int64_t kUnitsPerDegree = 60 * kUnitsPerMinute;

/// The value of a hexadecimal digit; 16 for any other character.
constexpr unsigned hexadecimalDigit(char c) noexcept
{
    if (isDigit(c))
        return static_cast<unsigned>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<unsigned>(c - 'A') + 10;
    if (c >= 'a' && c <= 'f')
        return static_cast<unsigned>(c - 'a') + 10;
    return 16;
}

constexpr std::size_t kTail = 3; // "*hh"

/// @param line  without its line end
constexpr bool isFramed(std::string_view line) noexcept
{
    return line.size() > 1 + kTail && line.front() == '$' && line[line.size() - kTail] == '*' &&
           hexadecimalDigit(line[line.size() - 2]) < 16 &&
           hexadecimalDigit(line[line.size() - 1]) < 16;
}

/// The checksum of a body, and whether all its bytes are allowed. No branch leaves the loop, so
/// that compilers can vectorize it.
struct BodyCheck {
    std::uint8_t checksum = 0;
    bool valid = true;
};

BodyCheck checkBody(std::string_view body) noexcept
{
    std::uint8_t checksum = 0;
    std::uint8_t bad = 0;
    for (const char c : body) {
        const auto byte = static_cast<std::uint8_t>(c);
        checksum ^= byte;
        bad |= static_cast<std::uint8_t>((byte < 0x20) | (byte > 0x7E) | (byte == '$') |
                                         (byte == '*'));
    }
    return {checksum, bad == 0};
}

/// The two digits at an index. Precondition: both are digits.
constexpr int twoDigits(std::string_view text, std::size_t at) noexcept
{
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

bool beginsWithSixDigits(std::string_view text) noexcept
{
    if (text.size() < 6)
        return false;
    for (std::size_t i = 0; i < 6; ++i) {
        if (!isDigit(text[i]))
            return false;
    }
    return true;
}

/// Days since 1970-01-01 for "DDMMYY"; nullopt if the date does not exist.
std::optional<std::int64_t> dayOf(std::string_view date) noexcept
{
    if (date.size() != 6 || !beginsWithSixDigits(date))
        return std::nullopt;
    const int year = twoDigits(date, 4);
    const std::chrono::year_month_day day{
        std::chrono::year{year < 80 ? 2000 + year : 1900 + year},
        std::chrono::month{static_cast<unsigned>(twoDigits(date, 2))},
        std::chrono::day{static_cast<unsigned>(twoDigits(date, 0))}};
    if (!day.ok())
        return std::nullopt;
    return std::chrono::sys_days{day}.time_since_epoch().count();
}

/// Seconds since midnight for "HHMMSS", with optional decimals; nullopt if it is not a time.
std::optional<std::int64_t> secondOfDay(std::string_view time) noexcept
{
    if (!beginsWithSixDigits(time))
        return std::nullopt;
    if (time.size() > 6) {
        if (time[6] != '.')
            return std::nullopt;
        for (const char c : time.substr(7)) {
            if (!isDigit(c))
                return std::nullopt;
        }
    }
    const int hour = twoDigits(time, 0);
    const int minute = twoDigits(time, 2);
    const int second = twoDigits(time, 4);
    if (hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return hour * 3600 + minute * 60 + second;
}

/// Seconds since midnight of a time, also before 1970.
constexpr std::int64_t secondsSinceMidnight(std::int64_t time) noexcept
{
    const std::int64_t rest = time % kSecondsPerDay;
    return rest < 0 ? rest + kSecondsPerDay : rest;
}

} // namespace

bool isFramedNMEASentence(std::string_view line) noexcept
{
    return isFramed(withoutLineEnd(line));
}

std::optional<std::string_view> checkAndTrimNMEASentence(std::string_view line) noexcept
{
    line = withoutLineEnd(line);
    if (!isFramed(line))
        return std::nullopt;
    const unsigned high = hexadecimalDigit(line[line.size() - 2]);
    const unsigned low = hexadecimalDigit(line[line.size() - 1]);
    const std::string_view body = line.substr(1, line.size() - 1 - kTail);
    const BodyCheck check = checkBody(body);
    if (!check.valid || check.checksum != high * 16 + low)
        return std::nullopt;
    return body;
}

std::uint8_t checksumFromSentence(std::string_view body) noexcept
{
    return checkBody(body).checksum;
}

std::string addChecksumToNMEASentence(std::string_view body)
{
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    const std::uint8_t checksum = checksumFromSentence(body);
    std::string sentence;
    sentence.reserve(body.size() + 4);
    sentence.append(1, '$').append(body).append(1, '*');
    sentence += kDigits[checksum >> 4];
    sentence += kDigits[checksum & 15];
    return sentence;
}

double convertNMEADegreesMinutes(std::string_view degreesMinutes,
                                 std::string_view direction) noexcept
{
    const double number = leadingNumber(degreesMinutes).value_or(0);
    const double whole = std::trunc(number / 100);
    const double degrees = whole + (number - whole * 100) / 60;
    // Subtracted instead of negated, so that zero never has a minus.
    return direction == "S" || direction == "W" ? 0 - degrees : degrees;
}

std::optional<CoordinateText> convertDegreesToNMEADegreesMinutes(double degrees, bool asLatitude)
{
    const double size = std::fabs(degrees);
    if (!(size <= (asLatitude ? 90.0 : 180.0))) // also refuses a NaN
        return std::nullopt;
    const std::int64_t units = std::llround(size * static_cast<double>(kUnitsPerDegree));
    const bool negative = degrees < 0 && units != 0;

    CoordinateText text;
    appendPadded(text.degreesMinutes, units / kUnitsPerDegree, asLatitude ? 2 : 3);
    appendPadded(text.degreesMinutes, units % kUnitsPerDegree / kUnitsPerMinute, 2);
    text.degreesMinutes += '.';
    appendPadded(text.degreesMinutes, units % kUnitsPerMinute, 5);
    text.direction = asLatitude ? (negative ? 'S' : 'N') : (negative ? 'W' : 'E');
    return text;
}

std::int64_t convertNMEADate(std::string_view date, std::string_view time) noexcept
{
    const auto day = dayOf(date);
    const auto second = secondOfDay(time);
    return day && second ? *day * kSecondsPerDay + *second : 0;
}

std::int64_t updateNMEADate(std::int64_t previous, std::string_view time) noexcept
{
    const auto second = secondOfDay(time);
    if (!second)
        return previous;
    // The previous value may be any number: the addition must not overflow.
    std::int64_t updated = 0;
    return __builtin_add_overflow(previous, *second - secondsSinceMidnight(previous), &updated)
               ? previous
               : updated;
}

DateTimeText makeNMEADateFrom(std::int64_t time)
{
    if (time < kFirstWritableTime || time > kLastWritableTime)
        return {};
    const std::chrono::year_month_day day{
        std::chrono::sys_days{std::chrono::days{time / kSecondsPerDay}}};
    const std::int64_t second = secondsSinceMidnight(time);

    DateTimeText text;
    appendPadded(text.date, static_cast<unsigned>(day.day()), 2);
    appendPadded(text.date, static_cast<unsigned>(day.month()), 2);
    appendPadded(text.date, static_cast<int>(day.year()) % 100, 2);
    appendPadded(text.time, second / 3600, 2);
    appendPadded(text.time, second / 60 % 60, 2);
    appendPadded(text.time, second % 60, 2);
    text.time += ".00";
    return text;
}

} // namespace gps::NMEAUtils
