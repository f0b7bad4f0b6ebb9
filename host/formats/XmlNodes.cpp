// SPDX-License-Identifier: MIT
// The documents are parsed with the first piece of text as the value of its element.

#include "host/formats/XmlNodes.h"

#include <gps/Characters.h>

namespace host {

pugi::xml_node childOf(const pugi::xml_node& parent, std::string_view local)
{
    pugi::xml_node found;
    for (const auto& node : parent.children()) {
        const auto name = elementName(node);
        if (name.local != local)
            continue;
        if (name.prefix == elementName(parent).prefix)
            return node;
        if (!found)
            found = node;
    }
    return found;
}

std::string_view textOf(const pugi::xml_node& element, std::string& joined)
{
    std::string_view text = element.value(); // the first piece, unless it is a CDATA section
    if (element.first_child()) {
        joined = text;
        for (const auto& piece : element.children()) {
            if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata)
                joined += piece.value();
        }
        text = joined;
    }
    return text.find('\n') == std::string_view::npos ? text : gps::trimmed(text);
}

std::string textOf(const pugi::xml_node& element)
{
    std::string joined;
    return std::string{textOf(element, joined)};
}

std::string childText(const pugi::xml_node& parent, std::string_view local)
{
    return textOf(childOf(parent, local));
}

} // namespace host
