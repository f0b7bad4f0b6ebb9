// SPDX-License-Identifier: MIT
// The files go to /dev/shm if there is one, so that no disk is measured.

#include "LargeFile.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace bench {
namespace {

/// A slow spiral: no two sentences have the same position.
std::string position(std::size_t i)
{
    const auto at = static_cast<double>(i);
    const auto latitude =
        gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(46.5 + 0.3 * std::sin(at / 5000), true);
    const auto longitude =
        gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(7.3 + at / 1e6, false);
    return latitude->degreesMinutes + "," + latitude->direction + "," + longitude->degreesMinutes +
           "," + longitude->direction;
}

std::string body(Kind kind, std::size_t i)
{
    const std::string number = std::to_string(i);
    switch (kind) {
    case Kind::kTrack: {
        const auto text =
            gps::NMEAUtils::makeNMEADateFrom(1218435348 + static_cast<std::int64_t>(i));
        return "PMGNTRK," + position(i) + ",0" + std::to_string(1000 + i % 1000) + ",M," +
               text.time + ",A,," + text.date;
    }
    case Kind::kWaypoints:
        return "PMGNWPL," + position(i) + ",0001529,M,Point " + number + ",by the lake,ah";
    case Kind::kGeocaches:
        return "PMGNGEO," + position(i) + ",0001529,M,Cache " + number +
               ",bring a pen,bergziege,under a stone,Traditional,140508,,1.5,4";
    }
    return {};
}

std::string_view nameOf(Kind kind)
{
    switch (kind) {
    case Kind::kTrack:
        return "large.log";
    case Kind::kWaypoints:
        return "large.upt";
    case Kind::kGeocaches:
        return "large.gs";
    }
    return {};
}

std::filesystem::path makeFolder()
{
    const std::filesystem::path memory{"/dev/shm"};
    auto name =
        ((std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path()) /
         "bench-XXXXXX")
            .string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder for a large file: " + name);
    return name;
}

} // namespace

LargeFile::LargeFile(Kind kind, std::size_t sentences) : folder_(makeFolder()), name_(nameOf(kind))
{
    std::ofstream file{path(), std::ios::binary};
    file.exceptions(std::ios::badbit | std::ios::failbit);
    for (std::size_t i = 0; i < sentences; ++i)
        file << gps::NMEAUtils::addChecksumToNMEASentence(body(kind, i)) << "\r\n";
    file << gps::NMEAUtils::addChecksumToNMEASentence("PMGNCMD,END");
    file.close();
    bytes_ = std::filesystem::file_size(path());
}

LargeFile::~LargeFile()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

} // namespace bench
