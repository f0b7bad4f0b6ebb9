// SPDX-License-Identifier: MIT
// XML elements that hold a record's texts. Used by the GPX writer, for which writing waypoints is
// an inner loop: text goes straight to the output. Stateless. One thread at a time per output.

#pragma once

#include "host/files/Output.h"

#include <span>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

/// An element for the text under a key.
struct TextElement {
    std::string_view key;
    std::string_view start; ///< the tag: "<name>"
    std::string_view end;   ///< "</name>"
};

/// Writes a text as appendXml() escapes it.
void writeXml(Output& out, std::string_view text);

/// Writes an element for each key that has a text, in the order of the elements. Missing and empty
/// texts are omitted.
void writeElements(Output& out, const gps::Dictionary& record,
                   std::span<const TextElement> elements);

} // namespace host
