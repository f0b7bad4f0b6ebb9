// SPDX-License-Identifier: MIT
// How a receiver's files are cut into lines: at every CR LF and nowhere else. Stateless: [any]
// thread.

#pragma once

#include <cstddef>
#include <string_view>

namespace magellan {

/// Calls `take` with each line in order, as a view into the text without its CR LF. A text that
/// ends in CR LF has an empty last line, and an empty text one empty line.
template <typename Take> void forEachLine(std::string_view text, Take&& take)
{
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto rest = text.substr(begin);
        const auto line = rest.substr(0, rest.find("\r\n"));
        take(line);
        begin += line.size() + 2;
    }
}

} // namespace magellan
