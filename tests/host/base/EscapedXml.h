// SPDX-License-Identifier: MIT
// A text as it is written into XML.

#pragma once

#include "host/base/XmlText.h"

#include <string>
#include <string_view>

namespace support {

inline std::string xml(std::string_view text)
{
    std::string out;
    host::appendXml(out, text);
    return out;
}

} // namespace support
