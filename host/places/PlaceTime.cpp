// SPDX-License-Identifier: MIT
// The system's time zone database knows the rules.

#include "host/places/PlaceTime.h"

#include "host/points/Points.h"

#include <platform/System/TimeZone.h>

#include <algorithm>

namespace host {
namespace {

std::optional<std::int32_t> offsetOf(std::string_view zone, std::int64_t time)
{
    return gps::secondsFromGMT(std::string{zone}, time);
}

} // namespace

std::string timeInZone(const std::optional<std::int64_t>& time, std::string_view zone)
{
    std::string text;
    if (time)
        appendTimestamp(
            text, std::min(*time + offsetOf(zone, *time).value_or(0), kEndOfTimestamps - 1), ' ');
    return text;
}

std::string zoneTitle(std::string_view zone, std::int64_t time)
{
    if (!offsetOf(zone, time))
        return "UTC";
    std::string title{zone.substr(zone.rfind('/') + 1)};
    std::replace(title.begin(), title.end(), '_', ' ');
    return title;
}

} // namespace host
