// SPDX-License-Identifier: MIT
// The line speeds that a receiver can have, with their termios codes, and how long a byte takes.
// Used by the simulator and by lines in memory. Stateless. [any]

#pragma once

#include <algorithm>
#include <array>
#include <chrono>

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

/// The time for one byte: a start bit, 8 data bits and a stop bit. At speed 0 a real line would
/// carry nothing; this one is slow instead.
[[nodiscard]] inline std::chrono::steady_clock::duration byteTime(int bitsPerSecond) noexcept
{
    return std::chrono::steady_clock::duration{std::chrono::seconds{10}} /
           std::max(bitsPerSecond, 1200);
}

/// @return  0 for any other code
[[nodiscard]] inline int bitsPerSecond(speed_t code) noexcept
{
    const auto* const found =
        std::find_if(kLineSpeeds.begin(), kLineSpeeds.end(),
                     [=](const LineSpeed& speed) { return speed.code == code; });
    return found == kLineSpeeds.end() ? 0 : found->bitsPerSecond;
}

} // namespace simulator
