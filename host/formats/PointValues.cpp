// SPDX-License-Identifier: MIT
// A text is read as a whole or not at all: what a number is followed by may be half of it, or a
// unit.

#include "host/formats/PointValues.h"

#include "host/base/TranslatedFormat.h"
#include "host/formats/GpxTime.h"
#include "host/points/Points.h"

#include <gps/Characters.h>
#include <gps/NumberText.h>

#include <cmath>
#include <limits>

namespace host {
namespace {

// Whether a timestamp has a fraction of a second other than 0.
bool hasFraction(std::string_view timestamp) noexcept
{
    constexpr auto kWhole = std::string_view{"2024-06-01T12:00:00"}.size();
    if (timestamp.size() <= kWhole || (timestamp[kWhole] != '.' && timestamp[kWhole] != ','))
        return false;
    const auto digit = timestamp.find_first_not_of('0', kWhole + 1);
    return digit != std::string_view::npos && gps::isDigit(timestamp[digit]);
}

} // namespace

double elevationIn(std::string_view text, UnreadTexts& unread)
{
    text = gps::trimmed(text);
    const auto elevation = gps::wholeNumber(text);
    if (elevation && std::abs(*elevation) <= kMostElevation)
        return *elevation;
    unread.elevation = text;
    return std::numeric_limits<double>::quiet_NaN();
}

std::int64_t timeIn(std::string_view text, UnreadTexts& unread)
{
    text = gps::trimmed(text);
    const auto time = readGpxTime(text);
    if (!time)
        unread.time = text;
    else if (!hasTimestamp({.time = *time}))
        unread.uncountedTime = text;
    else
        unread.hasFraction = hasFraction(text);
    return time.value_or(0);
}

std::string fractionsText(std::size_t times)
{
    return trCounted(times, "the fraction of a second of {} time",
                     "the fractions of a second of {} times", times);
}

} // namespace host
