// SPDX-License-Identifier: MIT
// Merges no records into any bytes as a receiver's default file, three times. The result can always
// be read, and the third merge does not change it.

#include "DeviceFile.h"

#include <plugin/fsdevice/DeviceFileWriters.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

template <typename Merge> void checkMerge(std::string_view input, Merge merge)
{
    std::array<std::string, 3> texts;
    try {
        texts[0] = merge(input);
    } catch (const gps::RangeError&) {
        return; // a line of the input is too short
    }
    texts[1] = merge(texts[0]);
    texts[2] = merge(texts[1]);
    fuzz::require(texts[1] == texts[2], "merging nothing changes nothing");
}

void checkMerges(std::string_view input)
{
    checkMerge(input, [](std::string_view text) { return magellan::mergedWaypointText({}, text); });
    checkMerge(input, [](std::string_view text) { return magellan::mergedRouteText({}, text); });
    checkMerge(input, [](std::string_view text) {
        return magellan::mergedGeocacheText({}, text).value();
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto input = fuzz::textOf(data, size);
    checkMerges(input);
    checkMerges(fuzz::linesWithChecksums(input));
    return 0;
}
