// SPDX-License-Identifier: MIT
// Watcher: waits for receivers and downloads from each one that appears, into a file of its own.
// Behind the command `watch`. [host thread]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/desktop/AutoMount.h"
#include "host/operations/StopSignals.h"
#include "host/watching/WatchEvent.h"
#include "host/watching/WatchRequest.h"

#include <platform/System/DeviceMonitor.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

class Watcher {
public:
    /// A volume can be visible before its files can be read. So after each change the devices are
    /// looked at again after these times, and a download that fails is tried again.
    static constexpr std::array kFurtherLooks{std::chrono::milliseconds{1000},
                                              std::chrono::milliseconds{3000},
                                              std::chrono::milliseconds{10000}};
    static constexpr std::size_t kMostTries = kFurtherLooks.size() + 1;

    Watcher(PlugInBundle plugIn, WatchRequest request, WatchCallback callback);

    /// Watches until a stop is requested or the callback returns false. A download that is running
    /// when a stop is requested is stopped, too; what has arrived is kept as a partial file.
    /// @return  why the folder for the files cannot be created; otherwise nullopt
    [[nodiscard]] std::optional<gps::Error> run(const StopSignals& stop);

    /// Looks once at the devices that the drivers list: reports which appeared and which are gone,
    /// and downloads from those that are due. Called by run(). @return  whether any device appeared
    bool look();

private:
    [[nodiscard]] bool isWatched(const gps::GPSPlugInProtocol& driver) const;
    [[nodiscard]] bool isStopped() const;
    [[nodiscard]] std::vector<WatchedDevice> connectedDevices() const;
    [[nodiscard]] Driver select(const WatchedDevice& device) const;
    [[nodiscard]] std::string newPath(const std::string& identifier) const;
    void reportMissingDriver();
    void refresh(const gps::DeviceChanges& changes);
    void mountDisks();
    void unmountDisks(bool isAtEnd);
    void saveFrom(const WatchedDevice& device);
    void download(gps::GPSPlugInProtocol& driver, WatchEvent& event);
    void report(const WatchEvent& event);

    PlugInBundle plugIn_;
    WatchRequest request_;
    WatchCallback callback_;
    WatchedDevices devices_;
    std::optional<AutoMount> disks_;    // if disks are to be mounted
    const StopSignals* stop_ = nullptr; // only while run() is running
    bool isCallbackDone_ = false;       // the callback returned false
};

} // namespace host
