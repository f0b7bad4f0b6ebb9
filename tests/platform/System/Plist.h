// SPDX-License-Identifier: MIT
// Makes a property list's text for a test.

#pragma once

#include <string>

namespace support {

inline std::string plist(const std::string& content)
{
    return "<plist version=\"1.0\">" + content + "</plist>";
}

} // namespace support
