// SPDX-License-Identifier: MIT
// The number module: converts every number in the project from text and to text. Nothing here
// depends on the locale, and nothing allocates except the strings that results are appended to.
// "Leading" functions read what a text begins with, "whole" functions accept the whole text or
// nothing. [any]

#pragma once

#include <gps/Characters.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gps {

/// The number that a text begins with: optional white space, an optional sign, digits with an
/// optional point ("5.", ".5") and an optional exponent. Ignores what follows. The words "inf" and
/// "nan" and hexadecimal forms are not numbers. [any]
///
/// @return  the nearest double; beyond the range, the largest finite double of that sign; nullopt
///          if the text does not begin with a number
[[nodiscard]] std::optional<double> leadingNumber(std::string_view text) noexcept;

/// The integer that a text begins with: optional white space, an optional sign, digits. [any]
///
/// @return  saturated at the 32-bit bounds; 0 if the text does not begin with an integer
[[nodiscard]] std::int32_t leadingInt32(std::string_view text) noexcept;

/// A text read as a boolean: skips white space, a sign and zeros; true if "Y", "y", "T", "t" or a
/// digit from 1 to 9 follows. [any]
[[nodiscard]] bool leadingBool(std::string_view text) noexcept;

/// Reads a text that is one number and nothing else: an optional sign, then as for
/// `leadingNumber`. White space is not accepted. [any]
///
/// @return  the nearest double, 0 for a number too small for one; nullopt for any other text and
///          for a number beyond the range of a double
[[nodiscard]] std::optional<double> wholeNumber(std::string_view text) noexcept;

/// Reads a text that is one integer and nothing else: an optional sign, then digits. [any]
///
/// @return  nullopt for any other text and for an integer outside 64 bits
[[nodiscard]] std::optional<std::int64_t> wholeInteger(std::string_view text) noexcept;

/// Reads a text that consists of digits only; a sign is not accepted. [any]
///
/// @return  nullopt for any other text and for an integer beyond 32 bits
[[nodiscard]] std::optional<std::uint32_t> wholeUnsigned(std::string_view text) noexcept;

/// Reads a text that consists of hexadecimal digits of either case only; neither a sign nor "0x"
/// is accepted. [any]
///
/// @return  nullopt for any other text and for an integer beyond 32 bits
[[nodiscard]] std::optional<std::uint32_t> hexInteger(std::string_view text) noexcept;

/// Truncates toward zero and saturates at the 32-bit bounds; NaN gives 0. [any]
[[nodiscard]] std::int32_t saturatedInt32(double value) noexcept;
[[nodiscard]] std::int32_t saturatedInt32(std::int64_t value) noexcept;

/// Appends the shortest text that reads back to the same double ("0.1", "1e+22"). Values that are
/// not finite become "inf", "-inf" and "nan". [any]
void appendShortest(std::string& out, double value);

/// Appends a number with exactly so many decimals ("46.50"; printf's "%.*f"). [any]
///
/// Precondition: the value is finite, and 0 <= decimals <= 100.
void appendFixed(std::string& out, double value, int decimals);

/// Appends an integer in decimal digits. [any]
void appendInteger(std::string& out, std::int64_t value);

/// Appends an integer in at least `width` characters, padded with zeros after the sign; the sign
/// counts (printf's "%0*d"). [any]
void appendPadded(std::string& out, std::int64_t value, int width);

// The put functions are for inner loops that build a text in memory of their own.
//
// @param at  has room for as many characters as the constant says
// @return    the end of what was written

inline constexpr std::size_t kMostOfShortest = 24; ///< "-2.2250738585072014e-308"
inline constexpr std::size_t kMostOfDecimal = 327; ///< 324 decimals after "-0."
inline constexpr std::size_t kMostOfRounded = 21;  ///< "-1000000000.000000001"
inline constexpr std::size_t kMostOfInteger = 20;  ///< "-9223372036854775808"

/// Writes what appendShortest() appends. [any]
[[nodiscard]] char* putShortest(char* at, double value) noexcept;

/// Writes the shortest text without an exponent that reads back to the same double, as XML Schema's
/// decimal type requires. [any]
///
/// Precondition: the value is finite.
[[nodiscard]] char* putDecimal(char* at, double value) noexcept;

/// Writes a number rounded to nine decimals, half away from zero, without trailing zeros ("46.5");
/// a value that rounds to zero is "0". [any]
///
/// Precondition: the value is between -999,999,999 and 999,999,999.
[[nodiscard]] char* putRounded(char* at, double value) noexcept;

/// Writes what appendInteger() appends. [any]
[[nodiscard]] char* putInteger(char* at, std::int64_t value) noexcept;

/// Writes what appendPadded() appends. [any]
///
/// Precondition: the width is at most kMostOfInteger.
[[nodiscard]] char* putPadded(char* at, std::int64_t value, int width) noexcept;

/// Powers of ten that are exact doubles: a number of up to 15 digits divided by one of them is
/// rounded correctly.
inline constexpr std::array<double, 16> kPowersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// Writes a number below 100 in two digits. [any]
inline void putTwoDigits(char* at, unsigned number) noexcept
{
    at[0] = static_cast<char>('0' + number / 10);
    at[1] = static_cast<char>('0' + number % 10);
}

} // namespace gps
