// SPDX-License-Identifier: MIT
// XML text: converts files to UTF-8 before they are parsed, finds lines in them for messages, and
// escapes text that is written. Stateless. [any]

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

enum class XmlConversion {
    kDone,
    kUnknownEncoding, ///< the text has not changed
    kInvalidText,     ///< the text ends before the first bytes that are not valid in its encoding
};

/// Converts an XML file to UTF-8. The encoding is that of the byte order mark, of the first bytes,
/// or of the declaration, in this order (XML 1.0, appendix F); otherwise UTF-8, which is not
/// checked. A byte order mark may remain.
[[nodiscard]] XmlConversion convertXmlToUtf8(std::string& xml);

/// The number of the line that contains a byte, counted from 1.
[[nodiscard]] std::size_t lineAt(std::string_view text, std::size_t offset) noexcept;

/// Appends a text as XML 1.0 content or as an attribute value. Escapes markup, drops the characters
/// that XML forbids, and replaces invalid UTF-8 by U+FFFD.
void appendXml(std::string& out, std::string_view text);

/// Whether a text is printable ASCII that appendXml() appends unchanged.
[[nodiscard]] bool isPlainXml(std::string_view text) noexcept;

} // namespace host
