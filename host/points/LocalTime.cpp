// SPDX-License-Identifier: MIT
// The C library knows the zone's rules.

#include "host/points/LocalTime.h"

#include "host/points/Points.h"

#include <gps/NumberText.h>

#include <cstdlib>
#include <ctime>

namespace host {

char* putLocalTime(char* at, std::int64_t time) noexcept
{
    const std::time_t seconds = time;
    std::tm local{};
    localtime_r(&seconds, &local);
    at = TimestampText{}.put(at, time + local.tm_gmtoff, ' ');
    const auto minutes = static_cast<unsigned>(std::abs(local.tm_gmtoff) / 60);
    *at = local.tm_gmtoff < 0 ? '-' : '+';
    gps::putTwoDigits(at + 1, minutes / 60);
    at[3] = ':';
    gps::putTwoDigits(at + 4, minutes % 60);
    return at + 6;
}

} // namespace host
