// SPDX-License-Identifier: MIT
// A driver for tests: a test sets its answers, and a function each for what acquire and send do.

#pragma once

#include "host/RecordSources.h"

#include <gps/GPSFileDevice.h>
#include <gps/GPSOutputReceiver.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/GPSSessionControl.h>
#include <gps/GPSTransferAccount.h>
#include <gps/View.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support {

struct FakeDriver : gps::GPSPlugInProtocol {
    using Acquire = std::function<std::optional<gps::Error>(const Status& status,
                                                            const gps::Dictionary& options)>;

    using Send = std::function<std::optional<gps::Error>(
        const gps::Dictionary* data, const Status& status, const gps::Dictionary& options)>;

    explicit FakeDriver(std::string driverName = "Fake") : name(std::move(driverName))
    {
        view->addSubview(menu);
        menu->setAction([this](std::size_t item) { picked = item; });
    }

    /// Lists devices at these locations and selects the first one.
    void setLocations(const std::vector<std::string>& locations)
    {
        devices.clear();
        for (const auto& location : locations)
            devices.emplace_back(gps::Dictionary{
                {"location", location}, {"name", "Device at " + location}, {"authorized", true}});
        menu->setItems(locations);
        menu->select(0);
    }

    std::string className() const override { return "Fake:" + name; }
    std::string gpsName() const override { return name; }
    std::shared_ptr<gps::View> gpsView() const override { return view; }
    bool gpsRunPVT(const Status&, const gps::Dictionary&) override { return false; }
    bool gpsStopPVT() override { return false; }
    std::optional<gps::Error> gpsRunAcquire(const Status& status,
                                            const gps::Dictionary& options) override
    {
        return acquire(status, options);
    }
    std::optional<gps::Error> gpsRunSend(const gps::Dictionary* data, const Status& status,
                                         const gps::Dictionary& options) override
    {
        return send(data, status, options);
    }
    void gpsCancel() override {}
    std::string gpsCapabilities() const override { return capabilities; }
    bool isReady() const override { return ready; }
    bool refreshDeviceList() override
    {
        ++refreshes;
        if (onRefresh)
            onRefresh();
        return ready;
    }
    gps::Array deviceList() const override { return devices; }
    bool needsUSBRefreshOnVendor(std::int32_t*, std::int32_t*) const override { return false; }
    bool needsSerialRefresh() const override { return serial; }
    bool needsFileSystemRefresh() const override { return !serial; }
    std::optional<std::vector<std::string>> fileTypes() const override { return types; }

    std::string name;
    std::string capabilities = "tracks,waypoints,routes,geocaches,sendwpt";
    bool ready = true;
    bool serial = false;
    std::optional<std::vector<std::string>> types;
    gps::Array devices;
    int refreshes = 0;
    std::optional<std::size_t> picked;
    std::shared_ptr<gps::View> view = std::make_shared<gps::View>("gpsView");
    std::shared_ptr<gps::PopUpButton> menu = std::make_shared<gps::PopUpButton>("deviceListMenu");
    Acquire acquire = [](const Status& status,
                         const gps::Dictionary&) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        return std::nullopt;
    };
    Send send = [](const gps::Dictionary*, const Status& status,
                   const gps::Dictionary&) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        return std::nullopt;
    };
    std::function<void()> onRefresh;
};

/// A driver that keeps account of its operations and can be stopped. A test sets the account.
struct AccountingDriver final : FakeDriver, gps::GPSTransferAccount, gps::GPSSessionControl {
    using FakeDriver::FakeDriver;

    gps::TransferAccount transferAccount() const override { return account; }
    gps::LineVoice lineVoice() const noexcept override { return voice; }
    void requestStop() noexcept override { isStopRequested = true; }

    gps::TransferAccount account;
    std::atomic<gps::LineVoice> voice = gps::LineVoice::kReceiver;
    std::atomic<bool> isStopRequested = false;
};

/// A driver whose device stores its data as files.
struct FakeFileDriver : FakeDriver, gps::GPSFileDevice {
    struct Snapshot final : gps::DeviceSnapshot {
        explicit Snapshot(const FakeFileDriver& owner) : driver(owner) {}
        const std::vector<gps::DeviceFile>& files() const override { return driver.files; }
        const std::vector<gps::Error>& failures() const override { return driver.failures; }
        const std::optional<std::string>& identifier() const override { return identifierThen; }
        std::vector<std::string> dataFolders() const override { return driver.folders; }
        void visitChosenRecords(const gps::RecordFilter& isChosen,
                                const gps::RecordVisitor& visit) const override
        {
            support::visitChosenRecords(driver.records, isChosen, visit);
        }
        void visitRecords(const gps::RecordVisitor& visit) const override
        {
            support::visitRecords(driver.records, visit);
        }
        void reportTracks(gps::GPSOutputReceiver& status) const override { driver.tracks(status); }
        gps::SendPlan planSend(const gps::Dictionary& data) const override
        {
            return driver.plan(data);
        }

        const FakeFileDriver& driver;
        const std::optional<std::string> identifierThen = driver.identifier;
    };

    std::optional<std::string> deviceIdentifier() const override { return identifier; }
    std::vector<std::string> dataFolders() const override { return folders; }
    std::unique_ptr<gps::DeviceSnapshot> takeSnapshot() const override
    {
        onSnapshot();
        return std::make_unique<Snapshot>(*this);
    }
    std::string deviceCharacters() const override
    {
        return " ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    }
    std::size_t longestName() const override { return 10; }
    void visitRecordsIn(std::string_view path, std::string_view content,
                        const gps::RecordVisitor& visit) const override
    {
        support::visitRecords(decode(path, content), visit);
    }
    void visitPointsIn(std::string_view path, std::string_view content,
                       const gps::PointVisitor& visit) const override
    {
        support::visitPoints(decode(path, content), visit);
    }
    std::string deviceSymbol(std::string_view symbol) const override
    {
        return storedSymbol(std::string{symbol});
    }

    std::function<void()> onSnapshot = [] {}; ///< called while the device is read
    std::optional<std::string> identifier = "42";
    std::vector<std::string> folders;
    std::vector<gps::DeviceFile> files;
    std::vector<gps::Error> failures;
    gps::Dictionary records{{"waypoint", gps::Array{}}, {"route", gps::Array{}}};
    std::function<void(gps::GPSOutputReceiver& status)> tracks = [](gps::GPSOutputReceiver&) {};
    std::function<std::string(std::string symbol)> storedSymbol = [](std::string symbol) {
        return symbol;
    };
    std::function<gps::Dictionary(std::string_view path, std::string_view content)> decode =
        [](std::string_view, std::string_view) { return gps::Dictionary{}; };
    std::function<gps::SendPlan(const gps::Dictionary& data)> plan = [](const gps::Dictionary&) {
        return gps::SendPlan{};
    };
};

} // namespace support
