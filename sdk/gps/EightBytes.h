// SPDX-License-Identifier: MIT
// Text handled eight bytes at a time, as one 64-bit word: for the inner loops that read and write
// numbers and split sentences. Stateless. [any]

#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace gps {

static_assert(std::endian::native == std::endian::little,
              "the lowest byte of a word is the first one of the text");

/// A word of eight equal bytes.
[[nodiscard]] constexpr std::uint64_t repeated(std::uint8_t byte) noexcept
{
    return 0x0101010101010101 * std::uint64_t{byte};
}

/// @param at  eight bytes that can be read
[[nodiscard]] inline std::uint64_t readEight(const char* at) noexcept
{
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    return word;
}

/// Sets the high bit of each byte that equals `byte`, which is below 128, and clears all other
/// bits.
[[nodiscard]] constexpr std::uint64_t matchesIn(std::uint64_t word, std::uint8_t byte) noexcept
{
    word ^= repeated(byte); // a match is now a zero byte
    return ~(((word & repeated(0x7F)) + repeated(0x7F)) | word) & repeated(0x80);
}

/// Whether each byte is at most 9.
[[nodiscard]] constexpr bool areDigitValues(std::uint64_t word) noexcept
{
    return ((((word & repeated(0x7F)) + repeated(0x7F - 9)) | word) & repeated(0x80)) == 0;
}

/// The number whose decimal digits are the bytes of a word, the first one leading. Adds neighbours:
/// digits to pairs, pairs to fours, fours to eight. Precondition: areDigitValues().
[[nodiscard]] constexpr std::uint32_t numberFromDigitValues(std::uint64_t word) noexcept
{
    word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FF;
    word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(word * 10'000 + (word >> 32));
}

/// The reverse, with leading zeros. Divides all parts of a word at once, by multiplications that
/// are exact for numbers so small. Precondition: `number` is below 100,000,000.
[[nodiscard]] constexpr std::uint64_t digitValues(std::uint32_t number) noexcept
{
    std::uint64_t word = number / 10'000 | std::uint64_t{number % 10'000} << 32;
    const std::uint64_t hundreds = (word * 10'486 >> 20) & 0x0000007F0000007F;
    word = hundreds | (word - hundreds * 100) << 16;
    const std::uint64_t tens = (word * 103 >> 10) & 0x000F000F000F000F;
    return tens | (word - tens * 10) << 8;
}

} // namespace gps
