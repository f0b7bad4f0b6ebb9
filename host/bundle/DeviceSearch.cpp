// SPDX-License-Identifier: MIT
// A driver for serial ports accepts every port, since only a download shows what is connected. So
// its ports are offered to the user, and the other drivers' locations are explained.

#include "host/bundle/DeviceSearch.h"

#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/bundle/Disk.h"

#include <gps/Characters.h>
#include <gps/GPSDeviceSearch.h>

#include <fmt/format.h>

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace host {
namespace {

using Verdict = gps::SearchedLocation::Verdict;

struct Search {
    std::vector<gps::SearchedLocation> examined;
    std::size_t skipped = 0;
    std::vector<std::string> ports;
    std::vector<std::string> unmounted; // disks
};

Search searchOf(const std::vector<Driver>& drivers)
{
    Search search;
    for (const auto& driver : drivers) {
        const auto* const searcher = dynamic_cast<const gps::GPSDeviceSearch*>(driver.get());
        if (searcher == nullptr)
            continue;
        for (auto& searched : searcher->searchedLocations()) {
            if (driver->needsSerialRefresh())
                search.ports.push_back(searched.location);
            else if (searched.verdict == Verdict::kSkipped)
                ++search.skipped;
            else
                search.examined.push_back(searched);
        }
    }
    return search;
}

// A driver's sentence after a colon or in brackets: "It has no file" becomes "it has no file".
std::string clause(std::string sentence)
{
    if (!sentence.empty())
        sentence[0] = gps::lowerCase(sentence[0]);
    return sentence;
}

std::string lookedAt(const Search& search)
{
    std::vector<std::string> parts;
    std::error_code ignored;
    for (const auto& searched : search.examined)
        parts.push_back(fmt::format("{} ({})", searched.location,
                                    std::filesystem::exists(searched.location, ignored)
                                        ? clause(searched.reason)
                                        : "there is no such folder"));
    if (search.skipped > 0)
        parts.push_back(fmt::format("{} {} that cannot be a receiver", search.skipped,
                                    search.skipped == 1 ? "volume" : "volumes"));
    for (const auto& disk : search.unmounted)
        parts.push_back(fmt::format("{} (a disk that is not mounted)", disk));
    if (!search.ports.empty())
        parts.push_back(fmt::format("{} (serial {}, asked only on request)",
                                    joined(search.ports, ", "),
                                    search.ports.size() == 1 ? "port" : "ports"));
    return joined(parts, "; ");
}

} // namespace

gps::Error noReceiverError(const std::vector<Driver>& drivers)
{
    auto search = searchOf(drivers);
    for (auto& disk : unmountedDisks())
        search.unmounted.push_back(std::move(disk.node));
    for (const auto& searched : search.examined) {
        if (!searched.advice.empty())
            return hostError(searched.reason, searched.advice, searched.location);
    }
    const auto places = lookedAt(search);
    const auto disk = search.unmounted.empty() ? std::string{}
                                               : fmt::format(", {}mount the disk with --mount",
                                                             search.ports.empty() ? "or " : "");
    const auto port = search.ports.empty() ? std::string{}
                                           : fmt::format(", or name a serial port with --device {}",
                                                         search.ports.front());
    return hostError(
        places.empty() ? "No receiver is mounted" : "No receiver is mounted. Looked at: " + places,
        fmt::format("Connect a receiver and wait until it is mounted{}{}; \"magellangps devices "
                    "--explain\" shows more",
                    disk, port));
}

std::optional<gps::Error> explainFolder(const std::vector<Driver>& drivers,
                                        const std::string& folder)
{
    for (const auto& searched : searchOf(drivers).examined) {
        if (searched.location != folder)
            continue;
        return hostError(searched.reason,
                         searched.verdict == Verdict::kAccepted || !searched.advice.empty()
                             ? searched.advice
                             : "If it is a memory card or a copy of one, " +
                                   advice(fmt::format("read it with \"magellangps acquire --card "
                                                      "'{}'\"",
                                                      folder),
                                          "import the files in it"),
                         folder);
    }
    return std::nullopt;
}

} // namespace host
