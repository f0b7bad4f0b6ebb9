// SPDX-License-Identifier: MIT
// A text is read as a whole or not at all: what a number is followed by may be half of it, or a
// unit.

#include "host/formats/PointValues.h"

#include "host/formats/GpxTime.h"
#include "host/points/Points.h"

#include <gps/Characters.h>
#include <gps/NumberText.h>

#include <cmath>
#include <limits>

namespace host {

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
    const auto time = readGpxTime(text);
    if (!time)
        unread.time = gps::trimmed(text);
    else if (!hasTimestamp({.time = *time}))
        unread.uncountedTime = gps::trimmed(text);
    return time.value_or(0);
}

} // namespace host
