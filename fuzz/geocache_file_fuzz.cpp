// SPDX-License-Identifier: MIT
// Reads any bytes as a geocache file; writing the geocaches and reading them again changes nothing.

#include "DeviceFile.h"

#include <plugin/codec/GeoCacheSentence.h>

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::checkFile(fuzz::textOf(data, size), magellan::RecordKind::kGeocaches,
                    [](const fuzz::Records& records) {
                        const auto lines =
                            magellan::makeGeocacheSentencesFromGeocacheList(records.waypoints);
                        fuzz::require(lines.has_value(), "geocaches that were read have points");
                        return fuzz::joinedLines(*lines);
                    });
    return 0;
}
