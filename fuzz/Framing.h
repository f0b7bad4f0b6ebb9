// SPDX-License-Identifier: MIT
// Puts the checksums of changed sentences right. A fuzzer changes bytes and cannot guess a
// checksum: without this it would never get past the frame.

#pragma once

#include <platform/GPSUtilities/NMEAUtils.h>

#include <string>
#include <string_view>

namespace fuzz {

/// A line with the checksum that its body needs.
inline std::string framedAnew(std::string_view line)
{
    const auto body = line.substr(line.starts_with('$') ? 1 : 0);
    return gps::NMEAUtils::addChecksumToNMEASentence(body.substr(0, body.find('*')));
}

/// The same for every line of a file that begins as a sentence does.
inline std::string linesFramedAnew(std::string_view text)
{
    constexpr std::string_view kLineEnd = "\r\n";
    std::string out;
    for (;;) {
        const auto end = text.find(kLineEnd);
        const auto line = text.substr(0, end);
        if (line.starts_with('$'))
            out += framedAnew(line);
        else
            out += line;
        if (end == text.npos)
            return out;
        out += kLineEnd;
        text.remove_prefix(end + kLineEnd.size());
    }
}

} // namespace fuzz
