// SPDX-License-Identifier: MIT
// Merging: any bytes as what a receiver's default file holds, with nothing merged into it, again
// and again. What was written can be read, and from the second time on nothing changes any more.

#include "DeviceFile.h"

#include <array>

#include <plugin/fsdevice/DeviceFileWriters.h>

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
    checkMerges(fuzz::linesFramedAnew(input));
    return 0;
}
