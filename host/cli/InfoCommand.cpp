// SPDX-License-Identifier: MIT
// Prints what the plug-in and its drivers report about themselves, as text or as one JSON document.

#include "host/base/JsonDocument.h"
#include "host/base/Text.h"
#include "host/cli/Commands.h"
#include "host/operations/EventStream.h"

#include <fmt/format.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace host {
namespace {

std::string textOf(const gps::Value& value)
{
    const auto* const text = value.as<std::string>();
    return text != nullptr ? *text : gps::describe(value);
}

// The interface has no query for this, so it is tried: a position stream that starts is stopped at
// once, and its reports are discarded.
bool isPVTOffered(gps::GPSPlugInProtocol& driver)
{
    const auto discarded = std::make_shared<EventStream>();
    discarded->close();
    return driver.gpsRunPVT(discarded, {}) && driver.gpsStopPVT();
}

bool needsUSBRefresh(const gps::GPSPlugInProtocol& driver)
{
    std::int32_t vendor = 0;
    std::int32_t product = 0;
    return driver.needsUSBRefreshOnVendor(&vendor, &product);
}

Json driverJson(gps::GPSPlugInProtocol& driver)
{
    const auto types = driver.fileTypes();
    return {{"class", driver.className()},
            {"name", driver.gpsName()},
            {"capabilities", driver.gpsCapabilities()},
            {"fileTypes", types ? Json(*types) : Json()},
            {"ready", driver.isReady()},
            {"needsSerialRefresh", driver.needsSerialRefresh()},
            {"needsFileSystemRefresh", driver.needsFileSystemRefresh()},
            {"needsUSBRefresh", needsUSBRefresh(driver)},
            {"isPVTOffered", isPVTOffered(driver)}};
}

std::string documentOf(const PlugInBundle& plugIn)
{
    Json info = Json::object();
    for (const auto& [key, value] : plugIn.info)
        info[key] = textOf(value);
    Json drivers = Json::array();
    for (const auto& driver : plugIn.drivers)
        drivers.push_back(driverJson(*driver));
    const Json document{{"name", plugIn.name},
                        {"class", plugIn.plugInClass},
                        {"apiVersion", plugIn.apiVersion},
                        {"info", info},
                        {"drivers", drivers}};
    return document.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string yesNo(bool yes)
{
    return yes ? "yes" : "no";
}

std::string typesText(const gps::GPSPlugInProtocol& driver)
{
    const auto types = driver.fileTypes().value_or(std::vector<std::string>{});
    return types.empty() ? "none" : joined(types, ", ");
}

std::string refreshText(const gps::GPSPlugInProtocol& driver)
{
    std::vector<std::string> changes;
    if (driver.needsFileSystemRefresh())
        changes.emplace_back("volumes");
    if (driver.needsSerialRefresh())
        changes.emplace_back("serial ports");
    if (needsUSBRefresh(driver))
        changes.emplace_back("USB devices");
    return changes.empty() ? "nothing" : joined(changes, ", ");
}

void appendFact(std::string& text, const std::string& title, const std::string& fact)
{
    text += fmt::format("{}: {}\n", title, displayText(fact));
}

std::string textOf(const PlugInBundle& plugIn)
{
    std::string text;
    appendFact(text, "Plug-in", plugIn.name);
    appendFact(text, "Class", plugIn.plugInClass);
    appendFact(text, "API version", std::to_string(plugIn.apiVersion));
    for (const auto& [key, value] : plugIn.info)
        appendFact(text, displayText(key), textOf(value));
    for (const auto& driver : plugIn.drivers) {
        appendFact(text, "\nDriver", driver->gpsName());
        appendFact(text, "  Class", driver->className());
        appendFact(text, "  Capabilities", driver->gpsCapabilities());
        appendFact(text, "  Imports", typesText(*driver));
        appendFact(text, "  Ready", yesNo(driver->isReady()));
        appendFact(text, "  Refreshes on changes of", refreshText(*driver));
        appendFact(text, "  Live position", yesNo(isPVTOffered(*driver)));
    }
    return text;
}

} // namespace

ExitStatus runInfo(const PlugInBundle& plugIn, const InfoOptions& options, const Console& console)
{
    return print(options.json ? documentOf(plugIn) : textOf(plugIn), console);
}

} // namespace host
