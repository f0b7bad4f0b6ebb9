// SPDX-License-Identifier: MIT
// How the driver finds receivers, shows them and lets the user choose, and the access bracket.

#include "KeyValueFile.h"
#include "MagellanGPSPlugin.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/MountedVolumes.h>
#include <platform/System/UserDefaults.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace magellan {
namespace {

using Verdict = gps::SearchedPlace::Verdict;

/// The one read error that makes a device unauthorized.
constexpr auto kNoPermission = static_cast<std::int32_t>(gps::FileErrorCode::kReadNoPermission);

constexpr std::string_view kNoUnitFile =
    "It has no file USBTRANS/UNIT_ID.DAT, so it is no receiver";
constexpr std::string_view kNotRemovable = "Receivers mount as removable volumes";
constexpr std::string_view kSuggestEjecting =
    "If it is a receiver, eject it, and connect it again while you are logged in";
constexpr std::string_view kSuggestReading =
    "Let your user read that file, or connect the receiver again while you are logged in";

/// A place that may be a receiver, with what came of looking at it.
struct Look {
    gps::SearchedPlace place;
    std::optional<gps::Dictionary> record; // the device's, if the place is one
};

gps::SearchedPlace placeOf(gps::MountedVolume volume)
{
    if (!volume.removable)
        return {std::move(volume.path), "volume without a disk behind it", Verdict::kPassedOver,
                std::string{kNotRemovable}, ""};
    if (!*volume.removable)
        return {std::move(volume.path), "built-in volume", Verdict::kPassedOver,
                std::string{kNotRemovable}, ""};
    return {std::move(volume.path), "removable volume", Verdict::kRefused, "", ""};
}

/// The mounted volumes, then the folders that a tester treats like removable ones.
std::vector<gps::SearchedPlace> places()
{
    std::vector<gps::SearchedPlace> places;
    for (auto& volume : gps::mountedVolumes())
        places.push_back(placeOf(std::move(volume)));
    for (auto& folder : gps::UserDefaults::standard()
                            .stringArrayForKey("MagellanTestFileList")
                            .value_or(std::vector<std::string>{}))
        places.push_back({std::move(folder), "test folder", Verdict::kRefused, "", ""});
    return places;
}

gps::Dictionary makeRecord(const std::string& location, std::string name, bool authorized)
{
    return {{"location", location}, {"name", std::move(name)}, {"authorized", authorized}};
}

/// Takes a place that has a unit file for a receiver.
void take(Look& look)
{
    auto& place = look.place;
    place.verdict = Verdict::kTaken;
    gps::Dictionary unit;
    const auto error = readMagellanUnitIDFromPath(place.location, unit);
    if (!error) {
        const auto* serialNumber = unit.findString("Serial Number");
        const auto name = "Magellan device " + (serialNumber != nullptr ? *serialNumber : "(null)");
        place.reason = "It is a receiver: " + name;
        look.record = makeRecord(place.location, name, true);
        return;
    }
    // Only a refusal makes a device unauthorized; what else went wrong, a later read will tell.
    const bool refused = error->code() == kNoPermission;
    if (!refused)
        gps::logError("Error", *error);
    place.reason =
        refused ? "It is a receiver, but its file USBTRANS/UNIT_ID.DAT may not be read"
                : "It is a receiver, but its file USBTRANS/UNIT_ID.DAT cannot be read as text";
    place.advice = refused ? kSuggestReading : "";
    look.record = makeRecord(place.location, "Unauthorized Magellan device", !refused);
}

/// Says why a place without a visible unit file is none. A volume that another user has mounted
/// does not even let one look.
void refuse(gps::SearchedPlace& place)
{
    gps::Dictionary unit;
    const auto error = readMagellanUnitIDFromPath(place.location, unit);
    const bool isClosed = error && error->code() == kNoPermission;
    place.reason =
        isClosed
            ? "It may not be looked into: another user has mounted it, or its permissions forbid it"
            : kNoUnitFile;
    place.advice = isClosed ? kSuggestEjecting : "";
}

/// Looks for receivers at every place.
std::vector<Look> lookAround()
{
    std::vector<Look> looks;
    for (auto& place : places()) {
        auto& look = looks.emplace_back(Look{std::move(place), std::nullopt});
        const auto& location = look.place.location;
        if (look.place.verdict == Verdict::kPassedOver)
            continue;
        if (!gps::FileManager{}.fileExists(unitFilePath(location))) {
            refuse(look.place);
            continue;
        }
        const auto url = gps::GPSStorageAuthorization::authorizedBookmarkURLForPath(location);
        if (url)
            url->startAccessingSecurityScopedResource();
        take(look);
        if (url)
            url->stopAccessingSecurityScopedResource();
    }
    return looks;
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
    for (auto& look : lookAround()) {
        if (look.record)
            records.push_back(*std::move(look.record));
    }
    setFsDeviceList(std::move(records));
    showDevices();
    const auto* first =
        fsDeviceList_.empty() ? nullptr : fsDeviceList_.front().as<gps::Dictionary>();
    setFsDevice(first != nullptr ? std::optional{*first} : std::nullopt);
}

std::vector<gps::SearchedPlace> MagellanGPSPlugin::searchedPlaces() const
{
    std::vector<gps::SearchedPlace> places;
    for (auto& look : lookAround())
        places.push_back(std::move(look.place));
    return places;
}

/// Fills the pop-up. With fewer than two devices there is nothing to choose, and no reason to show
/// it.
void MagellanGPSPlugin::showDevices()
{
    const bool choice = fsDeviceList_.size() > 1;
    showItems(fsDeviceList_, choice);
    if (outlets_.deviceButton != nullptr && !choice)
        outlets_.deviceButton->setHidden(true);
}

void MagellanGPSPlugin::setFsDevice(std::optional<gps::Dictionary> record)
{
    fsDevice_ = std::move(record);
    if (outlets_.deviceButton != nullptr)
        outlets_.deviceButton->setHidden(!fsDevice_ || isAuthorized(*fsDevice_));
    showSelection(fsDeviceList_, fsDevice_);
}

void MagellanGPSPlugin::showItems(const gps::Array& records, bool isShown)
{
    if (outlets_.deviceListMenu == nullptr)
        return;
    std::vector<std::string> names;
    for (const auto& record : records)
        names.push_back(*record.as<gps::Dictionary>()->findString("name"));
    outlets_.deviceListMenu->setItems(std::move(names));
    outlets_.deviceListMenu->setHidden(!isShown);
}

void MagellanGPSPlugin::showSelection(const gps::Array& records,
                                      const std::optional<gps::Dictionary>& selected)
{
    if (outlets_.deviceListMenu == nullptr)
        return;
    const auto at = std::find_if(records.begin(), records.end(), [&](const gps::Value& listed) {
        return selected && *listed.as<gps::Dictionary>() == *selected;
    });
    outlets_.deviceListMenu->select(static_cast<std::size_t>(at - records.begin()));
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
    securityURL_ = volume != nullptr
                       ? gps::GPSStorageAuthorization::authorizedBookmarkURLForPath(*volume)
                       : std::nullopt;
    if (securityURL_)
        securityURL_->startAccessingSecurityScopedResource();
}

void MagellanGPSPlugin::endAuthorizedAccess()
{
    if (securityURL_)
        securityURL_->stopAccessingSecurityScopedResource();
}

} // namespace magellan
