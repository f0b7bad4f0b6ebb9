// SPDX-License-Identifier: MIT
// Accepts the strict profile, and what other programs write instead. Each take function removes
// what it has read from the front of the text.

#include "host/formats/GpxTime.h"

#include "host/base/XmlText.h"

#include <gps/NumberText.h>

#include <chrono>
#include <cstddef>

namespace host {
namespace {

constexpr int kMaxOffset = 14 * 60; // minutes; the schema's own limit

bool take(std::string_view& text, char c) noexcept
{
    const bool isThere = !text.empty() && text.front() == c;
    text.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

// Reads a number of exactly `count` digits. @return  -1 if they are not there
int takeDigits(std::string_view& text, std::size_t count) noexcept
{
    if (text.size() < count)
        return -1;
    int number = 0;
    for (const char c : text.substr(0, count)) {
        if (!gps::isDigit(c))
            return -1;
        number = number * 10 + (c - '0');
    }
    text.remove_prefix(count);
    return number;
}

bool takeFraction(std::string_view& text) noexcept
{
    // ISO 8601 allows either.
    if (!take(text, '.') && !take(text, ','))
        return true;
    const bool hasDigits = !text.empty() && gps::isDigit(text.front());
    while (!text.empty() && gps::isDigit(text.front()))
        text.remove_prefix(1);
    return hasDigits;
}

// Reads the offset of local time from UTC, up to the end of the text.
std::optional<std::chrono::minutes> takeOffset(std::string_view text) noexcept
{
    if (text.empty() || text == "Z")
        return std::chrono::minutes{0};
    const bool isBehind = take(text, '-');
    if (!isBehind && !take(text, '+'))
        return std::nullopt;
    const int hours = takeDigits(text, 2);
    const bool hasColon = take(text, ':');
    const int minutes = text.empty() && !hasColon ? 0 : takeDigits(text, 2);
    if (hours < 0 || minutes < 0 || minutes > 59 || hours * 60 + minutes > kMaxOffset ||
        !text.empty())
        return std::nullopt;
    const std::chrono::minutes offset{hours * 60 + minutes};
    return isBehind ? -offset : offset;
}

// Here and below, all parts are taken first and judged together: a part that is missing takes
// nothing and fails by itself.
std::optional<std::chrono::sys_days> takeDay(std::string_view& text) noexcept
{
    using namespace std::chrono;
    const int inYear = takeDigits(text, 4);
    const bool hasMonth = take(text, '-');
    const int inMonth = takeDigits(text, 2);
    const bool hasDay = take(text, '-');
    const int inDay = takeDigits(text, 2);
    if (inYear < 0 || inMonth < 0 || inDay < 0 || !hasMonth || !hasDay)
        return std::nullopt;
    const year_month_day date{year{inYear}, month{static_cast<unsigned>(inMonth)},
                              day{static_cast<unsigned>(inDay)}};
    return date.ok() ? std::optional{sys_days{date}} : std::nullopt;
}

std::optional<std::chrono::seconds> takeTimeOfDay(std::string_view& text) noexcept
{
    const int hours = takeDigits(text, 2);
    const bool hasMinutes = take(text, ':');
    const int minutes = takeDigits(text, 2);
    const bool hasSeconds = take(text, ':');
    const int seconds = takeDigits(text, 2);
    // Rejects the leap second 60, too: seconds since 1970 have no number for it.
    if (hours < 0 || minutes < 0 || minutes > 59 || seconds < 0 || seconds > 59 || !hasMinutes ||
        !hasSeconds)
        return std::nullopt;
    const std::chrono::seconds time =
        std::chrono::hours{hours} + std::chrono::minutes{minutes} + std::chrono::seconds{seconds};
    // The last moment of a day may be written as 24:00:00.
    return time <= std::chrono::days{1} ? std::optional{time} : std::nullopt;
}

} // namespace

std::optional<std::int64_t> readGpxTime(std::string_view text) noexcept
{
    text = gps::trimmed(text);
    const auto day = takeDay(text);
    if (!day)
        return std::nullopt;
    std::chrono::sys_seconds time = *day;
    if (!text.empty()) {
        const bool hasSeparator = take(text, 'T') || take(text, ' ');
        const auto timeOfDay = takeTimeOfDay(text);
        const bool isFractionValid = takeFraction(text);
        const auto offset = takeOffset(text);
        if (!hasSeparator || !timeOfDay || !isFractionValid || !offset)
            return std::nullopt;
        // An offset is local time minus UTC.
        time += *timeOfDay - *offset;
    }
    return std::int64_t{time.time_since_epoch().count()};
}

} // namespace host
