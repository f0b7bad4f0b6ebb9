// SPDX-License-Identifier: MIT
// PageIcons: the pictures of waypoints on the HTML page, by the names of symbols that receivers and
// programs use for them. Only those in use go into a page. One thread at a time.

#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace host {

class PageIcons {
public:
    /// Notes a waypoint's symbol. One without a picture is ignored; the page shows a dot for it.
    void add(std::string_view symbol);

    /// Appends the member "icons" of the page's data: [{"symbols":[S,...],"path":S},...], where a
    /// path is that of an SVG element of 16 by 16 units, filled by the even-odd rule. Symbols are
    /// in small letters.
    void append(std::string& out) const;

private:
    std::set<std::size_t> used_; // indices of the table of symbols
};

} // namespace host
