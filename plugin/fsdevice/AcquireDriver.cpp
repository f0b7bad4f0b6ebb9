// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: the download from a mounted receiver. The host's call starts a
// worker that walks one data folder per kind.

#include "../common/DataFolders.h"
#include "../common/FolderWalk.h"
#include "../common/OperationAccount.h"
#include "DeviceFileReaders.h"
#include "KeyValueFile.h"
#include "MagellanGPSPlugin.h"

#include <gps/DictionaryHelpers.h>
#include <gps/GPSOutputReceiver.h>
#include <platform/System/FileError.h>
#include <platform/System/FileSystem.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <utility>

namespace magellan {
namespace {

/// How one kind of data is downloaded.
struct Kind {
    const char* option; ///< false switches the kind off
    Reader reader;
    RecordKind folder;
    gps::TransferKind kind;
};

/// In download order. Geocaches have no option of their own: to the host they are waypoints.
constexpr std::array kKinds{
    Kind{"waypoints", acquireWayPoints, RecordKind::kWaypoints, gps::TransferKind::kWaypoints},
    Kind{"waypoints", acquireGeoCaches, RecordKind::kGeocaches, gps::TransferKind::kWaypoints},
    Kind{"routes", acquireRoutes, RecordKind::kRoutes, gps::TransferKind::kRoutes},
    Kind{"tracks", acquireTracks, RecordKind::kTracks, gps::TransferKind::kTracks},
};

bool isSwitchedOff(const Kind& kind, const gps::Dictionary& work)
{
    return !GetBoolValueForKey(&work, kind.option, true);
}

/// Opens access to the selected volume and closes it again, even if an import throws.
class AuthorizedAccess {
public:
    explicit AuthorizedAccess(MagellanGPSPlugin& driver) : driver_(driver)
    {
        driver_.startAuthorizedAccess();
    }
    ~AuthorizedAccess() { driver_.endAuthorizedAccess(); }
    AuthorizedAccess(const AuthorizedAccess&) = delete;
    AuthorizedAccess& operator=(const AuthorizedAccess&) = delete;

private:
    MagellanGPSPlugin& driver_;
};

/// Downloads one kind.
/// @return  whether to continue with the next kind. The reason not to is only logged; a host
///          notices that the later transfers are missing
bool acquireKind(const Kind& kind, const gps::Dictionary& work, gps::GPSOutputReceiver& status,
                 const OperationMonitor& monitor, OperationAccount& account)
{
    if (isSwitchedOff(kind, work))
        return true;
    if (monitor.stopRequested()) {
        account.setStopped();
        return false;
    }
    status.startTransfer(kind.kind);
    const auto& folders = *work.findDictionary("folders");
    const auto& volume = *work.findString("targetPath");
    const auto folder = dataFolderPath(folders, kind.folder, volume);
    const auto error =
        folder ? sendSelector(kind.reader, status, *folder, {nameOf(kind.folder), monitor, account})
               : std::nullopt;
    if (const auto obstacle =
            folder ? std::nullopt : dataFolderObstacle(folders, kind.folder, volume))
        account.addUnseen(nameOf(kind.folder), *obstacle->path(), *obstacle);
    status.endTransfer(kind.kind);
    return !error;
}

/// Folders that are missing give no records, and no errors. That is all that remains to be seen of
/// a volume that has been pulled out, so this looks whether it is still a receiver. It only looks:
/// a worker has no access of its own to open the unit file.
void checkPresence(const std::string& volume, OperationAccount& account)
{
    const auto path = unitFilePath(volume);
    struct stat ignored;
    if (gps::FileSystem::system().stat(path.c_str(), &ignored) != 0)
        account.addUnseen("device", path, gps::makeReadError(path, errno));
}

} // namespace

std::optional<gps::Error> MagellanGPSPlugin::gpsRunAcquire(const Status& status,
                                                           const gps::Dictionary& options)
{
    setDebugLevelFromOptions(options);
    if (const auto* source = options.find("sourcePath")) {
        // A host may release both in one of the status calls.
        const std::pair held{shared_from_this(), status};
        const AuthorizedAccess access{*this};
        const auto* path = source->as<std::string>();
        return importFile(path != nullptr ? std::optional{*path} : std::nullopt, *held.second);
    }
    return startAcquire(status, options);
}

void MagellanGPSPlugin::runAcquire(const gps::Dictionary& work)
{
    gps::GPSOutputReceiver& status = **work.find("output")->as<Status>();
    {
        OperationAccount account{monitor()}; // published at the end of this scope
        status.gpsStateChange(1);
        for (const auto& kind : kKinds) {
            if (!acquireKind(kind, work, status, monitor(), account))
                break;
        }
        checkPresence(*work.findString("targetPath"), account);
    }
    status.gpsStateChange(0);
}

} // namespace magellan
