// SPDX-License-Identifier: MIT
// PageIcons: the pictures of waypoints on the HTML page. Only those in use go into a page. One
// thread at a time.

#pragma once

#include <set>
#include <string>
#include <string_view>

namespace host {

struct SymbolPicture;

class PageIcons {
public:
    /// Notes a waypoint's symbol. One without a picture is ignored; the page shows a dot for it.
    void add(std::string_view symbol);

    /// Appends the member "icons" of the page's data: [{"symbols":[S,...],"path":S},...], where a
    /// path is as in SymbolPictures. Symbols are in small letters.
    void append(std::string& out) const;

private:
    std::set<const SymbolPicture*> used_; // of one table, so in its order
};

} // namespace host
