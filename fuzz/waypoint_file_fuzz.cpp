// SPDX-License-Identifier: MIT
// Reads any bytes as a waypoint file; writing the waypoints and reading them again changes nothing.

#include "DeviceFile.h"

#include <plugin/codec/WayPointSentence.h>

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::checkFile(fuzz::textOf(data, size), magellan::RecordKind::kWaypoints,
                    [](const fuzz::Records& records) {
                        return fuzz::joinedLines(
                            magellan::makeWayPointSentencesFromWaypointList(records.waypoints));
                    });
    return 0;
}
