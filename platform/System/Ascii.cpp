// SPDX-License-Identifier: MIT

#include "Ascii.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace gps {

bool isAscii(std::string_view text) noexcept
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::uint64_t words[4];
    std::size_t i = 0;
    for (; i + sizeof words <= text.size(); i += sizeof words) {
        std::memcpy(words, text.data() + i, sizeof words);
        if (((words[0] | words[1] | words[2] | words[3]) & kHighBits) != 0)
            return false;
    }
    return std::none_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(),
                        [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

} // namespace gps
