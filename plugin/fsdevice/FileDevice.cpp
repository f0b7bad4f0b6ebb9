// SPDX-License-Identifier: MIT
// Nothing is cached: each call reads the device anew.

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

std::optional<std::string> FileDevice::deviceIdentifier() const
{
    const auto* const volume = location();
    if (volume == nullptr)
        return std::nullopt;
    const gps::AuthorizedPath access{*volume};
    gps::Dictionary unit;
    if (readMagellanUnitIDFromPath(*volume, unit))
        return std::nullopt;
    const auto* serialNumber = unit.findString("Serial Number");
    return serialNumber != nullptr ? std::optional{*serialNumber} : std::nullopt;
}

std::vector<std::string> FileDevice::dataFolders() const
{
    const auto* const volume = location();
    const auto folders =
        volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    return folders ? existingDataFolders(*folders, *volume) : std::vector<std::string>{};
}

std::unique_ptr<gps::DeviceSnapshot> FileDevice::takeSnapshot() const
{
    const auto* const volume = location();
    auto folders = volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    return folders ? std::make_unique<MagellanSnapshot>(*volume, *std::move(folders)) : nullptr;
}

std::string FileDevice::deviceCharacters() const
{
    return kDeviceCharacters;
}

std::size_t FileDevice::longestName() const
{
    return kLongestName;
}

gps::Dictionary FileDevice::recordsIn(const gps::PlannedFile& file) const
{
    return recordsInFile(file.path, file.content);
}

std::string FileDevice::deviceSymbol(std::string_view symbol) const
{
    const std::string name{symbol};
    return std::string{
        SymbolMap::shared().magellanIconFromSymbolString(name.empty() ? nullptr : &name)};
}

} // namespace magellan
