// SPDX-License-Identifier: MIT
// Names and texts of XML elements, for the readers of map files. They read what any maker has
// written, so names are compared without their prefixes. Stateless. [any]

#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace host {

struct ElementName {
    std::string_view prefix; ///< without its colon; empty for the default namespace
    std::string_view local;
};

/// @return  views into the document
[[nodiscard]] inline ElementName elementName(const pugi::xml_node& node)
{
    const std::string_view name = node.name();
    const auto colon = name.find(':');
    if (colon == std::string_view::npos)
        return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

/// An element's name without its namespace prefix: a view into the document.
[[nodiscard]] inline std::string_view localName(const pugi::xml_node& element)
{
    return elementName(element).local;
}

/// The first child of that local name, preferably one with the parent's own prefix. Compares
/// prefixes, not namespaces: this runs for each field of each point, and finding a namespace means
/// walking up to the root.
[[nodiscard]] pugi::xml_node childOf(const pugi::xml_node& parent, std::string_view local);

/// An element's own text. White space around a text of several lines is layout and is dropped.
/// @return  a view into the document if the text is in one piece, otherwise into `joined`
[[nodiscard]] std::string_view textOf(const pugi::xml_node& element, std::string& joined);
[[nodiscard]] std::string textOf(const pugi::xml_node& element);

/// The text of childOf().
[[nodiscard]] std::string childText(const pugi::xml_node& parent, std::string_view local);

} // namespace host
