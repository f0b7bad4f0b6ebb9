// SPDX-License-Identifier: MIT

#include <gps/EightBytes.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace gps {
namespace {

std::uint64_t wordOf(const std::string& eightBytes)
{
    return readEight(eightBytes.data());
}

std::string textOf(std::uint64_t word)
{
    std::string text;
    for (int i = 0; i < 8; ++i)
        text += static_cast<char>(word >> (8 * i));
    return text;
}

TEST(EightBytes, TheFirstByteOfATextIsTheLowest)
{
    EXPECT_EQ(wordOf(std::string{"\x01\0\0\0\0\0\0\x80", 8}), 0x8000000000000001);
    EXPECT_EQ(repeated('0'), wordOf("00000000"));
}

TEST(EightBytes, AMatchMarksExactlyTheBytesThatAreEqual)
{
    for (int byte = 0; byte < 256; ++byte) {
        for (std::size_t at = 0; at < 8; ++at) {
            std::string text(8, ',');
            text[at] = static_cast<char>(byte);
            std::string marks(8, '\x80');
            marks[at] = byte == ',' ? '\x80' : '\0';
            EXPECT_EQ(textOf(matchesIn(wordOf(text), ',')), marks) << byte << " at " << at;
        }
    }
}

TEST(EightBytes, DigitValuesAreBytesFromZeroToNine)
{
    for (const char others : {'\0', '\x09'}) {
        for (int byte = 0; byte < 256; ++byte) {
            for (std::size_t at = 0; at < 8; ++at) {
                std::string text(8, others);
                text[at] = static_cast<char>(byte);
                EXPECT_EQ(areDigitValues(wordOf(text)), byte <= 9) << byte << " at " << at;
            }
        }
    }
}

TEST(EightBytes, EachNumberOfUpToEightDigitsIsReadAndWritten)
{
    const auto expectBothWays = [](std::uint32_t number) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08u", number);
        const std::uint64_t word = wordOf(digits) ^ repeated('0');
        ASSERT_EQ(digitValues(number), word) << number;
        ASSERT_EQ(numberFromDigitValues(word), number);
    };
    // Each four digits in front with some behind, and the other way round.
    for (std::uint32_t four = 0; four < 10'000; ++four) {
        for (const std::uint32_t other : {0U, 1U, 9U, 10U, 99U, 100U, 999U, 1000U, 9999U}) {
            expectBothWays(four * 10'000 + other);
            expectBothWays(other * 10'000 + four);
        }
    }
}

} // namespace
} // namespace gps
