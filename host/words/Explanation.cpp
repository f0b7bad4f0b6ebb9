// SPDX-License-Identifier: MIT
// What a driver reports about its search, plus one thing that the host checks itself: whether the
// user may open a port. The plug-in's texts are English, so the rest of a paragraph is, too.

#include "host/words/Explanation.h"

#include "host/base/FrontEnd.h"
#include "host/base/JsonDocument.h"
#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/bundle/SerialPort.h"

#include <gps/GPSDeviceSearch.h>

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

using Verdict = gps::SearchedLocation::Verdict;

std::string testFolderAdvice()
{
    return "\nTo use a folder that holds a copy of a receiver's files, " +
           advice("name it with --test-folder.\n", "choose \"Open Folder…\" in the menu.\n");
}

// The JSON document's words, which scripts depend on.
std::string_view verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::kAccepted:
        return "taken";
    case Verdict::kRejected:
        return "not taken";
    case Verdict::kSkipped:
        break;
    }
    return "passed over";
}

std::string_view verdictForPeople(Verdict verdict)
{
    switch (verdict) {
    case Verdict::kAccepted:
        return "accepted";
    case Verdict::kRejected:
        return "rejected";
    case Verdict::kSkipped:
        break;
    }
    return "skipped";
}

// Does not open the port, because a list must not disturb whoever uses it. searchedBy() reads its
// errno.
bool mayOpen(const std::string& port)
{
    return ::faccessat(AT_FDCWD, port.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
}

std::vector<gps::SearchedLocation> searchedBy(const gps::GPSPlugInProtocol& driver)
{
    const auto* const search = dynamic_cast<const gps::GPSDeviceSearch*>(&driver);
    if (search == nullptr)
        return {};
    auto locations = search->searchedLocations();
    for (auto& searched : locations) {
        if (driver.needsSerialRefresh() && searched.advice.empty() && !mayOpen(searched.location))
            searched.advice = sentencesOf(explainPortFailure(searched.location, errno));
    }
    return locations;
}

std::string lineOf(const gps::SearchedLocation& searched)
{
    auto line = fmt::format("{} ({}), {}: {}.", searched.location, searched.sort,
                            verdictForPeople(searched.verdict), searched.reason);
    if (!searched.advice.empty())
        line += fmt::format(" {}{}", searched.advice, searched.advice.back() == '.' ? "" : ".");
    return fmt::format("  {}\n", displayText(line));
}

// A system has dozens of volumes that are never devices: those skipped for the same reason share a
// line.
void mergeSkipped(std::vector<gps::SearchedLocation>& locations)
{
    std::vector<gps::SearchedLocation> merged;
    for (auto& searched : locations) {
        const auto isAlike = [&](const gps::SearchedLocation& other) {
            return searched.verdict == Verdict::kSkipped && other.verdict == Verdict::kSkipped &&
                   other.sort == searched.sort && other.reason == searched.reason;
        };
        const auto alike = std::find_if(merged.begin(), merged.end(), isAlike);
        if (alike != merged.end())
            alike->location += ", " + searched.location;
        else
            merged.push_back(std::move(searched));
    }
    locations = std::move(merged);
}

std::string paragraphOf(const gps::GPSPlugInProtocol& driver)
{
    auto locations = searchedBy(driver);
    mergeSkipped(locations);
    // By the order of the enumerators: accepted, rejected, skipped.
    std::stable_sort(locations.begin(), locations.end(),
                     [](const auto& a, const auto& b) { return a.verdict < b.verdict; });
    auto text = driverName(driver) + ":\n";
    for (const auto& searched : locations)
        text += lineOf(searched);
    return locations.empty() ? text + "  Nothing to examine was found.\n" : text;
}

// Drivers see only what is mounted.
std::string unmountedParagraph(const std::vector<gps::RemovableDisk>& unmounted)
{
    std::string text;
    for (const auto& disk : unmounted)
        text += fmt::format(
            "  {}\n",
            displayText(fmt::format(
                "{} ({}).{}", disk.node, describeFileSystem(disk),
                advice(fmt::format(" Mount it with \"{}\".", mountCommand(disk.node)), ""))));
    return text.empty()
               ? text
               : "not mounted:\n" + text +
                     advice("With --mount, the commands acquire, open, send, restore and watch "
                            "mount these disks and unmount them afterwards.\n",
                            "");
}

} // namespace

std::string describeFileSystem(const gps::RemovableDisk& disk)
{
    return disk.label.empty() ? disk.fileSystem
                              : fmt::format("{} \"{}\"", disk.fileSystem, disk.label);
}

std::string explanationOf(const PlugInBundle& plugIn,
                          const std::vector<gps::RemovableDisk>& unmounted)
{
    std::string text;
    bool hasSerialDriver = false;
    for (const auto& driver : plugIn.drivers) {
        text += paragraphOf(*driver);
        hasSerialDriver = hasSerialDriver || driver->needsSerialRefresh();
    }
    if (!hasSerialDriver)
        text += "No serial port was found. A USB cable creates one when it is plugged in. " +
                advice("A port that is not listed can be named with --device.\n", "\n");
    return text.append(unmountedParagraph(unmounted)).append(testFolderAdvice());
}

Json unmountedDisksJson()
{
    auto list = Json::array();
    for (const auto& disk : unmountedDisks())
        list.push_back({{"location", disk.node},
                        {"fileSystem", disk.fileSystem},
                        {"label", disk.label.empty() ? Json() : Json(disk.label)},
                        {"command", mountCommand(disk.node)}});
    return list;
}

Json searchedLocationsJson(const gps::GPSPlugInProtocol& driver)
{
    if (dynamic_cast<const gps::GPSDeviceSearch*>(&driver) == nullptr)
        return nullptr;
    auto list = Json::array();
    for (const auto& searched : searchedBy(driver))
        list.push_back({{"location", searched.location},
                        {"sort", searched.sort},
                        {"verdict", verdictText(searched.verdict)},
                        {"reason", searched.reason},
                        {"advice", searched.advice.empty() ? Json() : Json(searched.advice)}});
    return list;
}

} // namespace host
