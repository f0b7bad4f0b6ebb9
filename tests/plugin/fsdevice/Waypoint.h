// SPDX-License-Identifier: MIT
// A waypoint to send to a receiver.

#pragma once

#include <gps/Value.h>

#include <string_view>

namespace support {

inline gps::Dictionary waypoint(std::string_view name, std::string_view symbol = "Flag")
{
    return {{"name", name}, {"symbol", symbol}, {"point", gps::GPSPoint{46.5, 7.25, 400, 0, 0}}};
}

} // namespace support
