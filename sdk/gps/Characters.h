// SPDX-License-Identifier: MIT
// Characters: the classes of ASCII characters that the whole project tests for, and trimming.
// Nothing here depends on the locale. [any]

#pragma once

#include <string_view>

namespace gps {

/// Space, tab, line feed, vertical tab, form feed or carriage return. [any]
[[nodiscard]] constexpr bool isWhiteSpace(char c) noexcept
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// An ASCII digit. [any]
[[nodiscard]] constexpr bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// A character with an ASCII capital made a small letter. [any]
[[nodiscard]] constexpr char lowerCase(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The text without the white space at its start. [any]
/// @return  a view into the text
[[nodiscard]] constexpr std::string_view withoutLeadingSpace(std::string_view text) noexcept
{
    while (!text.empty() && isWhiteSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

/// The text without the white space at its start and at its end. [any]
/// @return  a view into the text
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text) noexcept
{
    text = withoutLeadingSpace(text);
    while (!text.empty() && isWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace gps
