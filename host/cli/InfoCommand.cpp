// SPDX-License-Identifier: MIT

#include "host/base/Text.h"
#include "host/cli/Commands.h"
#include "host/operations/EventStream.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>

namespace host {
namespace {

using Json = nlohmann::ordered_json;

std::string textOf(const gps::Value& value)
{
    const auto* const text = value.as<std::string>();
    return text != nullptr ? *text : gps::describe(value);
}

// Only a try tells: what starts is stopped at once, and nothing that it reports is looked at.
bool isPVTOffered(gps::GPSPlugInProtocol& driver)
{
    const auto nobody = std::make_shared<EventStream>();
    nobody->close();
    return driver.gpsRunPVT(nobody, {}) && driver.gpsStopPVT();
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
    std::string text;
    const auto add = [&](bool isNeeded, const char* what) {
        if (isNeeded)
            text += (text.empty() ? "" : ", ") + std::string{what};
    };
    add(driver.needsFileSystemRefresh(), "volumes");
    add(driver.needsSerialRefresh(), "serial ports");
    add(needsUSBRefresh(driver), "USB devices");
    return text.empty() ? "nothing" : text;
}

void appendFact(std::string& text, const std::string& title, const std::string& fact)
{
    text += title + ": " + displayText(fact) + '\n';
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
        appendFact(text, "  Looks again after changes of", refreshText(*driver));
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
