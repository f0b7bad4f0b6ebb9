// SPDX-License-Identifier: MIT
// Drivers list their devices anew only when they are told to refresh. One for serial ports is
// offered only while there is a port, so the plug-in is asked again when ports come.

#include "host/watching/Watcher.h"

#include "host/bundle/DeviceChoice.h"
#include "host/files/Files.h"
#include "host/files/StateFolder.h"
#include "host/transfer/Download.h"
#include "host/watching/KnownRecords.h"
#include "host/watching/NewRecordFilter.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace host {
namespace {

namespace fs = std::filesystem;

// Finding out whether a receiver is on a serial port takes long, so each port is asked only once.
std::size_t mostTriesWith(const gps::GPSPlugInProtocol& driver)
{
    return driver.needsSerialRefresh() ? 1 : Watcher::kMostTries;
}

} // namespace

Watcher::Watcher(PlugInBundle plugIn, WatchRequest request, WatchCallback callback)
    : plugIn_(std::move(plugIn)), request_(std::move(request)), callback_(std::move(callback))
{
    if (request_.disks != nullptr)
        disks_.emplace(*request_.disks);
}

std::optional<gps::Error> Watcher::run(const StopSignals& stop)
{
    constexpr std::chrono::milliseconds kNoLimit{-1};
    if (auto failure = makeFolders(request_.folder))
        return failure;
    stop_ = &stop;
    gps::DeviceMonitor monitor{stop.file()}; // before the first look, so that no change is missed
    report({.kind = WatchEvent::Kind::kStarted});
    reportMissingDriver();
    for (std::size_t looks = 0; !isStopped();) {
        if (look())
            looks = 0;
        const auto limit = looks < kFurtherLooks.size() ? kFurtherLooks[looks] : kNoLimit;
        const auto changes = monitor.wait(limit);
        // A wait that ends without a change is a further look.
        looks = changes.volumes || changes.serialPorts ? 0 : looks + 1;
        refresh(changes);
    }
    unmountDisks(true);
    stop_ = nullptr;
    return std::nullopt;
}

bool Watcher::look()
{
    mountDisks();
    const auto changes = devices_.update(connectedDevices());
    for (const auto& device : changes.gone)
        report({.kind = WatchEvent::Kind::kGone, .device = device});
    for (const auto& device : changes.appeared)
        report({.kind = WatchEvent::Kind::kAppeared, .device = device});
    for (const auto& device : devices_.due()) {
        if (isStopped())
            break;
        saveFrom(device);
    }
    unmountDisks(false);
    return !changes.appeared.empty();
}

void Watcher::mountDisks()
{
    if (!disks_)
        return;
    const auto look = disks_->look();
    for (const auto& error : look.errors)
        report({.kind = WatchEvent::Kind::kNotMounted, .error = error});
    if (look.hasMounted)
        refresh({.volumes = true});
}

// Unmounts the disks that nothing is to be downloaded from any more.
void Watcher::unmountDisks(bool isAtEnd)
{
    if (!disks_)
        return;
    const auto connected = connectedDevices();
    const auto isAt = [](const std::string& folder) {
        return [&folder](const WatchedDevice& device) { return device.location == folder; };
    };
    const auto due = devices_.due();
    for (const auto& disk : std::vector<MountedDisks::Disk>{disks_->mounted()}) {
        if (!isAtEnd && std::any_of(due.begin(), due.end(), isAt(disk.folder)))
            continue;
        WatchEvent event{.kind = WatchEvent::Kind::kUnmounted};
        event.error = disks_->unmount(disk.node);
        const auto device = std::find_if(connected.begin(), connected.end(), isAt(disk.folder));
        if (device == connected.end()) // no receiver
            continue;
        event.device = *device;
        report(event);
        refresh({.volumes = true});
    }
}

// Serial ports only on request: finding out whether a receiver is there means writing to the port,
// which may belong to something else.
bool Watcher::isWatched(const gps::GPSPlugInProtocol& driver) const
{
    if (request_.driver)
        return driverName(driver) == *request_.driver;
    return driver.needsFileSystemRefresh() ||
           (request_.isSerialIncluded && driver.needsSerialRefresh());
}

bool Watcher::isStopped() const
{
    return isCallbackDone_ || (stop_ != nullptr && stop_->stopRequested()) ||
           (request_.stopRequested && request_.stopRequested());
}

std::vector<WatchedDevice> Watcher::connectedDevices() const
{
    std::vector<WatchedDevice> connected;
    for (const auto& driver : plugIn_.drivers) {
        if (!isWatched(*driver))
            continue;
        for (const auto& device : devicesOf(*driver))
            connected.push_back({driverName(*driver), device.location,
                                 device.name.value_or(driver->gpsName()),
                                 device.authorized.value_or(true)});
    }
    return connected;
}

// Selects the device in its driver. Returns null if the driver does not list it any more.
Driver Watcher::select(const WatchedDevice& device) const
{
    for (const auto& driver : plugIn_.drivers) {
        if (driverName(*driver) != device.driver)
            continue;
        const auto devices = devicesOf(*driver);
        const auto found = std::find_if(devices.begin(), devices.end(), [&](const Device& listed) {
            return listed.location == device.location;
        });
        if (found == devices.end())
            return nullptr;
        if (auto* const menu = deviceMenu(*driver))
            menu->pick(static_cast<std::size_t>(found - devices.begin()));
        return driver;
    }
    return nullptr;
}

// Two devices can have the same identifier, and one can come back within a second.
std::string Watcher::newPath(const std::string& identifier) const
{
    const auto stem = fmt::format("{}-{}", nameOfDevice(identifier), nameOfNow());
    const auto pathWith = [&](const std::string& suffix) {
        return (fs::path{request_.folder} /
                fmt::format("{}{}.{}", stem, suffix, request_.format->name))
            .string();
    };
    auto path = pathWith("");
    std::error_code ignored;
    for (int number = 1; fs::exists(path, ignored); ++number)
        path = pathWith(fmt::format("-{}", number));
    return path;
}

void Watcher::reportMissingDriver()
{
    const auto& drivers = plugIn_.drivers;
    if (request_.driver && std::none_of(drivers.begin(), drivers.end(),
                                        [&](const Driver& driver) { return isWatched(*driver); }))
        report({.kind = WatchEvent::Kind::kDriverMissing});
}

void Watcher::refresh(const gps::DeviceChanges& changes)
{
    if (changes.serialPorts)
        addNewDrivers(plugIn_);
    for (const auto& driver : plugIn_.drivers) {
        if (isWatched(*driver))
            driver->refreshDeviceList();
    }
}

void Watcher::saveFrom(const WatchedDevice& device)
{
    const auto driver = select(device);
    if (driver == nullptr)
        return;
    WatchEvent event{.kind = WatchEvent::Kind::kDownloaded, .device = device};
    event.error = makeFolders(request_.folder); // it may be on a medium that was removed meanwhile
    if (event.error) {
        event.isRetried = devices_.markFailed(device, kMostTries);
    } else {
        download(*driver, event);
        // An interrupted download counts as done: the watching ends with it.
        if (event.report.succeeded() || event.report.isInterrupted())
            devices_.markDone(device);
        else
            event.isRetried = devices_.markFailed(device, mostTriesWith(*driver));
    }
    report(event);
}

void Watcher::download(gps::GPSPlugInProtocol& driver, WatchEvent& event)
{
    const auto& device = event.device;
    const auto identifier = identifierOf(driver, device.location);
    const auto& listFolder = request_.knownRecordsFolder;
    KnownRecords known{knownRecordsFile(listFolder.value_or(""), identifier)};
    NewRecordFilter filter{known};
    if (listFolder) {
        if (auto failure = known.load())
            report({.kind = WatchEvent::Kind::kListUnusable,
                    .device = device,
                    .error = std::move(failure)});
    }
    auto request = request_.download;
    request.location = device.location;
    request.stopRequested = [this] { return isStopped(); };
    request.isDriverReused = true;
    if (listFolder)
        request.filters.push_back(&filter);
    request.output = OutputRequest{
        .path = newPath(identifier),
        .format = request_.format,
        .isKeptAfterFailure = devices_.isLastTry(device, mostTriesWith(driver)),
        .isKeptEmpty = false,
    };
    event.report = host::download(driver, request);
    // A record counts as saved only once the file with it has its final name.
    if (listFolder && event.report.output.state == OutputReport::State::kComplete)
        event.error = known.add(filter.seen());
}

void Watcher::report(const WatchEvent& event)
{
    isCallbackDone_ = !callback_(event) || isCallbackDone_;
}

} // namespace host
