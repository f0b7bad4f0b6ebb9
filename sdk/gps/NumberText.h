// SPDX-License-Identifier: MIT
// Reads and writes every number in the project. Nothing here depends on the locale; nothing
// allocates but the strings that it is given. Stateless: [any] thread.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gps {

/// White space as texts on a receiver know it: space, tab, line breaks. [any]
[[nodiscard]] constexpr bool isWhiteSpace(char c) noexcept
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// An ASCII digit. [any]
[[nodiscard]] constexpr bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// The number that a text begins with: optional white space, optional sign, digits with an optional
/// point ("5.", ".5"), optional exponent; what follows is not looked at. The words inf, nan and
/// hexadecimal forms are no numbers. [any]
///
/// @return  the nearest double; beyond the range the largest finite double of that sign; none
/// without a leading number
[[nodiscard]] std::optional<double> leadingNumber(std::string_view text) noexcept;

/// The whole number that a text begins with: optional white space, optional sign, digits. [any]
///
/// @return  saturated at the 32-bit bounds; 0 without a leading number
[[nodiscard]] std::int32_t leadingInt32(std::string_view text) noexcept;

/// A boolean reading of a text: after white space, a sign and zeros, true for "Y", "y", "T", "t"
/// and the digits 1-9. [any]
[[nodiscard]] bool leadingBool(std::string_view text) noexcept;

/// Truncates toward zero and saturates at the 32-bit bounds; NaN gives 0. [any]
[[nodiscard]] std::int32_t saturatedInt32(double value) noexcept;
[[nodiscard]] std::int32_t saturatedInt32(std::int64_t value) noexcept;

/// Appends the shortest text that reads back to the same double ("0.1", "1e+22"). Not finite:
/// "inf", "-inf", "nan". [any]
void appendShortest(std::string& out, double value);

/// Appends the shortest text without an exponent that reads back to the same double, as XML's
/// decimal wants it. [any] Precondition: the value is finite.
void appendDecimal(std::string& out, double value);

/// Appends a number rounded to so many decimals, without zeros at their end ("46.5"); what rounds
/// to zero is "0". [any] Precondition: it has at most 18 digits then, of which at most 9 are
/// decimals.
void appendRounded(std::string& out, double value, int decimals);

/// Appends a whole number in decimal digits. [any]
void appendInteger(std::string& out, std::int64_t value);

/// Appends a whole number in at least `width` characters, filled up with zeros after the sign,
/// which counts (printf's "%0*d"). [any]
void appendPadded(std::string& out, std::int64_t value, int width);

} // namespace gps
