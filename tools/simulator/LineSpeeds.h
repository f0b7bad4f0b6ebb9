// SPDX-License-Identifier: MIT
// The line speeds that a receiver can have, with their termios codes. Used by the simulator only.
// Stateless. [any]

#pragma once

#include <algorithm>
#include <array>

#include <termios.h>

namespace simulator {

struct LineSpeed {
    int bitsPerSecond;
    speed_t code;
};

inline constexpr std::array<LineSpeed, 8> kLineSpeeds{{{1200, B1200},
                                                       {2400, B2400},
                                                       {4800, B4800},
                                                       {9600, B9600},
                                                       {19200, B19200},
                                                       {38400, B38400},
                                                       {57600, B57600},
                                                       {115200, B115200}}};

/// @return  0 for any other code
[[nodiscard]] inline int bitsPerSecond(speed_t code) noexcept
{
    const auto* const found =
        std::find_if(kLineSpeeds.begin(), kLineSpeeds.end(),
                     [=](const LineSpeed& speed) { return speed.code == code; });
    return found == kLineSpeeds.end() ? 0 : found->bitsPerSecond;
}

} // namespace simulator
