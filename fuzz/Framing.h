// SPDX-License-Identifier: MIT
// Corrects the checksums of an input's sentences. A fuzzer changes bytes but cannot guess a
// checksum, so without this no changed sentence would get past the first check. Used by the targets
// for sentences, files and sessions. [any]

#pragma once

#include <platform/GPSUtilities/NMEAUtils.h>

#include <string>
#include <string_view>

namespace fuzz {

/// The line with the checksum of its body.
inline std::string withChecksum(std::string_view line)
{
    const auto body = line.substr(line.starts_with('$') ? 1 : 0);
    return gps::NMEAUtils::addChecksumToNMEASentence(body.substr(0, body.find('*')));
}

/// The text with the checksum of every line that begins with "$" corrected.
inline std::string linesWithChecksums(std::string_view text)
{
    constexpr std::string_view kLineEnd = "\r\n";
    std::string out;
    for (;;) {
        const auto end = text.find(kLineEnd);
        const auto line = text.substr(0, end);
        if (line.starts_with('$'))
            out += withChecksum(line);
        else
            out += line;
        if (end == text.npos)
            return out;
        out += kLineEnd;
        text.remove_prefix(end + kLineEnd.size());
    }
}

} // namespace fuzz
