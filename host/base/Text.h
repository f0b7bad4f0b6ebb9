// SPDX-License-Identifier: MIT
// UTF-8 text: taking it apart, and making it safe to show. Used by every room of the host.
// Stateless. [any]

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Takes the first character off a text. Precondition: the text is not empty.
/// @return  the character; U+FFFD for each byte that is no UTF-8
/// Source of the form: RFC 3629.
[[nodiscard]] char32_t takeCharacter(std::string_view& text) noexcept;

/// Appends a character as UTF-8.
void appendCharacter(std::string& out, char32_t character);

/// A text as one line of a terminal or a table can show it: control characters replaced, at most
/// `most` characters, with an ellipsis as the last one where it was cut.
[[nodiscard]] std::string displayText(std::string_view text, std::size_t most = std::string::npos);

/// Texts in a row with something between each two.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view between);

/// How many characters a text has.
[[nodiscard]] std::size_t characterCount(std::string_view text) noexcept;

} // namespace host
