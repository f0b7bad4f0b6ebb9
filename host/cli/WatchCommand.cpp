// SPDX-License-Identifier: MIT

#include "host/base/HostError.h"
#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/files/Files.h"
#include "host/files/StateFolder.h"
#include "host/transfer/Download.h"
#include "host/watching/KnownRecords.h"
#include "host/watching/NewOnly.h"
#include "host/watching/Presence.h"
#include "host/watching/StopSignals.h"
#include "host/watching/Tally.h"

#include <gps/GPSFileDevice.h>
#include <platform/System/DeviceMonitor.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace host {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

// A volume can be seen before its files can be read: after each change everything is looked at
// again, a little later.
constexpr std::array kSecondLooks{milliseconds{1000}, milliseconds{3000}, milliseconds{10000}};
constexpr std::size_t kMostTries = kSecondLooks.size() + 1;
constexpr milliseconds kForEver{-1};

std::string described(const PresentDevice& device)
{
    return device.name + ", " + device.location;
}

class Watch {
public:
    Watch(PlugInBundle plugIn, const WatchOptions& options, const Console& console)
        : plugIn_(std::move(plugIn)), options_(options), console_(console)
    {}

    ExitStatus run();

private:
    // One acquire, and what is known of the device.
    struct Acquire {
        PresentDevice device;
        Driver driver;
        std::string identifier;
        std::string path; // of the file
        std::vector<std::string> errors{};
    };

    [[nodiscard]] bool isWatched(const gps::GPSPlugInProtocol& driver) const;
    void tellOfMissingDriver();
    void refresh(const gps::DeviceChanges& changes);
    [[nodiscard]] std::vector<PresentDevice> presentDevices() const;
    [[nodiscard]] bool look();
    [[nodiscard]] Driver select(const PresentDevice& device) const;
    [[nodiscard]] std::string newPath(const std::string& identifier) const;
    void acquire(const PresentDevice& device);
    void acquire(Acquire& one);
    void finish(Acquire& one, Download& download, const Tally& tally, KnownRecords& known,
                const NewOnly* filter);
    void fail(const Acquire& one, bool isAgain);
    void say(std::string_view what, const std::string& text);

    PlugInBundle plugIn_;
    const WatchOptions& options_;
    const Console& console_;
    Presence presence_;
    StopSignals stop_;
    ExitStatus status_ = ExitStatus::kSuccess;
};

ExitStatus Watch::run()
{
    if (const auto failure = makeFolders(options_.into)) {
        console_.error(*failure);
        return ExitStatus::kFailed;
    }
    gps::DeviceMonitor monitor{stop_.file()}; // before the first look, so that no change is missed
    say("watching", "what is saved goes to " + options_.into);
    tellOfMissingDriver();
    for (std::size_t looks = 0; !stop_.isWished() && status_ == ExitStatus::kSuccess;) {
        if (look())
            looks = 0;
        const auto changes =
            monitor.wait(looks < kSecondLooks.size() ? kSecondLooks[looks] : kForEver);
        looks = changes.volumes || changes.serialPorts ? 0 : looks + 1;
        refresh(changes);
    }
    if (stop_.isWished())
        say("stopped", "as asked");
    return status_;
}

bool Watch::isWatched(const gps::GPSPlugInProtocol& driver) const
{
    if (options_.driver)
        return driverName(driver) == *options_.driver;
    return driver.needsFileSystemRefresh() || (options_.serial && driver.needsSerialRefresh());
}

// A driver of serial ports is offered once there is a port, so a name that no driver has is no
// error yet.
void Watch::tellOfMissingDriver()
{
    const auto& drivers = plugIn_.drivers;
    const bool isAnyWatched = std::any_of(drivers.begin(), drivers.end(),
                                          [&](const Driver& driver) { return isWatched(*driver); });
    if (options_.driver && !isAnyWatched)
        say("note", "There is no driver \"" + *options_.driver +
                        "\" so far. The drivers are: " + driverNames(drivers) + '.');
}

void Watch::refresh(const gps::DeviceChanges& changes)
{
    if (changes.serialPorts)
        addNewDrivers(plugIn_); // one of serial ports is not offered while there is none
    for (const auto& driver : plugIn_.drivers) {
        if (isWatched(*driver))
            driver->refreshDeviceList();
    }
}

std::vector<PresentDevice> Watch::presentDevices() const
{
    std::vector<PresentDevice> present;
    for (const auto& driver : plugIn_.drivers) {
        if (!isWatched(*driver))
            continue;
        for (const auto& device : devicesOf(*driver))
            present.push_back({driverName(*driver), device.location,
                               device.name.value_or(driver->gpsName()),
                               device.authorized.value_or(true)});
    }
    return present;
}

/// Tells of what has come and gone, and acquires. @return  whether something has come
bool Watch::look()
{
    const auto changes = presence_.update(presentDevices());
    for (const auto& device : changes.gone)
        say("gone", described(device));
    for (const auto& device : changes.appeared)
        say("appeared",
            described(device) + (device.isReadable ? "" : ": its files may not be read"));
    for (const auto& device : presence_.due()) {
        if (stop_.isWished() || status_ != ExitStatus::kSuccess)
            break;
        acquire(device);
    }
    return !changes.appeared.empty();
}

/// Selects a device in its driver. @return  null when it is there no longer
Driver Watch::select(const PresentDevice& device) const
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

std::string Watch::newPath(const std::string& identifier) const
{
    const auto start =
        (fs::path{options_.into} / (nameOfDevice(identifier) + '-' + nameOfNow())).string();
    const auto end = '.' + std::string{options_.format->name};
    auto path = start + end;
    std::error_code ignored;
    for (int number = 1; fs::exists(path, ignored); ++number)
        path = std::string{start}.append("-").append(std::to_string(number)).append(end);
    return path;
}

void Watch::acquire(const PresentDevice& device)
{
    const auto driver = select(device);
    if (driver == nullptr)
        return;
    const auto* const files = dynamic_cast<const gps::GPSFileDevice*>(driver.get());
    const auto serialNumber = files != nullptr ? files->deviceIdentifier() : std::nullopt;
    const auto identifier = serialNumber.value_or(fs::path{device.location}.filename().string());
    Acquire one{device, driver, identifier, newPath(identifier)};
    acquire(one);
}

void Watch::acquire(Acquire& one)
{
    KnownRecords known{
        (fs::path{stateFolder().value_or("")} / "watch" / (nameOfDevice(one.identifier) + ".txt"))
            .string()};
    if (options_.newOnly) {
        if (const auto damage = known.load())
            say("note", sentencesOf(*damage));
    }
    DownloadOptions options;
    static_cast<GlobalOptions&>(options) = options_;
    options.output = one.path;
    options.format = options_.format;
    options.fixDates = options_.fixDates;
    const Console console{options_.quiet, &one.errors};
    Download download{options, console};
    const Tally* tally = nullptr;
    const NewOnly* filter = nullptr;
    auto failure = makeFolders(options_.into); // it may lie on what has come and gone, too
    if (!failure)
        failure = download.open([&](std::unique_ptr<Writer> writer) -> std::unique_ptr<Writer> {
            auto counting = std::make_unique<Tally>(std::move(writer));
            tally = counting.get();
            if (!options_.newOnly)
                return counting;
            auto filtering = std::make_unique<NewOnly>(std::move(counting), known);
            filter = filtering.get();
            return filtering;
        });
    if (failure) {
        console.error(*failure);
        fail(one, presence_.failed(one.device, kMostTries));
        return;
    }
    download.run(*one.driver, driverOptions(options));
    finish(one, download, *tally, known, filter);
}

/// Ends an acquire: a file, or none when it holds nothing or another try follows.
void Watch::finish(Acquire& one, Download& download, const Tally& tally, KnownRecords& known,
                   const NewOnly* filter)
{
    // Whether a receiver is on a port takes long to find out: it is asked once.
    const bool isAgain =
        !download.isWhole() &&
        presence_.failed(one.device, one.driver->needsSerialRefresh() ? 1 : kMostTries);
    if (download.isWhole())
        presence_.done(one.device);
    const auto counts = tally.text();
    if (!isAgain && !counts.empty())
        (void)download.finish(); // what went wrong in it is among the errors
    std::error_code ignored;
    if (fs::exists(one.path, ignored)) {
        say("saved", one.path + ": " + counts);
        if (filter != nullptr) {
            if (const auto failure = known.add(filter->seen()))
                one.errors.push_back(sentencesOf(*failure));
        }
    } else if (one.errors.empty()) {
        say(options_.newOnly ? "nothing new" : "nothing to save", described(one.device));
    }
    if (!one.errors.empty())
        fail(one, isAgain);
}

void Watch::fail(const Acquire& one, bool isAgain)
{
    say("failed",
        described(one.device) + ": " + joined(one.errors, " ") + (isAgain ? " Trying again." : ""));
}

void Watch::say(std::string_view what, const std::string& text)
{
    status_ = print(displayText(std::string{what} + ": " + text) + '\n', console_);
}

} // namespace

ExitStatus runWatch(const PlugInBundle& plugIn, const WatchOptions& options, const Console& console)
{
    if (options.newOnly && !stateFolder()) {
        console.error("There is no place to remember what was saved. Set HOME or XDG_STATE_HOME.");
        return ExitStatus::kFailed;
    }
    return Watch{plugIn, options, console}.run();
}

} // namespace host
