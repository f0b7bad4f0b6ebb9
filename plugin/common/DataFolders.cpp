// SPDX-License-Identifier: MIT
// The folder names come from a file on the receiver, so they are checked: nothing outside the
// volume may be read or written.

#include "DataFolders.h"

#include "Errors.h"

#include <gps/Value.h>
#include <platform/System/FileManager.h>

namespace magellan {
namespace {

/// @param leadsOut  whether links lead from the path out of the volume
/// @return          nullopt if the folder has no usable name
std::optional<std::string> namedPath(const gps::Dictionary& folders, RecordKind kind,
                                     const std::string& volume, bool& leadsOut)
{
    const auto* name = folders.findString(folderKey(kind));
    if (name == nullptr || !gps::staysInside(*name))
        return std::nullopt;
    auto path = gps::joinPath(volume, *name);
    leadsOut = gps::FileManager{}.leadsOutOf(volume, path);
    return path;
}

} // namespace

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
    bool leadsOut = false;
    auto path = namedPath(folders, kind, volume, leadsOut);
    return leadsOut ? std::nullopt : path;
}

std::optional<gps::Error> dataFolderObstacle(const gps::Dictionary& folders, RecordKind kind,
                                             const std::string& volume)
{
    bool leadsOut = false;
    const auto path = namedPath(folders, kind, volume, leadsOut);
    if (!leadsOut)
        return std::nullopt;
    return makeError(ErrorCode::kReadFailed,
                     "This folder is a link that leads out of the receiver, so it was not read",
                     "Replace the link by a folder, and try again", path);
}

} // namespace magellan
