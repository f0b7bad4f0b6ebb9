// SPDX-License-Identifier: MIT
// Only names that look like zone names reach the library, which would also open files.

#include "TimeZone.h"

#include <gps/NumberText.h>

#include <cctz/time_zone.h>

#include <algorithm>
#include <chrono>
#include <string_view>

namespace gps {
namespace {

/// Whether a text has the form of a zone name. Any other text could name a file outside the
/// database
/// ("/", "..", "file:") or one of the library's own zones ("libc:", "Fixed/UTC+01:00:00").
bool hasZoneNameForm(std::string_view name)
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
    if (!hasZoneNameForm(name) || !cctz::load_time_zone(name, &zone))
        return std::nullopt;
    return zone.lookup(cctz::time_point<cctz::seconds>{cctz::seconds{unixTime}}).offset;
}

std::int64_t unixTimeNow()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(now).count();
}

} // namespace gps
