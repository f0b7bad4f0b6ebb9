// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: its gps::GPSFileDevice interface, which hosts use before a send.

#include "../codec/FieldText.h"
#include "../codec/SymbolMap.h"
#include "KeyValueFile.h"
#include "MagellanGPSPlugin.h"
#include "MagellanSnapshot.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {

std::optional<std::string> MagellanGPSPlugin::deviceIdentifier() const
{
    const auto* const volume = location();
    gps::Dictionary unit;
    if (volume == nullptr || readMagellanUnitIDFromPath(*volume, unit))
        return std::nullopt;
    const auto* serialNumber = unit.findString("Serial Number");
    return serialNumber != nullptr ? std::optional{*serialNumber} : std::nullopt;
}

std::vector<std::string> MagellanGPSPlugin::dataFolders() const
{
    const auto* const volume = location();
    const auto folders =
        volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    return folders ? existingDataFolders(*folders, *volume) : std::vector<std::string>{};
}

std::unique_ptr<gps::DeviceSnapshot> MagellanGPSPlugin::takeSnapshot() const
{
    const auto* const volume = location();
    auto folders = volume != nullptr ? readMagellanFolderDictionaryFromPath(*volume) : std::nullopt;
    return folders ? std::make_unique<MagellanSnapshot>(*volume, *std::move(folders)) : nullptr;
}

std::string MagellanGPSPlugin::deviceCharacters() const
{
    return kDeviceCharacters;
}

std::size_t MagellanGPSPlugin::longestName() const
{
    return kLongestName;
}

gps::Dictionary MagellanGPSPlugin::recordsIn(const gps::PlannedFile& file) const
{
    return recordsInFile(file.path, file.content);
}

std::string MagellanGPSPlugin::deviceSymbol(std::string_view symbol) const
{
    const std::string name{symbol};
    return std::string{
        SymbolMap::shared().magellanIconFromSymbolString(name.empty() ? nullptr : &name)};
}

} // namespace magellan
