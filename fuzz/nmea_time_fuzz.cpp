// SPDX-License-Identifier: MIT
// Reads a line of date, time, coordinate and direction, separated by commas. Whatever can be read
// can be written, and reads back as the same value.

#include "FuzzTarget.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace {

namespace NMEAUtils = gps::NMEAUtils;
using Fields = std::array<std::string_view, 4>; // date, time, coordinate, direction

Fields split(std::string_view line)
{
    Fields fields;
    for (auto& field : fields) {
        const auto comma = line.find(',');
        field = line.substr(0, comma);
        line = comma == line.npos ? std::string_view{} : line.substr(comma + 1);
    }
    return fields;
}

std::int64_t dayOf(std::int64_t time)
{
    constexpr std::int64_t kDay = 86400;
    return time / kDay - (time % kDay < 0 ? 1 : 0);
}

void checkUpdate(std::int64_t previous, std::string_view time)
{
    const auto updated = NMEAUtils::updateNMEADate(previous, time);
    fuzz::require(dayOf(updated) == dayOf(previous), "a new time of day keeps the day");
    fuzz::require(NMEAUtils::updateNMEADate(updated, time) == updated,
                  "a second update changes nothing");
}

void checkTimes(std::string_view date, std::string_view time)
{
    const auto timestamp = NMEAUtils::convertNMEADate(date, time);
    fuzz::require(timestamp == 0 || (timestamp >= 315532800 && timestamp < 3471292800),
                  "a date is in 1980 to 2079");
    const auto text = NMEAUtils::makeNMEADateFrom(timestamp);
    fuzz::require(NMEAUtils::convertNMEADate(text.date, text.time) == timestamp,
                  "a written date reads back");
    if (timestamp != 0)
        fuzz::require(text.date == date && text.time.substr(0, 6) == time.substr(0, 6),
                      "a date is written as it was read");

    for (const auto previous : {timestamp, -timestamp, std::numeric_limits<std::int64_t>::min(),
                                std::numeric_limits<std::int64_t>::max()})
        checkUpdate(previous, time);
}

void checkCoordinate(std::string_view degreesMinutes, std::string_view direction)
{
    const double degrees = NMEAUtils::convertNMEADegreesMinutes(degreesMinutes, direction);
    fuzz::require(std::isfinite(degrees), "a coordinate is finite");
    for (const bool asLatitude : {true, false}) {
        const auto text = NMEAUtils::convertDegreesToNMEADegreesMinutes(degrees, asLatitude);
        fuzz::require(text.has_value() == (std::abs(degrees) <= (asLatitude ? 90 : 180)),
                      "a coordinate on earth has a text");
        if (!text)
            continue;
        fuzz::require(text->degreesMinutes.size() == (asLatitude ? 10U : 11U),
                      "the length of a coordinate is fixed");
        const double again = NMEAUtils::convertNMEADegreesMinutes(
            text->degreesMinutes, std::string_view{&text->direction, 1});
        fuzz::require(std::abs(again - degrees) < 1e-5 / 60, "a written coordinate reads back");
        const auto second = NMEAUtils::convertDegreesToNMEADegreesMinutes(again, asLatitude);
        fuzz::require(second && second->degreesMinutes == text->degreesMinutes &&
                          second->direction == text->direction,
                      "reading and writing a text again gives the same text");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto [date, time, degreesMinutes, direction] = split(fuzz::textOf(data, size));
    checkTimes(date, time);
    checkCoordinate(degreesMinutes, direction);
    return 0;
}
