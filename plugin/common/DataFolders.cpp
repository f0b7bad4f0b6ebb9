// SPDX-License-Identifier: MIT
// The folder names come from a file on the receiver, so they are checked: nothing outside the
// volume may be read or written.

#include "DataFolders.h"

#include <gps/Value.h>
#include <platform/System/FileManager.h>

namespace magellan {

std::string_view folderKey(RecordKind kind) noexcept
{
    switch (kind) {
    case RecordKind::kTracks:
        return "TrackLogs";
    case RecordKind::kWaypoints:
        return "MyPOIs";
    case RecordKind::kGeocaches:
        return "Geocaches";
    case RecordKind::kRoutes:
        break;
    }
    return "Routes";
}

std::optional<std::string> dataFolderPath(const gps::Dictionary& folders, RecordKind kind,
                                          const std::string& volume)
{
    const auto* name = folders.findString(folderKey(kind));
    if (name == nullptr || !gps::staysInside(*name))
        return std::nullopt;
    auto path = gps::joinPath(volume, *name);
    return gps::FileManager{}.leadsOutOf(volume, path) ? std::nullopt : std::optional{path};
}

} // namespace magellan
