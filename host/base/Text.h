// SPDX-License-Identifier: MIT
// UTF-8 text: reads and writes single characters, and makes texts safe to show. The only UTF-8 code
// of the host. And the copying of short texts in the writers' inner loops. Stateless. [any]

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace host {

inline constexpr std::string_view kHexDigits = "0123456789abcdef";

/// The extension of a file's name, in small letters and without its "."; empty if it has none.
[[nodiscard]] std::string fileTypeOf(std::string_view path);

/// Puts commas between groups of three digits.
/// @param end  where the digits end, which begin the text
void groupDigits(std::string& text, std::size_t end);

/// Copies a text to memory that has room for it. @return  the end of the copy
[[nodiscard]] inline char* put(char* at, std::string_view text) noexcept
{
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

/// Appends what a function writes.
/// @param put  writes at most kMost characters at the place that it gets, and returns their end
template <std::size_t kMost, typename Put> void appendPut(std::string& out, Put put)
{
    std::array<char, kMost> text;
    out.append(text.data(), put(text.data()));
}

/// Removes the first character from a text.
/// Precondition: the text is not empty.
/// @return  the character; U+FFFD for each byte that is not part of a valid sequence
[[nodiscard]] char32_t takeCharacter(std::string_view& text) noexcept;

/// Appends a character as UTF-8. Precondition: it is a Unicode code point.
void appendCharacter(std::string& out, char32_t character);

/// Removes at most `most` bytes from the front of a text, and returns them. Does not split a valid
/// character. Precondition: `most` is at least 4, the length of the longest character.
[[nodiscard]] std::string_view takePiece(std::string_view& text, std::size_t most) noexcept;

/// A text that is safe on one line of a terminal or in a table. Control characters, characters that
/// change the direction of the line and those without a width become U+FFFD, and so does each byte
/// that is not part of a valid character.
/// @param most  characters; in a longer text, the last one shown is an ellipsis
[[nodiscard]] std::string displayText(std::string_view text, std::size_t most = std::string::npos);

/// The same for a page in a browser, which joins letters and wraps lines itself: zero-width joiners
/// stay, and a line break or a tab becomes a space.
[[nodiscard]] std::string pageText(std::string_view text);

/// Whether a list has this text.
template <typename List> [[nodiscard]] bool isOneOf(std::string_view text, const List& list)
{
    return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

/// Concatenates texts, with a separator between them.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view separator);

/// The number of characters in a text. Each invalid byte counts as one.
[[nodiscard]] std::size_t characterCount(std::string_view text) noexcept;

} // namespace host
