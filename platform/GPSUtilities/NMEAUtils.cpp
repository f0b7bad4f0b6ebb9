// SPDX-License-Identifier: MIT
// Coordinates are written by way of integers of 0.00001 minute, so that rounding never yields 60
// minutes.

#include "NMEAUtils.h"

#include <gps/EightBytes.h>
#include <gps/NumberText.h>

#include <array>
#include <bit>
#include <chrono>
#include <cmath>

namespace gps::NMEAUtils {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::uint32_t kUnitsPerMinute = 100000; // of a written coordinate's last decimal
constexpr std::uint32_t kUnitsPerDegree = 60 * kUnitsPerMinute;

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

/// The checksum of a body, and whether all its bytes are allowed.
struct BodyCheck {
    std::uint8_t checksum = 0;
    bool valid = true;
};

/// Not zero if a byte is below 0x20, above 0x7E, "$" or "*". Only the lowest bit that is set means
/// something: borrows and carries of a bad byte reach those above it.
constexpr std::uint64_t forbiddenIn(std::uint64_t word) noexcept
{
    const auto matches = [word](char c) {
        const std::uint64_t other = word ^ repeated(static_cast<std::uint8_t>(c));
        return (other - repeated(1)) & ~other;
    };
    return ((word - repeated(0x20)) | (word + repeated(1)) | word | matches('$') | matches('*')) &
           repeated(0x80);
}

/// The "exclusive or" of the eight bytes of a word.
constexpr std::uint8_t folded(std::uint64_t word) noexcept
{
    word ^= word >> 32;
    word ^= word >> 16;
    return static_cast<std::uint8_t>(word ^ word >> 8);
}

BodyCheck checkShortBody(std::string_view body) noexcept
{
    // Spaces are allowed, and an even number of them does not change the checksum.
    std::array<char, 8> text;
    text.fill(' ');
    body.copy(text.data(), text.size());
    const std::uint64_t word = readEight(text.data());
    const auto padding = static_cast<std::uint8_t>(body.size() % 2 == 0 ? 0 : ' ');
    return {static_cast<std::uint8_t>(folded(word) ^ padding), forbiddenIn(word) == 0};
}

BodyCheck checkBody(std::string_view body) noexcept
{
    if (body.size() < 8)
        return checkShortBody(body);
    std::uint64_t checksum = 0;
    std::uint64_t forbidden = 0;
    std::size_t i = 0;
    for (; i + 8 <= body.size(); i += 8) {
        const std::uint64_t word = readEight(body.data() + i);
        checksum ^= word;
        forbidden |= forbiddenIn(word);
    }
    if (i < body.size()) {
        // The last eight bytes, of which the first ones are counted already.
        const std::uint64_t word = readEight(body.data() + body.size() - 8);
        checksum ^= word >> (8 * (8 - (body.size() - i)));
        forbidden |= forbiddenIn(word);
    }
    return {folded(checksum), forbidden == 0};
}

/// @param number  degrees * 100 + minutes
double degreesOf(double number) noexcept
{
    const double whole = std::trunc(number / 100);
    return whole + (number - whole * 100) / 60;
}

/// What degreesOf() returns for the number in a text as receivers write it: up to seven digits, a
/// point and up to seven decimals, eight characters at least. nullopt for any other text.
///
/// So few digits make exact doubles, and number / 100 is never rounded up to an integer: the whole
/// degrees are those of the integer part.
std::optional<double> quickDegrees(std::string_view text) noexcept
{
    if (text.size() < 8)
        return std::nullopt;
    const std::uint64_t first = readEight(text.data());
    const auto point = static_cast<std::size_t>(std::countr_zero(matchesIn(first, '.'))) / 8;
    const std::size_t decimals = text.size() - point - 1;
    if (point == 0 || point == 8 || decimals == 0 || decimals > 7)
        return std::nullopt;
    // Digits at the high end of their words, zeros below them.
    const std::uint64_t last = readEight(text.data() + text.size() - 8);
    const std::uint64_t before = (first ^ repeated('0')) << (8 * (8 - point));
    const std::uint64_t behind =
        (last ^ repeated('0')) & (~std::uint64_t{0} << (8 * (8 - decimals)));
    if (!areDigitValues(before) || !areDigitValues(behind))
        return std::nullopt;
    const double power = kPowersOfTen[decimals];
    const std::uint32_t integer = numberFromDigitValues(before);
    const double number = (integer * power + numberFromDigitValues(behind)) / power;
    const std::uint32_t whole = integer / 100;
    return whole + (number - whole * 100) / 60;
}

bool isLetter(std::string_view text, char letter) noexcept
{
    return text.size() == 1 && text.front() == letter;
}

/// Rounds to whole units, halves up. Precondition: the value is between 0 and 180.
std::uint32_t nearestUnits(double degrees) noexcept
{
    const double units = degrees * kUnitsPerDegree;
    const auto whole = static_cast<std::uint32_t>(units);
    return whole + (units - whole >= 0.5 ? 1 : 0);
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
    std::string sentence;
    sentence.reserve(1 + body.size() + kTail);
    sentence.append(1, '$').append(body);
    appendNMEAChecksum(sentence, 1);
    return sentence;
}

void appendNMEAChecksum(std::string& text, std::size_t body)
{
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    const std::uint8_t checksum = checksumFromSentence(std::string_view{text}.substr(body));
    const std::array tail{'*', kDigits[checksum >> 4], kDigits[checksum & 15]};
    static_assert(tail.size() == kTail);
    text.append(tail.data(), tail.size());
}

double convertNMEADegreesMinutes(std::string_view degreesMinutes,
                                 std::string_view direction) noexcept
{
    const auto size = quickDegrees(degreesMinutes);
    const double degrees = size ? *size : degreesOf(leadingNumber(degreesMinutes).value_or(0));
    // Subtracted instead of negated, so that zero never has a minus.
    return isLetter(direction, 'S') || isLetter(direction, 'W') ? 0 - degrees : degrees;
}

std::optional<CoordinateText> convertDegreesToNMEADegreesMinutes(double degrees, bool asLatitude)
{
    if (!hasNMEACoordinate(degrees, asLatitude))
        return std::nullopt;
    std::array<char, kLongestNMEACoordinate> text;
    char* const end = putNMEACoordinate(text.data(), degrees, asLatitude);
    return CoordinateText{{text.data(), end - 2}, end[-1]};
}

char* putNMEACoordinate(char* at, double degrees, bool asLatitude) noexcept
{
    const std::uint32_t units = nearestUnits(std::fabs(degrees));
    const std::uint32_t whole = units / kUnitsPerDegree;
    const std::uint32_t rest = units % kUnitsPerDegree;
    const std::uint32_t fraction = rest % kUnitsPerMinute;
    const bool negative = degrees < 0 && units != 0;

    if (!asLatitude)
        *at++ = static_cast<char>('0' + whole / 100);
    putTwoDigits(at, whole % 100);
    putTwoDigits(at + 2, rest / kUnitsPerMinute);
    at[4] = '.';
    at[5] = static_cast<char>('0' + fraction / 10000);
    putTwoDigits(at + 6, fraction / 100 % 100);
    putTwoDigits(at + 8, fraction % 100);
    at[10] = ',';
    at[11] = asLatitude ? (negative ? 'S' : 'N') : (negative ? 'W' : 'E');
    return at + 12;
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

bool putNMEADate(char* date, char* time, std::int64_t timestamp) noexcept
{
    if (!hasNMEADate(timestamp))
        return false;
    const std::chrono::year_month_day day{
        std::chrono::sys_days{std::chrono::days{timestamp / kSecondsPerDay}}};
    const auto second = static_cast<unsigned>(timestamp % kSecondsPerDay);
    putTwoDigits(date, static_cast<unsigned>(day.day()));
    putTwoDigits(date + 2, static_cast<unsigned>(day.month()));
    putTwoDigits(date + 4, static_cast<unsigned>(static_cast<int>(day.year()) % 100));
    putTwoDigits(time, second / 3600);
    putTwoDigits(time + 2, second / 60 % 60);
    putTwoDigits(time + 4, second % 60);
    constexpr std::string_view kHundredths = ".00";
    kHundredths.copy(time + 6, kHundredths.size());
    return true;
}

DateTimeText makeNMEADateFrom(std::int64_t time)
{
    std::array<char, kNMEADateSize> date;
    std::array<char, kNMEATimeSize> timeOfDay;
    if (!putNMEADate(date.data(), timeOfDay.data(), time))
        return {};
    return {{date.data(), date.size()}, {timeOfDay.data(), timeOfDay.size()}};
}

} // namespace gps::NMEAUtils
