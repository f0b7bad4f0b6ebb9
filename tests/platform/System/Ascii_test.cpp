// SPDX-License-Identifier: MIT

#include <platform/System/Ascii.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace gps {
namespace {

TEST(Ascii, AByteAbove127IsFoundAtEveryPosition)
{
    for (std::size_t size = 0; size < 70; ++size) { // several words and each remainder
        std::string text(size, '\x7F');
        EXPECT_TRUE(isAscii(text)) << size;
        for (std::size_t at = 0; at < size; ++at) {
            text[at] = '\x80';
            EXPECT_FALSE(isAscii(text)) << at << " of " << size;
            text[at] = '\0';
        }
    }
}

} // namespace
} // namespace gps
