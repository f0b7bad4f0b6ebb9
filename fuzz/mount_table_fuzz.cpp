// SPDX-License-Identifier: MIT
// Reads any bytes as a mount table: every entry has a path, a line gives at most one entry, and no
// line affects another.

#include "FuzzTarget.h"

#include <platform/System/MountTable.h>

#include <algorithm>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = fuzz::textOf(data, size);
    const auto entries = gps::parseMountTable(text);
    fuzz::require(entries.size() <= static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1,
                  "a line gives at most one entry");
    fuzz::require(
        std::ranges::none_of(entries, [](const auto& entry) { return entry.path.empty(); }),
        "an entry has a path");

    std::size_t alone = 0;
    for (std::size_t at = 0; at <= text.size();) {
        const auto end = std::min(text.find('\n', at), text.size());
        alone += gps::parseMountTable(text.substr(at, end - at)).size();
        at = end + 1;
    }
    fuzz::require(alone == entries.size(), "no line affects another");
    return 0;
}
