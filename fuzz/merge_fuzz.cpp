// SPDX-License-Identifier: MIT
// Merges no records into any bytes as a receiver's default file, again and again. The result can
// always be read, and the last merge does not change it.

#include "DeviceFile.h"

#include <plugin/fsdevice/DeviceFileWriters.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// The first merge changes names and drops what cannot be written, and the second drops what these
/// changes make equal or unknown.
constexpr int kMerges = 3;

/// The third merge of routes changes the numbers of those that follow a route without points.
constexpr int kRouteMerges = 4;

template <typename Merge> void checkMerge(std::string_view input, int merges, Merge merge)
{
    std::string before;
    std::string text;
    try {
        text = merge(input);
    } catch (const gps::RangeError&) {
        return; // a line of the input is too short
    }
    for (int i = 1; i < merges; ++i)
        before = std::exchange(text, merge(text));
    fuzz::require(text == before, "merging nothing changes nothing");
}

void checkMerges(std::string_view input)
{
    checkMerge(input, kMerges,
               [](std::string_view text) { return magellan::mergedWaypointText({}, text); });
    checkMerge(input, kRouteMerges,
               [](std::string_view text) { return magellan::mergedRouteText({}, text); });
    checkMerge(input, kMerges, [](std::string_view text) {
        return magellan::mergedGeocacheText({}, text).value();
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto input = fuzz::textOf(data, size);
    checkMerges(input);
    if (const auto corrected = fuzz::linesWithChecksums(input); corrected != input)
        checkMerges(corrected);
    return 0;
}
