// SPDX-License-Identifier: MIT
// Nothing is cached: each call reads the device anew. Only what a plan has made is kept, while its
// snapshot exists.

#include "FileDevice.h"

#include "../codec/FieldText.h"
#include "../codec/SymbolMap.h"
#include "KeyValueFile.h"
#include "MagellanSnapshot.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {

namespace {

/// @param failures  gets the error of a unit file that exists and could not be read
std::optional<std::string> identifierOf(const std::string& volume,
                                        std::vector<gps::Error>& failures)
{
    const gps::AuthorizedPath access{volume};
    gps::Dictionary unit;
    if (auto failure = readMagellanUnitIDFromPath(volume, unit)) {
        if (mayBeReadLater(*failure))
            failures.push_back(std::move(*failure));
        return std::nullopt;
    }
    const auto* serialNumber = unit.findString("Serial Number");
    return serialNumber != nullptr ? std::optional{*serialNumber} : std::nullopt;
}

} // namespace

std::optional<std::string> FileDevice::deviceIdentifier() const
{
    const auto* const volume = location();
    std::vector<gps::Error> ignored;
    return volume != nullptr ? identifierOf(*volume, ignored) : std::nullopt;
}

std::vector<std::string> FileDevice::dataFolders() const
{
    const auto* const volume = location();
    const auto folders =
        volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    std::vector<gps::Error> ignored;
    return folders ? existingDataFolders(*folders, *volume, ignored) : std::vector<std::string>{};
}

std::unique_ptr<gps::DeviceSnapshot> FileDevice::takeSnapshot() const
{
    const auto* const volume = location();
    if (volume == nullptr)
        return nullptr;
    std::optional<gps::Error> failure;
    auto folders = readMagellanFolderDictionaryFromPath(*volume, &failure);
    if (!folders)
        return nullptr;
    std::vector<gps::Error> failures;
    if (failure && mayBeReadLater(*failure)) // otherwise a download uses the same folders
        failures.push_back(std::move(*failure));
    auto identifier = identifierOf(*volume, failures);
    auto snapshot = std::make_unique<MagellanSnapshot>(*volume, *std::move(folders),
                                                       std::move(identifier), std::move(failures));
    planned_ = snapshot->plannedTexts();
    return snapshot;
}

std::string FileDevice::deviceCharacters() const
{
    return kDeviceCharacters;
}

std::size_t FileDevice::longestName() const
{
    return kLongestName;
}

void FileDevice::visitRecordsIn(std::string_view path, std::string_view content,
                                const gps::RecordVisitor& visit) const
{
    visitRecordsInFile(path, content, visit);
}

void FileDevice::visitPointsIn(std::string_view path, std::string_view content,
                               const gps::PointVisitor& visit) const
{
    visitPointsInFile(path, content, visit);
}

void FileDevice::visitUnusedRoutePointsIn(
    std::string_view path, std::string_view content,
    const std::function<void(const gps::Dictionary& record)>& visit) const
{
    visitUnusedRoutePointsInFile(path, content, visit);
}

std::string FileDevice::deviceSymbol(std::string_view symbol) const
{
    const std::string name{symbol};
    return std::string{
        SymbolMap::shared().magellanIconFromSymbolString(name.empty() ? nullptr : &name)};
}

} // namespace magellan
