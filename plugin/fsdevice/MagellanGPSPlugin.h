// SPDX-License-Identifier: MIT
// MagellanGPSPlugin: the driver of receivers that mount as a disk, and the base class of the serial
// driver. Its members are defined in several sources, one per subject: MagellanGPSPlugin.cpp
// (identity, creation, the start of every operation), DeviceDiscovery.cpp, AcquireDriver.cpp,
// FileImport.cpp and SendDriver.cpp. [host thread], except for the worker entry points runAcquire()
// and runSend(), which use only their work dictionary and the monitor.

#pragma once

#include "../common/OperationMonitor.h"

#include <gps/Error.h>
#include <gps/GPSDeviceDescription.h>
#include <gps/GPSDeviceSearch.h>
#include <gps/GPSPlugInProtocol.h>
#include <gps/GPSSessionControl.h>
#include <gps/GPSTransferAccount.h>
#include <gps/View.h>
#include <platform/GPSUtilities/GPSStorageAuthorization.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {

class PlannedTexts;

/// The class of plug-ins that this one offers.
inline constexpr char kPlugInClass[] = "GPSPlugIn";

class MagellanGPSPlugin : public gps::GPSPlugInProtocol,
                          public gps::GPSDeviceDescription,
                          public gps::GPSDeviceSearch,
                          public gps::GPSTransferAccount,
                          public gps::GPSSessionControl,
                          public std::enable_shared_from_this<MagellanGPSPlugin> {
public:
    /// `getPluginForClass:`: creates a driver, loads its view and searches for devices. The driver
    /// also has the interface gps::GPSFileDevice.
    /// @return  null for a class other than kPlugInClass, or if the view cannot be loaded
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

    // Operations. Live position is not offered, and gpsCancel() does nothing; requestStop() is for
    // hosts that know GPSSessionControl.
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
    void requestStop() noexcept override { monitor_.requestStop(); }
    [[nodiscard]] gps::TransferAccount transferAccount() const override
    {
        return monitor_.account();
    }
    [[nodiscard]] gps::LineVoice lineVoice() const noexcept override { return monitor_.voice(); }

    // Devices.
    [[nodiscard]] bool isReady() const override;
    bool refreshDeviceList() override;
    [[nodiscard]] gps::Array deviceList() const override { return fsDeviceList_; }

    /// `initFSDeviceList`: searches the removable volumes and the test folders for receivers, shows
    /// them in the view and selects the first.
    void initFSDeviceList();

    /// Returns every mounted volume and test folder and why it is a device or not.
    [[nodiscard]] std::vector<gps::SearchedLocation> searchedLocations() const override;

    /// Reads the unit file of a volume.
    [[nodiscard]] gps::DeviceDescription
    deviceDescription(const std::string& location) const override;

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

    // Opens and closes the system's access to the selected volume. Used around an import.
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

    /// `importFile:to:withOptions:`: reads one sentence file that the user picked and reports its
    /// records before returning. There is no argument for options: none affects an import.
    /// @param path  nullopt counts as a path without an extension
    /// @throws gps::RangeError  the file has a truncated sentence
    /// @throws std::bad_alloc   out of memory
    /// @throws ...              what the status object threw
    /// In all cases the end has been reported.
    [[nodiscard]] std::optional<gps::Error> importFile(const std::optional<std::string>& path,
                                                       gps::GPSOutputReceiver& status) const;

    [[nodiscard]] std::int32_t debugLevel() const noexcept { return debugLevel_; }

protected:
    /// The class initialiser: builds the tables that all drivers share. Called before any driver
    /// exists, so that workers only read them.
    static void buildSharedTables();

    /// Sets the debug level to the option "debug", if present.
    void setDebugLevelFromOptions(const gps::Dictionary& options);

    /// Starts `runAcquire:` on a worker.
    /// @return  why it did not start; `gpsStateChange:` 0 has been sent then
    [[nodiscard]] std::optional<gps::Error> startAcquire(const Status& status,
                                                         const gps::Dictionary& options);

    /// `setUpDictionaryForThreadingFromOptions:withError:`: checks that a device is selected and
    /// readable.
    /// @param work  out: the options with "folders" and "targetPath"; unchanged after a failure
    [[nodiscard]] virtual std::optional<gps::Error>
    setUpDictionaryForThreadingFromOptions(const gps::Dictionary& options,
                                           gps::Dictionary& work) const;

    /// `runAcquire:`, `runSend:`: the bodies of the workers. They always end with `gpsStateChange:`
    /// 0. [worker]
    /// @param planned  texts that need not be made again; may be null
    virtual void runAcquire(const gps::Dictionary& work);
    virtual void runSend(const gps::Dictionary& work, const PlannedTexts* planned);

    /// The texts of the last plan, for a send; null if there is none. [host thread]
    [[nodiscard]] virtual std::shared_ptr<const PlannedTexts> plannedTexts() const
    {
        return nullptr;
    }

    /// The selected device's volume path; null if no device is selected.
    [[nodiscard]] const std::string* location() const;

    /// What the running operation shares with the host. [any]
    [[nodiscard]] OperationMonitor& monitor() const noexcept { return monitor_; }

    /// Logs "class name: error" if the debug level is not 0. Returns the error.
    [[nodiscard]] gps::Error logged(gps::Error error) const;

    /// Stores a view's outlets and connects their actions to this driver.
    void connect(gps::ViewOutlets outlets);

    // Update the view's pop-up. Without a view they do nothing.
    void showItems(const gps::Array& records, bool isShown);
    void showSelection(const gps::Array& records, const std::optional<gps::Dictionary>& selected);
    virtual void userPicked(std::size_t item);

private:
    using WorkerBody = std::function<void(const gps::Dictionary& work)>;

    /// Starts an operation: builds the work dictionary, adds entries to it and starts the body on a
    /// detached worker.
    /// @param statusKey  the work dictionary's key of the status object, which is guarded
    [[nodiscard]] std::optional<gps::Error> startWorker(const Status& status, const char* statusKey,
                                                        const gps::Dictionary& options,
                                                        const gps::Dictionary& additions,
                                                        WorkerBody body);

    [[nodiscard]] std::optional<gps::Error> importGuarded(const std::optional<std::string>& path,
                                                          gps::GPSOutputReceiver& status) const;

    void userPressedDeviceButton();
    void showDevices();

    gps::ViewOutlets outlets_;
    gps::Array fsDeviceList_;
    std::optional<gps::Dictionary> fsDevice_;
    std::int32_t debugLevel_ = 0;
    std::optional<gps::SecurityScopedURL> securityURL_;
    mutable OperationMonitor monitor_; // used while an operation runs, the driver itself does not
                                       // change
};

} // namespace magellan
