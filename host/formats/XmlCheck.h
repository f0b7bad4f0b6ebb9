// SPDX-License-Identifier: MIT
// XmlCheck: whether a text is a well-formed document. The parser that makes the tree accepts much
// that XML forbids, and some of it ends a text early. Used by XmlFile. Stateless. [any]

#pragma once

#include "host/base/Translation.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// What to do about a file that is damaged. To be translated.
inline constexpr auto* kCheckFile = marked("Check the file, or export it once more");

/// The same for a text that is not in the encoding that its file is said to have.
inline constexpr auto* kExportAsUtf8 = marked("Export it as UTF-8 from the program that made it");

/// Why a text is not well-formed, or not supported.
struct XmlFlaw {
    std::size_t offset = 0; ///< of the first byte that is wrong
    std::string what{};     ///< a part of a sentence
    std::string advice{};   ///< a sentence without its full stop
};

struct XmlCheck {
    std::string root{};            ///< the name of the root element, or the first 64 bytes of a
                                   ///< longer one; empty if there is none
    std::optional<XmlFlaw> flaw{}; ///< the first one. None in a text that just has no element
};

/// Checks a text by the rules of XML 1.0. Prefixes without a namespace are accepted: files with
/// undeclared ones are common. Declarations in the document type are refused: those of entities
/// can make a small file large, and those of attributes would be lost.
/// @param xml    in UTF-8, whatever encoding it declares
/// @param piece  how many bytes the parser gets at once
[[nodiscard]] XmlCheck checkXml(std::string_view xml, std::size_t piece = std::size_t{1} << 30);

} // namespace host
