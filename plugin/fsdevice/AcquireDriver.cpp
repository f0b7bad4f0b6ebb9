// SPDX-License-Identifier: MIT
// How the driver downloads from a mounted receiver: the host's call, and the worker that walks the
// kinds.

#include "../common/DictionaryHelpers.h"
#include "../common/FolderWalk.h"
#include "DeviceFileReaders.h"
#include "MagellanGPSPlugin.h"

#include <gps/GPSOutputReceiver.h>

#include <array>

namespace magellan {
namespace {

/// One kind of data on a receiver, in the order in which the host gets them.
struct Kind {
    const char* testName; ///< the option that switches it off
    Reader reader;
    std::string_view folder; ///< the folder key
    gps::TransferKind kind;
};

/// Geocaches have no switch of their own: to a receiver's user they are waypoints.
constexpr std::array kKinds{
    Kind{"waypoints", acquireWayPoints, "MyPOIs", gps::TransferKind::kWaypoints},
    Kind{"waypoints", acquireGeoCaches, "Geocaches", gps::TransferKind::kWaypoints},
    Kind{"routes", acquireRoutes, "Routes", gps::TransferKind::kRoutes},
    Kind{"tracks", acquireTracks, "TrackLogs", gps::TransferKind::kTracks},
};

bool isSwitchedOff(const Kind& kind, const gps::Dictionary& work)
{
    return !GetBoolValueForKey(&work, kind.testName, true);
}

/// Opens access to the selected device, and closes it also when an import throws.
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

/// @return  whether to go on with the next kind. Why not is in the log alone: the host sees that
/// later transfers never come
bool acquireKind(const Kind& kind, const gps::Dictionary& work, gps::GPSOutputReceiver& status)
{
    if (isSwitchedOff(kind, work))
        return true;
    status.startTransfer(kind.kind);
    const auto folder = dataFolderPath(*work.findDictionary("folders"), kind.folder,
                                       *work.findString("targetPath"));
    const auto error = folder ? sendSelector(kind.reader, status, *folder) : std::nullopt;
    status.endTransfer(kind.kind);
    return !error;
}

} // namespace

std::optional<gps::Error> MagellanGPSPlugin::gpsRunAcquire(const Status& status,
                                                           const gps::Dictionary& options)
{
    takeDebugLevel(options);
    if (const auto* source = options.find("sourcePath")) {
        const AuthorizedAccess access{*this};
        const auto* path = source->as<std::string>();
        return importFile(path != nullptr ? std::optional{*path} : std::nullopt, *status);
    }
    return startAcquire(status, options);
}

void MagellanGPSPlugin::runAcquire(const gps::Dictionary& work)
{
    gps::GPSOutputReceiver& status = **work.find("output")->as<Status>();
    status.gpsStateChange(1);
    for (const auto& kind : kKinds) {
        if (!acquireKind(kind, work, status))
            break;
    }
    status.gpsStateChange(0);
}

} // namespace magellan
