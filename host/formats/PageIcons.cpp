// SPDX-License-Identifier: MIT
// One row for each picture, with all of its symbols that are in use.

#include "host/formats/PageIcons.h"

#include "host/base/JsonText.h"
#include "host/formats/HtmlData.h"
#include "host/formats/SymbolPictures.h"

#include <utility>

namespace host {

void PageIcons::add(std::string_view symbol)
{
    if (const auto* const picture = findSymbolPicture(symbol))
        used_.insert(picture);
}

void PageIcons::append(std::string& out) const
{
    appendJsonKey(out, "icons");
    out += '[';
    for (auto left = used_; !left.empty();) {
        const auto path = (*left.begin())->path;
        out += left.size() == used_.size() ? R"({"symbols":[)" : R"(,{"symbols":[)";
        for (const char* separator = ""; const auto* const picture : used_) {
            if (picture->path != path)
                continue;
            out += std::exchange(separator, ",");
            appendPageText(out, picture->symbol);
            left.erase(picture);
        }
        out += ']';
        appendMember(out, "path", path);
        out += '}';
    }
    out += ']';
}

} // namespace host
