// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: the search for receivers, the view that shows them, the selection,
// and the system's access to the selected volume.

#include "KeyValueFile.h"
#include "MagellanGPSPlugin.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <platform/System/MountedVolumes.h>
#include <platform/System/UserDefaults.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using Verdict = gps::SearchedLocation::Verdict;

constexpr std::string_view kNoUnitFile =
    "It has no file USBTRANS/UNIT_ID.DAT, so it is not a receiver";
constexpr std::string_view kNotRemovable = "Receivers mount as removable volumes";
constexpr std::string_view kSuggestEjecting =
    "If it is a receiver, eject it, and connect it again while you are logged in";
constexpr std::string_view kSuggestReading =
    "Let your user read that file, or connect the receiver again while you are logged in";

/// A searched location and, if it is a receiver, its device record.
struct Candidate {
    gps::SearchedLocation searched;
    std::optional<gps::Dictionary> record;
};

gps::SearchedLocation searchedVolume(gps::MountedVolume volume)
{
    if (!volume.removable)
        return {std::move(volume.path), "volume without a disk behind it", Verdict::kSkipped,
                std::string{kNotRemovable}, ""};
    if (!*volume.removable)
        return {std::move(volume.path), "built-in volume", Verdict::kSkipped,
                std::string{kNotRemovable}, ""};
    return {std::move(volume.path), "removable volume", Verdict::kRejected, "", ""};
}

/// The mounted volumes, then the test folders, which are treated like removable volumes.
std::vector<gps::SearchedLocation> listLocations()
{
    std::vector<gps::SearchedLocation> locations;
    for (auto& volume : gps::mountedVolumes())
        locations.push_back(searchedVolume(std::move(volume)));
    for (auto& folder : gps::UserDefaults::standard()
                            .stringArrayForKey("MagellanTestFileList")
                            .value_or(std::vector<std::string>{}))
        locations.push_back({std::move(folder), "test folder", Verdict::kRejected, "", ""});
    return locations;
}

gps::Dictionary makeRecord(const std::string& location, std::string name, bool authorized)
{
    return {{"location", location}, {"name", std::move(name)}, {"authorized", authorized}};
}

/// Makes the device record of a location that has a unit file.
void accept(Candidate& candidate)
{
    auto& searched = candidate.searched;
    searched.verdict = Verdict::kAccepted;
    gps::Dictionary unit;
    const auto error = readMagellanUnitIDFromPath(searched.location, unit);
    if (!error) {
        const auto* serialNumber = unit.findString("Serial Number");
        const auto name = "Magellan device " + (serialNumber != nullptr ? *serialNumber : "(null)");
        searched.reason = "It is a receiver: " + name;
        candidate.record = makeRecord(searched.location, name, true);
        return;
    }
    // Only a refused permission makes a device unauthorized. With any other error the device stays
    // usable, and later reads report what is wrong.
    const bool refused = error->code() == gps::FileErrorCode::kReadNoPermission;
    if (!refused)
        gps::logError("Error", *error);
    searched.reason =
        refused ? "It is a receiver, but its file USBTRANS/UNIT_ID.DAT may not be read"
                : "It is a receiver, but its file USBTRANS/UNIT_ID.DAT cannot be read as text";
    searched.advice = refused ? kSuggestReading : "";
    candidate.record = makeRecord(searched.location, "Unauthorized Magellan device", !refused);
}

/// Explains why a location without a visible unit file is not a receiver. On a volume that another
/// user has mounted the file may exist but cannot be seen.
void reject(gps::SearchedLocation& searched)
{
    gps::Dictionary unit;
    const auto error = readMagellanUnitIDFromPath(searched.location, unit);
    const bool isForbidden = error && error->code() == gps::FileErrorCode::kReadNoPermission;
    searched.reason =
        isForbidden ? "It cannot be read: another user has mounted it, or its permissions forbid it"
                    : kNoUnitFile;
    searched.advice = isForbidden ? kSuggestEjecting : "";
}

std::vector<Candidate> searchForReceivers()
{
    std::vector<Candidate> candidates;
    for (auto& location : listLocations()) {
        auto& candidate = candidates.emplace_back(Candidate{std::move(location), std::nullopt});
        const auto& path = candidate.searched.location;
        if (candidate.searched.verdict == Verdict::kSkipped)
            continue;
        const bool hasUnitFile = gps::FileManager{}.fileExists(unitFilePath(path));
        const gps::AuthorizedPath access{path};
        if (hasUnitFile)
            accept(candidate);
        else
            reject(candidate.searched);
    }
    return candidates;
}

std::optional<std::string> textUnder(const gps::Dictionary& unit, const char* key)
{
    const auto* const text = unit.findString(key);
    return text != nullptr && !text->empty() ? std::optional{*text} : std::nullopt;
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
    for (auto& candidate : searchForReceivers()) {
        if (candidate.record)
            records.push_back(*std::move(candidate.record));
    }
    setFsDeviceList(std::move(records));
    showDevices();
    const auto* first =
        fsDeviceList_.empty() ? nullptr : fsDeviceList_.front().as<gps::Dictionary>();
    setFsDevice(first != nullptr ? std::optional{*first} : std::nullopt);
}

std::vector<gps::SearchedLocation> MagellanGPSPlugin::searchedLocations() const
{
    std::vector<gps::SearchedLocation> locations;
    for (auto& candidate : searchForReceivers())
        locations.push_back(std::move(candidate.searched));
    return locations;
}

gps::DeviceDescription MagellanGPSPlugin::deviceDescription(const std::string& location) const
{
    const gps::AuthorizedPath access{location};
    gps::Dictionary unit;
    if (readMagellanUnitIDFromPath(location, unit))
        return {};
    return {textUnder(unit, "Unit Type"), textUnder(unit, "Software Version")};
}

/// Fills the pop-up, which is visible only if there are two devices to choose from.
void MagellanGPSPlugin::showDevices()
{
    const bool hasChoice = fsDeviceList_.size() > 1;
    showItems(fsDeviceList_, hasChoice);
    if (outlets_.deviceButton != nullptr && !hasChoice)
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
    const auto found = std::find_if(records.begin(), records.end(), [&](const gps::Value& listed) {
        return selected && *listed.as<gps::Dictionary>() == *selected;
    });
    outlets_.deviceListMenu->select(static_cast<std::size_t>(found - records.begin()));
}

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
    // A host may keep the view for longer than the driver.
    const std::weak_ptr<MagellanGPSPlugin> driver = weak_from_this();
    if (outlets_.deviceListMenu != nullptr) {
        outlets_.deviceListMenu->setAction([driver](std::size_t item) {
            const auto self = driver.lock();
            if (!self)
                return;
            self->userPicked(item);
            self->outlets_.deviceListMenu->select(item); // records may be equal
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

/// The button is visible while the selected device is unauthorized. Asks for access once more and
/// searches again.
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
