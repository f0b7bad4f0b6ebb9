// SPDX-License-Identifier: MIT
// No branch leaves the loop, so that compilers can vectorize it: whole files are checked.

#include "Ascii.h"

namespace gps {

bool isAscii(std::string_view text) noexcept
{
    unsigned char bits = 0;
    for (const char c : text)
        bits |= static_cast<unsigned char>(c);
    return bits < 0x80;
}

} // namespace gps
