// SPDX-License-Identifier: MIT
// How a receiver's files are split into lines: at every CR LF, and only there; and how they end.
// Stateless. [any]

#pragma once

#include <cstddef>
#include <string_view>

namespace magellan {

/// The body of the sentence that ends a file, or a phase of a serial session.
inline constexpr std::string_view kEndSentence = "PMGNCMD,END";

/// What separates the lines of a file.
inline constexpr std::string_view kFileLineEnd = "\r\n";

/// Calls `visit` with each line in order, as a view into the text without its CR LF. A text that
/// ends in CR LF has an empty last line; an empty text has one empty line.
template <typename Visit> void forEachLine(std::string_view text, Visit&& visit)
{
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto rest = text.substr(begin);
        const auto line = rest.substr(0, rest.find(kFileLineEnd));
        visit(line);
        begin += line.size() + kFileLineEnd.size();
    }
}

} // namespace magellan
