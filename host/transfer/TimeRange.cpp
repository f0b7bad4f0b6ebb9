// SPDX-License-Identifier: MIT
// A text is completed to one that has seconds, and read as if it were UTC.

#include "host/transfer/TimeRange.h"

#include "host/formats/GpxTime.h"
#include "host/points/LocalTime.h"

#include <algorithm>
#include <cstddef>

namespace host {
namespace {

constexpr std::size_t kDate = 10;          // characters of "YYYY-MM-DD"
constexpr std::size_t kToMinute = 16;      // of "YYYY-MM-DDThh:mm"
constexpr std::size_t kToSecond = 19;      // of "YYYY-MM-DDThh:mm:ss"
constexpr std::int64_t kDayLength = 86400; // seconds

std::optional<TimeRange> dayOfClocks(const std::string& text)
{
    const auto midnight = readGpxTime(text + "T00:00:00Z");
    if (!midnight)
        return std::nullopt;
    return TimeRange{whenClocksShow(*midnight).earliest,
                     whenClocksShow(*midnight + kDayLength).earliest - 1};
}

} // namespace

std::optional<TimeRange> readTimeRange(const std::string& text)
{
    if (text.size() == kDate)
        return dayOfClocks(text);
    const auto end = std::min(text.find_first_of("Z+-", kDate), text.size());
    // 24:00, the end of a day, belongs to the next one.
    if ((end != kToMinute && end != kToSecond) || text.substr(kDate + 1).starts_with("24"))
        return std::nullopt;
    const std::int64_t length = end == kToMinute ? 60 : 1;
    const auto zone = text.substr(end);
    const auto shown = readGpxTime(text.substr(0, end) + (end == kToMinute ? ":00" : "") +
                                   (zone.empty() ? "Z" : zone));
    if (!shown)
        return std::nullopt;
    const auto times = zone.empty() ? whenClocksShow(*shown) : ClockTimes{*shown, *shown};
    return TimeRange{times.earliest, times.latest + length - 1};
}

} // namespace host
