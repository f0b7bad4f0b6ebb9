// SPDX-License-Identifier: MIT
// The user's own list of serial ports, for the program under test.

#pragma once

#include "support/TemporaryFolder.h"

#include <string>
#include <vector>

namespace support {

/// Stores the list of ports that a user keeps.
/// @return  the variable that names its folder
inline std::string storePorts(const TemporaryFolder& home, const std::vector<std::string>& paths)
{
    std::string list;
    for (const auto& path : paths)
        list += "<string>" + path + "</string>";
    home.put("com.Orvane.GPSPlugin/defaults.plist",
             "<plist version=\"1.0\"><dict><key>OrvTestPortList</key><array>" + list +
                 "</array></dict></plist>");
    return "XDG_CONFIG_HOME=" + home.path();
}

} // namespace support
