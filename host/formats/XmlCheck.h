// SPDX-License-Identifier: MIT
// Checks the characters and references of an XML file before it is parsed. The parser accepts what
// XML forbids, and some of it ends a text early. Used by XmlFile. Stateless. [any]

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Why a text is not well-formed.
struct XmlFlaw {
    std::size_t offset = 0; ///< of the first byte that is wrong
    std::string what{};     ///< a part of a sentence
    std::string advice{};   ///< a sentence without its full stop
};

/// The first character or reference that XML 1.0 forbids: a control character, a byte that is not
/// UTF-8, a bare "&", a reference to a forbidden character or to an entity other than the five that
/// XML defines. Entities that the file declares are not supported, so a reference to one is a flaw.
[[nodiscard]] std::optional<XmlFlaw> findXmlFlaw(std::string_view xml);

} // namespace host
