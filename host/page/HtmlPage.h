// SPDX-License-Identifier: MIT
// The HTML page around its data, for HtmlWriter. embed.py makes the texts at build time from the
// files in this folder: page.html, page.css, and main.js with its modules.

#pragma once

#include <string_view>

namespace host {

/// The text up to the end of the security policy, where sources of pictures can be added; the text
/// from there to the tables; the text between them and the JSON data; and the text after it. [any]
[[nodiscard]] std::string_view pageStart() noexcept;
[[nodiscard]] std::string_view pageHead() noexcept;
[[nodiscard]] std::string_view pageMiddle() noexcept;
[[nodiscard]] std::string_view pageFoot() noexcept;

} // namespace host
