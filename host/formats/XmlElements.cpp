// SPDX-License-Identifier: MIT
// Nearly all texts are plain and are copied as they are; any other takes a detour.

#include "host/formats/XmlElements.h"

#include "host/base/RecordText.h"
#include "host/base/XmlText.h"

#include <string>

namespace host {

void writeXml(Output& out, std::string_view text)
{
    if (isPlainXml(text)) {
        out.write(text);
        return;
    }
    std::string escaped;
    appendXml(escaped, text);
    out.write(escaped);
}

void writeElements(Output& out, const gps::Dictionary& record,
                   std::span<const TextElement> elements)
{
    for (const auto& element : elements) {
        const auto text = textIn(record, element.key);
        if (text.empty())
            continue;
        out.write(element.start);
        writeXml(out, text);
        out.write(element.end);
    }
}

} // namespace host
