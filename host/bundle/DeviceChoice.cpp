// SPDX-License-Identifier: MIT
// A driver has no operation that selects a device: a user selects one in the pop-up of the driver's
// view. So this picks the pop-up's item, as a user would.

#include "host/bundle/DeviceChoice.h"

#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceSearch.h"
#include "host/bundle/Disk.h"
#include "host/bundle/SerialPort.h"

#include <gps/Characters.h>
#include <platform/OrvUtils/SerialPorts.h>
#include <platform/System/UserDefaults.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kExplain = "run \"magellangps devices --explain\" to see why";

std::string withoutTrailingSlashes(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

// Links are followed because serial ports have stable names that are links, such as by-id. Two
// paths that do not exist are never the same location.
bool isSameLocation(const std::string& a, const std::string& b)
{
    std::error_code failed;
    return withoutTrailingSlashes(a) == withoutTrailingSlashes(b) || fs::equivalent(a, b, failed);
}

std::string allLocations(const std::vector<Driver>& drivers)
{
    std::vector<std::string> locations;
    for (const auto& driver : drivers) {
        for (const auto& device : devicesOf(*driver))
            locations.push_back(device.location);
    }
    return joined(locations, ", ");
}

std::optional<gps::Error> keepDriversNamed(const std::string& name, std::vector<Driver>& drivers)
{
    const auto all = std::exchange(drivers, {});
    std::copy_if(all.begin(), all.end(), std::back_inserter(drivers),
                 [&](const Driver& driver) { return driverName(*driver) == name; });
    if (!drivers.empty())
        return std::nullopt;
    return hostError(fmt::format("There is no driver \"{}\"", name),
                     all.empty()
                         ? "The plug-in offers no drivers"
                         : fmt::format("The drivers are: {}. The driver for serial ports is "
                                       "available only while there is a port",
                                       driverNames(all)));
}

struct ListedDevice {
    ChosenDevice device;
    std::size_t index; // in the driver's list
};

std::optional<ListedDevice> findDevice(const std::vector<Driver>& drivers,
                                       const std::string& location)
{
    for (const auto& driver : drivers) {
        const auto devices = devicesOf(*driver);
        const auto found = std::find_if(devices.begin(), devices.end(), [&](const Device& device) {
            return isSameLocation(device.location, location);
        });
        if (found != devices.end())
            return ListedDevice{{driver, found->location},
                                static_cast<std::size_t>(found - devices.begin())};
    }
    return std::nullopt;
}

// Only drivers of mounted devices read the test folders.
void addTestFolder(const std::vector<Driver>& drivers, std::vector<std::string> folders,
                   const std::string& folder)
{
    folders.push_back(withoutTrailingSlashes(folder));
    setTestFolders(folders);
    for (const auto& driver : drivers) {
        if (driver->needsFileSystemRefresh())
            driver->refreshDeviceList();
    }
}

// @param drivers  only those that the request allows
gps::Error noSuchDevice(const std::vector<Driver>& drivers, const DeviceRequest& request)
{
    const auto locations = allLocations(drivers);
    std::string advice = "The devices are at: " + locations;
    if (locations.empty())
        advice = fmt::format(
            "{}, or {}",
            request.driver ? "The requested driver finds no devices; omit --driver"
                           : "No receiver is mounted and there is no serial port; connect one",
            kExplain);
    return hostError("There is no device at this location", std::move(advice), *request.device);
}

// @param drivers  only those that the request allows
gps::Error whyNotADevice(const std::vector<Driver>& drivers, const DeviceRequest& request)
{
    const auto& location = *request.device;
    std::error_code ignored;
    if (isDisk(location))
        return explainDisk(location);
    if (fs::is_regular_file(location, ignored))
        return hostError("This is a file, and a device is a folder or a serial port",
                         "Read a receiver's file with \"magellangps import FILE\"", location);
    if (auto reason = explainFolder(drivers, withoutTrailingSlashes(location)))
        return *reason;
    return noSuchDevice(drivers, request);
}

std::optional<gps::Error> chooseRequestedDevice(const std::vector<Driver>& drivers,
                                                const DeviceRequest& request, ChosenDevice& chosen)
{
    auto found = findDevice(drivers, *request.device);
    std::error_code ignored;
    if (!found && fs::is_directory(*request.device, ignored)) {
        addTestFolder(drivers, request.testFolders, *request.device);
        found = findDevice(drivers, *request.device);
    }
    if (!found)
        return whyNotADevice(drivers, request);
    const auto& driver = *found->device.driver;
    // Picking an item runs the driver's action, which selects the device for its operations.
    if (auto* const menu = deviceMenu(driver))
        menu->pick(found->index);
    if (!request.driver && !driver.isReady())
        return explainFolder(drivers, found->device.location)
            .value_or(hostError(
                "The device is not ready: its files cannot be read",
                "Check their permissions, or name the driver with --driver to see its own error",
                *request.device));
    chosen = std::move(found->device);
    return std::nullopt;
}

// Empty if the driver has no device.
std::string selectedLocation(const gps::GPSPlugInProtocol& driver)
{
    for (auto& device : devicesOf(driver)) {
        if (device.isSelected)
            return device.location;
    }
    return {};
}

// The port that a driver may choose by itself.
std::vector<Device>::const_iterator portToTry(const std::vector<Device>& ports)
{
    const auto known = std::find_if(ports.begin(), ports.end(),
                                    [](const Device& listed) { return listed.isKnownReceiver; });
    return known != ports.end() ? known : std::find_if(ports.begin(), ports.end(), isPortToTry);
}

// Selects a device in a driver for a user who named neither. Returns whether there is one.
bool selectByItself(const gps::GPSPlugInProtocol& driver)
{
    if (!driver.isReady() || !driver.needsSerialRefresh())
        return driver.isReady();
    const auto ports = devicesOf(driver);
    const auto port = portToTry(ports);
    auto* const menu = deviceMenu(driver);
    if (port == ports.end() || menu == nullptr)
        return false;
    if (!port->isSelected)
        menu->pick(static_cast<std::size_t>(port - ports.begin()));
    return true;
}

bool canChooseByItself(const gps::GPSPlugInProtocol& driver)
{
    if (!driver.isReady() || !driver.needsSerialRefresh())
        return driver.isReady();
    const auto ports = devicesOf(driver);
    return portToTry(ports) != ports.end();
}

} // namespace

// Not tolower(): scripts use these names, so they must not depend on the locale.
std::string driverName(const gps::GPSPlugInProtocol& driver)
{
    std::string name = driver.gpsName();
    for (char& c : name)
        c = c == ' ' ? '-' : gps::lowerCase(c);
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
        // A damaged record keeps its empty entry, because indexes must agree with the pop-up's.
        if (record == nullptr)
            continue;
        if (const auto* location = record->findString("location"))
            device.location = *location;
        if (const auto* name = record->findString("name"))
            device.name = *name;
        if (const auto* authorized = record->find("authorized"))
            device.authorized = authorized->boolReading();
        device.isOnUsb = record->contains("vendorID");
        const auto* receiver = record->find("receiver");
        device.isKnownReceiver = receiver != nullptr && receiver->boolReading();
    }
    return devices;
}

gps::DeviceDescription descriptionOf(const gps::GPSPlugInProtocol& driver,
                                     const std::string& location)
{
    const auto* const describer = dynamic_cast<const gps::GPSDeviceDescription*>(&driver);
    return describer != nullptr ? describer->deviceDescription(location) : gps::DeviceDescription{};
}

bool isPortToTry(const Device& port)
{
    const auto named = gps::UserDefaults::standard().stringArrayForKey(gps::kTestPortsKey);
    return port.isKnownReceiver || port.isOnUsb ||
           (named && std::find(named->begin(), named->end(), port.location) != named->end());
}

gps::PopUpButton* deviceMenu(const gps::GPSPlugInProtocol& driver)
{
    const auto view = driver.gpsView();
    return view ? view->find<gps::PopUpButton>("deviceListMenu") : nullptr;
}

void setTestFolders(const std::vector<std::string>& folders)
{
    gps::Array list;
    for (const auto& folder : folders)
        list.emplace_back(folder);
    gps::UserDefaults::standard().setForThisRun(kTestFoldersKey, std::move(list));
}

void prepareDrivers(const DeviceRequest& request)
{
    if (!request.testFolders.empty())
        setTestFolders(request.testFolders);
    if (request.device && isSerialPort(*request.device))
        addSerialPort(*request.device);
}

std::optional<gps::Error> chooseDevice(const std::vector<Driver>& drivers,
                                       const DeviceRequest& request, ChosenDevice& chosen)
{
    auto candidates = drivers;
    if (request.driver) {
        if (auto failure = keepDriversNamed(*request.driver, candidates))
            return failure;
    }
    if (request.device)
        return chooseRequestedDevice(candidates, request, chosen);
    if (request.needsFiles && !request.driver)
        std::erase_if(candidates,
                      [](const Driver& driver) { return driver->needsSerialRefresh(); });
    const auto found =
        std::find_if(candidates.begin(), candidates.end(), [&](const Driver& driver) {
            return request.driver || selectByItself(*driver);
        });
    if (found == candidates.end())
        return noReceiverError(candidates);
    chosen = {*found, selectedLocation(**found)};
    return std::nullopt;
}

bool hasDeviceToChoose(const std::vector<Driver>& drivers)
{
    return std::any_of(drivers.begin(), drivers.end(),
                       [](const Driver& driver) { return canChooseByItself(*driver); });
}

std::optional<gps::Error> chooseImporter(const std::vector<Driver>& drivers,
                                         const std::optional<std::string>& name, Driver& chosen)
{
    auto candidates = drivers;
    if (name) {
        if (auto failure = keepDriversNamed(*name, candidates))
            return failure;
    }
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [](const Driver& driver) { return driver->fileTypes(); });
    if (found == candidates.end())
        return hostError(name ? fmt::format("The driver \"{}\" cannot import files", *name)
                              : "No driver can import files",
                         "Run \"magellangps info\" to see what each driver can do");
    chosen = *found;
    return std::nullopt;
}

} // namespace host
