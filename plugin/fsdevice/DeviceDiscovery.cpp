// SPDX-License-Identifier: MIT
// How the driver finds receivers, shows them and lets the user choose, and the access bracket.

#include "KeyValueFile.h"
#include "MagellanGPSPlugin.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/MountedVolumes.h>
#include <platform/System/UserDefaults.h>

#include <algorithm>
#include <utility>

namespace magellan {
namespace {

/// The one read error that makes a device unauthorized.
constexpr auto kNoPermission = static_cast<std::int32_t>(gps::FileErrorCode::kReadNoPermission);

/// The volumes that may be receivers: the removable ones, then the folders that a tester treats like them.
std::vector<std::string> candidates()
{
    std::vector<std::string> paths;
    for (auto& volume : gps::mountedVolumes()) {
        if (volume.removable.value_or(false))
            paths.push_back(std::move(volume.path));
    }
    for (auto& folder :
         gps::UserDefaults::standard().stringArrayForKey("MagellanTestFileList").value_or(std::vector<std::string>{}))
        paths.push_back(std::move(folder));
    return paths;
}

gps::Dictionary makeRecord(const std::string& location, std::string name, bool authorized)
{
    return {{"location", location}, {"name", std::move(name)}, {"authorized", authorized}};
}

gps::Dictionary readRecord(const std::string& location)
{
    gps::Dictionary unit;
    const auto error = readMagellanUnitID(location, unit);
    if (!error) {
        const auto* serialNumber = unit.findString("Serial Number");
        return makeRecord(location, "Magellan device " + (serialNumber != nullptr ? *serialNumber : "(null)"), true);
    }
    // Only a refusal makes a device unauthorized; what else went wrong, a later read will tell.
    const bool refused = error->code() == kNoPermission;
    if (!refused)
        gps::logError("Error", *error);
    return makeRecord(location, "Unauthorized Magellan device", !refused);
}

bool isAuthorized(const gps::Dictionary& record)
{
    const auto* authorized = record.find("authorized");
    return authorized != nullptr && authorized->boolReading();
}

} // namespace

void MagellanGPSPlugin::initFSDeviceList()
{
    gps::Array records;
    for (const auto& location : candidates()) {
        if (!gps::FileManager{}.fileExists(unitFilePath(location)))
            continue;
        const auto url = gps::GPSStorageAuthorization::authorizedBookmarkURLForPath(location);
        if (url)
            url->startAccessingSecurityScopedResource();
        records.push_back(readRecord(location));
        if (url)
            url->stopAccessingSecurityScopedResource();
    }
    setFsDeviceList(std::move(records));
    showDevices();
    const auto* first = fsDeviceList_.empty() ? nullptr : fsDeviceList_.front().as<gps::Dictionary>();
    setFsDevice(first != nullptr ? std::optional{*first} : std::nullopt);
}

/// Fills the pop-up. With fewer than two devices there is nothing to choose, and no reason to show it.
void MagellanGPSPlugin::showDevices()
{
    const bool choice = fsDeviceList_.size() > 1;
    if (outlets_.deviceListMenu != nullptr) {
        std::vector<std::string> names;
        for (const auto& record : fsDeviceList_)
            names.push_back(*record.as<gps::Dictionary>()->findString("name"));
        outlets_.deviceListMenu->setItems(std::move(names));
        outlets_.deviceListMenu->setHidden(!choice);
    }
    if (outlets_.deviceButton != nullptr && !choice)
        outlets_.deviceButton->setHidden(true);
}

void MagellanGPSPlugin::setFsDevice(std::optional<gps::Dictionary> record)
{
    fsDevice_ = std::move(record);
    if (outlets_.deviceButton != nullptr)
        outlets_.deviceButton->setHidden(!fsDevice_ || isAuthorized(*fsDevice_));
    if (outlets_.deviceListMenu != nullptr) {
        const auto at = std::find_if(fsDeviceList_.begin(), fsDeviceList_.end(), [this](const gps::Value& listed) {
            return fsDevice_ && *listed.as<gps::Dictionary>() == *fsDevice_;
        });
        outlets_.deviceListMenu->select(static_cast<std::size_t>(at - fsDeviceList_.begin()));
    }
}

/// Where the selected device lies; null without one.
const std::string* MagellanGPSPlugin::location() const
{
    return fsDevice_ ? fsDevice_->findString("location") : nullptr;
}

bool MagellanGPSPlugin::isReady() const
{
    return fsDevice_ && isAuthorized(*fsDevice_);
}

bool MagellanGPSPlugin::refreshDeviceList()
{
    initFSDeviceList();
    return isReady();
}

void MagellanGPSPlugin::connect(gps::ViewOutlets outlets)
{
    outlets_ = std::move(outlets);
    // A host may keep the view longer than the driver.
    const std::weak_ptr<MagellanGPSPlugin> driver = weak_from_this();
    if (outlets_.deviceListMenu != nullptr) {
        outlets_.deviceListMenu->setAction([driver](std::size_t item) {
            if (const auto self = driver.lock())
                self->userPicked(item);
        });
    }
    if (outlets_.deviceButton != nullptr) {
        outlets_.deviceButton->setAction([driver] {
            if (const auto self = driver.lock())
                self->userPressedDeviceButton();
        });
    }
}

void MagellanGPSPlugin::userPicked(std::size_t item)
{
    if (item < fsDeviceList_.size())
        setFsDevice(*fsDeviceList_[item].as<gps::Dictionary>());
}

/// The button of a device that may not be read: asks for access once more, then looks again.
void MagellanGPSPlugin::userPressedDeviceButton()
{
    startAuthorizedAccess();
    endAuthorizedAccess();
    refreshDeviceList();
}

void MagellanGPSPlugin::startAuthorizedAccess()
{
    const auto* const volume = location();
    securityURL_ = volume != nullptr ? gps::GPSStorageAuthorization::authorizedBookmarkURLForPath(*volume) : std::nullopt;
    if (securityURL_)
        securityURL_->startAccessingSecurityScopedResource();
}

void MagellanGPSPlugin::endAuthorizedAccess()
{
    if (securityURL_)
        securityURL_->stopAccessingSecurityScopedResource();
}

} // namespace magellan
