// SPDX-License-Identifier: MIT
// MagellanGPSPlugin: the driver of receivers that mount as a disk, and the base of the one for
// serial ports. Its operations stand in six sources: MagellanGPSPlugin.cpp (identity, creation, the
// front of every operation), DeviceDiscovery.cpp, AcquireDriver.cpp, FileImport.cpp, SendDriver.cpp
// and SendPlan.cpp. [host thread], but for the worker bodies: these work from their work dictionary
// alone and never read the driver's fields.

#pragma once

#include <gps/Error.h>
#include <gps/GPSDeviceSearch.h>
#include <gps/GPSFileDevice.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/View.h>
#include <platform/GPSUtilities/GPSStorageAuthorization.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// The class of plug-ins that this one offers.
inline constexpr char kPlugInClass[] = "GPSPlugIn";

class MagellanGPSPlugin : public gps::GPSPlugInProtocol,
                          public gps::GPSFileDevice,
                          public gps::GPSDeviceSearch,
                          public std::enable_shared_from_this<MagellanGPSPlugin> {
public:
    /// `getPluginForClass:`: a new driver, with its view loaded and the devices looked for.
    /// @return  null for another class, or when the view resource is missing or broken
    [[nodiscard]] static std::shared_ptr<MagellanGPSPlugin>
    getPluginForClass(std::string_view plugInClass);

    // Identity.
    [[nodiscard]] std::string className() const override { return "MagellanGPSPlugin"; }
    [[nodiscard]] std::string gpsName() const override { return "Magellan"; }
    [[nodiscard]] std::string gpsCapabilities() const override;
    [[nodiscard]] std::optional<std::vector<std::string>> fileTypes() const override;
    [[nodiscard]] std::shared_ptr<gps::View> gpsView() const override { return outlets_.gpsView; }
    bool needsUSBRefreshOnVendor(std::int32_t* /*vendor*/, std::int32_t* /*product*/) const override
    {
        return false;
    }
    [[nodiscard]] bool needsSerialRefresh() const override { return false; }
    [[nodiscard]] bool needsFileSystemRefresh() const override { return true; }

    // Operations. There is no live position, and nothing can be cancelled.
    [[nodiscard]] std::optional<gps::Error> gpsRunAcquire(const Status& status,
                                                          const gps::Dictionary& options) override;
    [[nodiscard]] std::optional<gps::Error> gpsRunSend(const gps::Dictionary* data,
                                                       const Status& status,
                                                       const gps::Dictionary& options) override;
    bool gpsRunPVT(const Status& /*status*/, const gps::Dictionary& /*options*/) override
    {
        return false;
    }
    bool gpsStopPVT() override { return false; }
    void gpsCancel() override {}

    // Devices.
    [[nodiscard]] bool isReady() const override;
    bool refreshDeviceList() override;
    [[nodiscard]] gps::Array deviceList() const override { return fsDeviceList_; }

    /// `initFSDeviceList`: looks for receivers among the removable volumes and the test folders,
    /// shows them in the view and selects the first.
    void initFSDeviceList();

    /// Every mounted volume and every test folder, with what came of looking at it.
    [[nodiscard]] std::vector<gps::SearchedPlace> searchedPlaces() const override;

    // What a host asks before a send.
    [[nodiscard]] std::optional<std::string> deviceIdentifier() const override;
    [[nodiscard]] std::vector<std::string> dataFolders() const override;
    [[nodiscard]] std::string deviceCharacters() const override;
    [[nodiscard]] std::size_t longestName() const override;
    [[nodiscard]] gps::SendPlan planSend(const gps::Dictionary& data) const override;

    [[nodiscard]] const gps::Array& fsDeviceList() const noexcept { return fsDeviceList_; }
    void setFsDeviceList(gps::Array records) { fsDeviceList_ = std::move(records); }

    /// The selected device's record: "location", "name", "authorized".
    [[nodiscard]] const std::optional<gps::Dictionary>& fsDevice() const noexcept
    {
        return fsDevice_;
    }
    void setFsDevice(std::optional<gps::Dictionary> record);

    [[nodiscard]] const std::shared_ptr<gps::Button>& deviceButton() const noexcept
    {
        return outlets_.deviceButton;
    }
    void setDeviceButton(std::shared_ptr<gps::Button> button)
    {
        outlets_.deviceButton = std::move(button);
    }

    // The access bracket around what is read from the host thread.
    void startAuthorizedAccess();
    void endAuthorizedAccess();
    [[nodiscard]] const std::optional<gps::SecurityScopedURL>& securityURL() const noexcept
    {
        return securityURL_;
    }
    void setSecurityURL(std::optional<gps::SecurityScopedURL> url)
    {
        securityURL_ = std::move(url);
    }

    /// `importFile:to:withOptions:`: reads one sentence file that the user picked, before it
    /// returns. The options are not looked at.
    /// @param path  none: there is no path, and so no extension
    /// @throws gps::RangeError  after the end was reported
    [[nodiscard]] std::optional<gps::Error> importFile(const std::optional<std::string>& path,
                                                       gps::GPSOutputReceiver& status) const;

    [[nodiscard]] std::int32_t debugLevel() const noexcept { return debugLevel_; }

protected:
    /// The class initialiser: the tables that every driver shares, built before there is a driver,
    /// so that workers only ever read them.
    static void buildSharedTables();

    /// Sets the debug level to the option "debug", if there is one.
    void takeDebugLevel(const gps::Dictionary& options);

    /// Starts `runAcquire:` on a worker. @return  why it could not start, after `gpsStateChange:` 0
    /// was sent
    [[nodiscard]] std::optional<gps::Error> startAcquire(const Status& status,
                                                         const gps::Dictionary& options);

    /// `setUpDictionaryForThreadingFromOptions:withError:`: the options with "folders" and
    /// "targetPath".
    /// @param work  out: the work dictionary; untouched after a failure
    [[nodiscard]] virtual std::optional<gps::Error>
    setUpDictionaryForThreadingFromOptions(const gps::Dictionary& options,
                                           gps::Dictionary& work) const;

    /// `runAcquire:`, `runSend:`. [worker]
    virtual void runAcquire(const gps::Dictionary& work);
    virtual void runSend(const gps::Dictionary& work);

    /// Writes "class name: error" to the log if the debug level asks for it, and hands the error
    /// back.
    [[nodiscard]] gps::Error logged(gps::Error error) const;

    /// Takes a view's outlets and connects what the user does in it.
    void connect(gps::ViewOutlets outlets);

    // What the view's pop-up shows; nothing without a view.
    void showItems(const gps::Array& records, bool isShown);
    void showSelection(const gps::Array& records, const std::optional<gps::Dictionary>& selected);
    virtual void userPicked(std::size_t item);

private:
    using WorkerBody = void (MagellanGPSPlugin::*)(const gps::Dictionary& work);

    /// The front of every operation: sets up, adds entries to the work dictionary and starts the
    /// body on a worker.
    [[nodiscard]] std::optional<gps::Error> startWorker(const Status& status,
                                                        const gps::Dictionary& options,
                                                        const gps::Dictionary& additions,
                                                        WorkerBody body);

    [[nodiscard]] const std::string* location() const;
    void userPressedDeviceButton();
    void showDevices();

    gps::ViewOutlets outlets_;
    gps::Array fsDeviceList_;
    std::optional<gps::Dictionary> fsDevice_;
    std::int32_t debugLevel_ = 0;
    std::optional<gps::SecurityScopedURL> securityURL_;
};

} // namespace magellan
