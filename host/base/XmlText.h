// SPDX-License-Identifier: MIT
// XML files before they are parsed: their characters and their lines. Stateless: [any] thread.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// Turns an XML file's bytes into UTF-8, from the encoding that its byte order mark, its first
/// bytes or its declaration tell; UTF-8 without any of them. What no character is in that encoding
/// is replaced by U+FFFD. A byte order mark may stay.
///
/// @return  whether the encoding is known; if not, nothing has changed
/// Source of the order: XML 1.0, appendix F.
[[nodiscard]] bool convertXmlToUtf8(std::string& xml);

/// The line, from 1, on which a byte stands.
[[nodiscard]] std::size_t lineAt(std::string_view text, std::size_t offset) noexcept;

/// Appends a text as XML 1.0 content or attribute value: escapes markup, drops the characters that
/// XML forbids, and replaces invalid UTF-8.
void appendXml(std::string& out, std::string_view text);

/// The text without the white space around it.
[[nodiscard]] std::string_view withoutOuterSpace(std::string_view text) noexcept;

} // namespace host
