// SPDX-License-Identifier: MIT
// Prints the devices as a table, or as one JSON document with the view's elements beside them. With
// --watch the drivers look again after each change that they care about.

#include "host/base/JsonDocument.h"
#include "host/base/Table.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/PortQuery.h"
#include "host/words/Explanation.h"

#include <platform/System/DeviceMonitor.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace host {
namespace {

constexpr std::size_t kModelColumn = 3;
constexpr std::size_t kFirmwareColumn = 4;

// A missing element counts as hidden: either way the user does not see it.
bool isHidden(const gps::View* element)
{
    return element == nullptr || element->isHidden();
}

Json viewJson(const gps::GPSPlugInProtocol& driver)
{
    const auto* const menu = deviceMenu(driver);
    const auto view = driver.gpsView();
    const auto* const button = view ? view->find<gps::Button>("deviceButton") : nullptr;
    const Json items = menu != nullptr ? Json(menu->items()) : Json::array();
    return {{"deviceListMenu",
             {{"hidden", isHidden(menu)},
              {"items", items},
              {"selected", menu != nullptr ? orNull(menu->selected()) : Json()}}},
            {"deviceButton", {{"hidden", isHidden(button)}}}};
}

Json driverJson(const gps::GPSPlugInProtocol& driver, bool explain)
{
    Json devices = Json::array();
    for (const auto& device : devicesOf(driver)) {
        const auto description = descriptionOf(driver, device.location);
        devices.push_back({{"location", device.location},
                           {"name", orNull(device.name)},
                           {"authorized", orNull(device.authorized)},
                           {"selected", device.isSelected},
                           {"model", orNull(description.model)},
                           {"firmware", orNull(description.firmware)}});
    }
    Json json{{"class", driver.className()},
              {"name", driver.gpsName()},
              {"ready", driver.isReady()},
              {"view", viewJson(driver)},
              {"devices", devices}};
    if (explain)
        json["searched"] = searchedLocationsJson(driver);
    return json;
}

std::string documentOf(const PlugInBundle& plugIn, bool explain)
{
    Json drivers = Json::array();
    for (const auto& driver : plugIn.drivers)
        drivers.push_back(driverJson(*driver, explain));
    Json document{{"drivers", drivers}};
    if (explain)
        document["unmounted"] = unmountedDisksJson();
    return document.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string authorizedText(const std::optional<bool>& authorized)
{
    if (!authorized)
        return {};
    return *authorized ? "yes" : "no";
}

// One row per device. Columns that are empty in every row are left out.
std::string tableOf(const std::vector<std::vector<std::string>>& rows)
{
    // Locations are not shortened: users copy them into --device.
    const std::vector<Table::Column> columns{{""},
                                             {"Driver"},
                                             {"Device"},
                                             {"Model"},
                                             {"Firmware"},
                                             {"Authorized"},
                                             {"Location", Table::Align::kLeft, std::string::npos}};
    std::vector<std::size_t> shown;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        const bool isOptional = column == kModelColumn || column == kFirmwareColumn;
        if (!isOptional || std::any_of(rows.begin(), rows.end(),
                                       [&](const auto& row) { return !row[column].empty(); }))
            shown.push_back(column);
    }
    const auto chosen = [&shown](const auto& all) {
        std::decay_t<decltype(all)> some;
        for (const auto column : shown)
            some.push_back(all[column]);
        return some;
    };
    Table table{chosen(columns)};
    for (const auto& row : rows)
        table.add(chosen(row));
    return table.text();
}

std::string deviceListOf(const PlugInBundle& plugIn, bool explain)
{
    std::vector<std::vector<std::string>> rows;
    for (const auto& driver : plugIn.drivers) {
        for (const auto& device : devicesOf(*driver)) {
            const auto description = descriptionOf(*driver, device.location);
            rows.push_back({device.isSelected ? "*" : "", driverName(*driver),
                            device.name.value_or(""), description.model.value_or(""),
                            description.firmware.value_or(""), authorizedText(device.authorized),
                            device.location});
        }
    }
    auto text =
        rows.empty() ? "No mounted receiver and no serial port was found.\n" : tableOf(rows);
    return explain ? text + '\n' + explanationOf(plugIn) : text;
}

bool hasDevices(const PlugInBundle& plugIn)
{
    return std::any_of(plugIn.drivers.begin(), plugIn.drivers.end(),
                       [](const Driver& driver) { return !devicesOf(*driver).empty(); });
}

// A plug-in may offer its driver for serial ports only once there is a port, so a change of ports
// can bring a new driver.
void refresh(PlugInBundle& plugIn, const gps::DeviceChanges& changes)
{
    bool hasSerialDriver = false;
    for (const auto& driver : plugIn.drivers) {
        hasSerialDriver |= driver->needsSerialRefresh();
        if ((changes.volumes && driver->needsFileSystemRefresh()) ||
            (changes.serialPorts && driver->needsSerialRefresh()))
            driver->refreshDeviceList();
    }
    if (changes.serialPorts && !hasSerialDriver)
        addNewDrivers(plugIn);
}

} // namespace

ExitStatus runDevices(const PlugInBundle& plugIn, const DevicesOptions& options,
                      const Console& console)
{
    auto current = plugIn; // a copy: it gets new drivers while watching
    const auto text = [&] {
        return options.json ? documentOf(current, options.explain)
                            : deviceListOf(current, options.explain);
    };
    if (options.ask) {
        const auto asked = askPorts(current, options, console);
        const auto printed = print(text(), console);
        return printed == ExitStatus::kSuccess ? asked : printed;
    }
    if (!options.watch) {
        const auto status = print(text(), console);
        if (!options.json && !options.explain && hasDevices(current) &&
            !hasDeviceToChoose(current.drivers))
            console.note("No receiver is mounted, and a serial port is asked only if it is named "
                         "with --device. \"magellangps devices --explain\" shows more.");
        return status;
    }
    gps::DeviceMonitor monitor; // before the first output, so that no change is missed
    auto status = print(text(), console);
    // Ends by a signal, or when the output cannot be written.
    while (status == ExitStatus::kSuccess) {
        const auto changes = monitor.wait(std::chrono::milliseconds{-1});
        if (!changes.volumes && !changes.serialPorts)
            continue;
        refresh(current, changes);
        status = print(text(), console);
    }
    return status;
}

} // namespace host
