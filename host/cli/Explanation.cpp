// SPDX-License-Identifier: MIT

#include "host/cli/Explanation.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/bundle/SerialPort.h"
#include "host/cli/Console.h"

#include <gps/GPSDeviceSearch.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using Verdict = gps::SearchedLocation::Verdict;

constexpr std::string_view kEnd =
    "\nA folder that holds a copy of a receiver's files is taken for one with --test-folder.\n";

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

bool mayOpen(const std::string& port)
{
    return ::faccessat(AT_FDCWD, port.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
}

/// A driver's places, with what the host itself finds out about a port: whether this user may open
/// it.
std::vector<gps::SearchedLocation> placesOf(const gps::GPSPlugInProtocol& driver)
{
    const auto* const search = dynamic_cast<const gps::GPSDeviceSearch*>(&driver);
    if (search == nullptr)
        return {};
    auto places = search->searchedLocations();
    for (auto& place : places) {
        if (driver.needsSerialRefresh() && place.advice.empty() && !mayOpen(place.location))
            place.advice = sentencesOf(explainPortFailure(place.location, errno));
    }
    return places;
}

std::string lineOf(const gps::SearchedLocation& place)
{
    auto line = place.location + " (" + place.sort + "), " +
                std::string{verdictText(place.verdict)} + ": " + place.reason + '.';
    if (!place.advice.empty())
        line += ' ' + place.advice + (place.advice.back() == '.' ? "" : ".");
    return "  " + displayText(line) + '\n';
}

/// A system has dozens of volumes that are never devices: those of one sort share a place.
void gatherPassedOver(std::vector<gps::SearchedLocation>& places)
{
    std::vector<gps::SearchedLocation> gathered;
    for (auto& place : places) {
        const auto isAlike = [&](const gps::SearchedLocation& other) {
            return place.verdict == Verdict::kSkipped && other.verdict == Verdict::kSkipped &&
                   other.sort == place.sort && other.reason == place.reason;
        };
        const auto alike = std::find_if(gathered.begin(), gathered.end(), isAlike);
        if (alike != gathered.end())
            alike->location += ", " + place.location;
        else
            gathered.push_back(std::move(place));
    }
    places = std::move(gathered);
}

std::string paragraphOf(const gps::GPSPlugInProtocol& driver)
{
    auto places = placesOf(driver);
    gatherPassedOver(places);
    std::stable_sort(places.begin(), places.end(),
                     [](const auto& a, const auto& b) { return a.verdict < b.verdict; });
    auto text = driverName(driver) + ":\n";
    for (const auto& place : places)
        text += lineOf(place);
    return places.empty() ? text + "  There was no place to look at.\n" : text;
}

} // namespace

std::string explanationOf(const PlugInBundle& plugIn)
{
    std::string text;
    bool hasSerialDriver = false;
    for (const auto& driver : plugIn.drivers) {
        text += paragraphOf(*driver);
        hasSerialDriver = hasSerialDriver || driver->needsSerialRefresh();
    }
    if (!hasSerialDriver)
        text += "No serial port was found. A cable's adapter makes one when it is plugged in; one "
                "that is not listed can be named "
                "with --device.\n";
    return text.append(kEnd);
}

Json searchedLocationsJson(const gps::GPSPlugInProtocol& driver)
{
    if (dynamic_cast<const gps::GPSDeviceSearch*>(&driver) == nullptr)
        return nullptr;
    auto list = Json::array();
    for (const auto& place : placesOf(driver))
        list.push_back({{"location", place.location},
                        {"sort", place.sort},
                        {"verdict", verdictText(place.verdict)},
                        {"reason", place.reason},
                        {"advice", place.advice.empty() ? Json() : Json(place.advice)}});
    return list;
}

} // namespace host
