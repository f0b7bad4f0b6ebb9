// SPDX-License-Identifier: MIT
// Reads any bytes as a track log; writing the points and reading them again changes nothing.

#include "DeviceFile.h"

#include <plugin/codec/TrackPointSentence.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

std::string written(const fuzz::Records& records)
{
    std::vector<std::string> lines;
    for (const auto& track : records.tracks) {
        for (const auto& point : *track.as<gps::Dictionary>()->find("points")->as<gps::Array>()) {
            if (auto line = magellan::makeTrackPointSentenceWithPoint(*point.as<gps::GPSPoint>()))
                lines.push_back(std::move(*line));
        }
    }
    return fuzz::joinedLines(lines);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::checkFile(fuzz::textOf(data, size), magellan::RecordKind::kTracks, written);
    return 0;
}
