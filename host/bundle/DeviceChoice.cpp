// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"

#include "host/base/HostError.h"
#include "host/base/Text.h"

#include <platform/System/UserDefaults.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace host {
namespace {

namespace fs = std::filesystem;

std::string withoutEndSlash(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

// Two ways to write one place are one device: a port goes by a link, too.
bool isSamePlace(const std::string& a, const std::string& b)
{
    std::error_code failed;
    return withoutEndSlash(a) == withoutEndSlash(b) ||
           (fs::canonical(a, failed) == fs::canonical(b, failed) && !failed);
}

std::string locations(const std::vector<Driver>& drivers)
{
    std::vector<std::string> places;
    for (const auto& driver : drivers) {
        for (const auto& device : devicesOf(*driver))
            places.push_back(device.location);
    }
    return joined(places, ", ");
}

std::optional<gps::Error> driversOfName(const std::string& name, std::vector<Driver>& drivers)
{
    const auto all = std::exchange(drivers, {});
    std::copy_if(all.begin(), all.end(), std::back_inserter(drivers),
                 [&](const Driver& driver) { return driverName(*driver) == name; });
    if (!drivers.empty())
        return std::nullopt;
    return hostError("There is no driver \"" + name + '"',
                     all.empty()
                         ? "The plug-in offers no driver at all"
                         : "The drivers are: " + driverNames(all) +
                               ". One for serial ports is offered only while there is a port");
}

// The driver that lists the device, with the device's place in its list.
std::optional<std::pair<Driver, std::size_t>> findDevice(const std::vector<Driver>& drivers,
                                                         const std::string& location)
{
    for (const auto& driver : drivers) {
        const auto devices = devicesOf(*driver);
        const auto found = std::find_if(devices.begin(), devices.end(), [&](const Device& device) {
            return isSamePlace(device.location, location);
        });
        if (found != devices.end())
            return std::pair{driver, static_cast<std::size_t>(found - devices.begin())};
    }
    return std::nullopt;
}

void addTestFolder(const std::vector<Driver>& drivers, std::vector<std::string> folders,
                   const std::string& folder)
{
    folders.push_back(withoutEndSlash(folder));
    useTestFolders(folders);
    for (const auto& driver : drivers) {
        if (driver->needsFileSystemRefresh())
            driver->refreshDeviceList();
    }
}

// @param isOneWished  whether the drivers are those of a name that was given
gps::Error noSuchDevice(const std::vector<Driver>& drivers, const std::string& location,
                        bool isOneWished)
{
    const auto places = locations(drivers);
    std::string advice = "The devices are at: " + places;
    if (places.empty() && isOneWished)
        advice = "This driver finds no device at all; leave out --driver, or see what "
                 "\"magellangps devices --explain\" tells";
    else if (places.empty())
        advice = "No mounted receiver and no serial port was found; connect one, or see what "
                 "\"magellangps devices --explain\" "
                 "tells";
    return hostError("There is no device at this place", std::move(advice), location);
}

gps::Error nothingReady()
{
    return hostError(
        "No device is ready",
        "Connect a receiver and wait until it is mounted, or connect it to a serial port; give a "
        "folder that holds a "
        "receiver's files with --test-folder; or see what \"magellangps devices --explain\" tells");
}

std::optional<gps::Error> chooseWished(const std::vector<Driver>& drivers, const DeviceWish& wish,
                                       Driver& chosen)
{
    auto found = findDevice(drivers, *wish.device);
    std::error_code ignored;
    if (!found && fs::is_directory(*wish.device, ignored)) {
        addTestFolder(drivers, wish.testFolders, *wish.device);
        found = findDevice(drivers, *wish.device);
    }
    if (!found)
        return noSuchDevice(drivers, *wish.device, wish.driver.has_value());
    const auto& [driver, index] = *found;
    if (auto* const menu = deviceMenu(*driver))
        menu->pick(index);
    if (!wish.driver && !driver->isReady())
        return hostError(
            "The device is not ready: its files may not be read",
            "Check their permissions, or name the driver with --driver to see its own error",
            *wish.device);
    chosen = driver;
    return std::nullopt;
}

} // namespace

std::string driverName(const gps::GPSPlugInProtocol& driver)
{
    std::string name = driver.gpsName();
    for (char& c : name) {
        if (c == ' ')
            c = '-';
        else if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return name;
}

std::string driverNames(const std::vector<Driver>& drivers)
{
    std::vector<std::string> names(drivers.size());
    std::transform(drivers.begin(), drivers.end(), names.begin(),
                   [](const Driver& driver) { return driverName(*driver); });
    return joined(names, ", ");
}

std::vector<Device> devicesOf(const gps::GPSPlugInProtocol& driver)
{
    const auto* const menu = deviceMenu(driver);
    const auto selected = menu != nullptr ? menu->selected() : std::nullopt;
    std::vector<Device> devices;
    for (const auto& value : driver.deviceList()) {
        const auto* const record = value.as<gps::Dictionary>();
        auto& device = devices.emplace_back();
        device.isSelected = selected == devices.size() - 1;
        if (record == nullptr)
            continue;
        if (const auto* location = record->findString("location"))
            device.location = *location;
        if (const auto* name = record->findString("name"))
            device.name = *name;
        if (const auto* authorized = record->find("authorized"))
            device.authorized = authorized->boolReading();
    }
    return devices;
}

std::string selectedPlace(const gps::GPSPlugInProtocol& driver)
{
    for (auto& device : devicesOf(driver)) {
        if (device.isSelected)
            return device.location;
    }
    return {};
}

gps::PopUpButton* deviceMenu(const gps::GPSPlugInProtocol& driver)
{
    const auto view = driver.gpsView();
    return view ? view->find<gps::PopUpButton>("deviceListMenu") : nullptr;
}

void useTestFolders(const std::vector<std::string>& folders)
{
    gps::Array list;
    for (const auto& folder : folders)
        list.emplace_back(folder);
    gps::UserDefaults::standard().setForThisRun(kTestFoldersKey, std::move(list));
}

std::optional<gps::Error> chooseDevice(const std::vector<Driver>& drivers, const DeviceWish& wish,
                                       Driver& chosen)
{
    auto candidates = drivers;
    if (wish.driver) {
        if (auto failure = driversOfName(*wish.driver, candidates))
            return failure;
    }
    if (wish.device)
        return chooseWished(candidates, wish, chosen);
    const auto found =
        std::find_if(candidates.begin(), candidates.end(),
                     [&](const Driver& driver) { return wish.driver || driver->isReady(); });
    if (found == candidates.end())
        return nothingReady();
    chosen = *found;
    return std::nullopt;
}

std::optional<gps::Error> chooseImporter(const std::vector<Driver>& drivers,
                                         const std::optional<std::string>& name, Driver& chosen)
{
    auto candidates = drivers;
    if (name) {
        if (auto failure = driversOfName(*name, candidates))
            return failure;
    }
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [](const Driver& driver) { return driver->fileTypes(); });
    if (found == candidates.end())
        return hostError(name ? "This driver cannot import files" : "No driver can import files",
                         "See what \"magellangps info\" lists");
    chosen = *found;
    return std::nullopt;
}

} // namespace host
