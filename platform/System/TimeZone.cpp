// SPDX-License-Identifier: MIT

#include "TimeZone.h"

#include <gps/NumberText.h>

#include <cctz/time_zone.h>

#include <algorithm>
#include <chrono>
#include <string_view>

namespace gps {
namespace {

/// Whether a text is formed like a zone's name. Any other could name a file outside the database,
/// by "/", ".." or "file:", or one of the library's own zones, by "libc:" or "Fixed/UTC+01:00:00".
bool isFormedLikeZoneName(std::string_view name)
{
    return !name.empty() && name.front() != '/' &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '/' ||
                      c == '_' || c == '+' || c == '-';
           });
}

} // namespace

std::optional<std::int32_t> secondsFromGMT(const std::string& name, std::int64_t unixTime)
{
    cctz::time_zone zone;
    if (!isFormedLikeZoneName(name) || !cctz::load_time_zone(name, &zone))
        return std::nullopt;
    return zone.lookup(cctz::time_point<cctz::seconds>{cctz::seconds{unixTime}}).offset;
}

std::int64_t unixTimeNow()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(now).count();
}

} // namespace gps
