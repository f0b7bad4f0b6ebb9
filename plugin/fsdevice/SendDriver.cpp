// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: the send to a mounted receiver. The host's call starts a worker
// that writes one kind after the other.

#include "../common/Errors.h"
#include "DeviceFileWriters.h"
#include "MagellanGPSPlugin.h"
#include "SendOrder.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/System/Log.h>

#include <exception>
#include <optional>

namespace magellan {
namespace {

std::optional<gps::Error> write(const SendJob& job)
{
    switch (job.kind) {
    case RecordKind::kTracks:
        return saveTracks(job.records, *job.folder, false);
    case RecordKind::kWaypoints:
        return saveWaypoints(job.records, *job.folder, false);
    case RecordKind::kGeocaches:
        return saveGeocaches(job.records, *job.folder, false);
    case RecordKind::kRoutes:
        break;
    }
    return saveRoutes(job.records, *job.folder, false);
}

/// Writes the records of one kind. Failures, exceptions included, are logged only: the other kinds
/// are written all the same.
void save(const SendJob& job)
{
    if (!job.folder)
        return;
    try {
        if (const auto error = write(job))
            gps::logError(kFilesLogSource, *error);
    } catch (const std::exception& failure) {
        gps::logError(kFilesLogSource, makeThrownError(failure, targetOf(job)));
    }
}

} // namespace

std::optional<gps::Error> MagellanGPSPlugin::gpsRunSend(const gps::Dictionary* data,
                                                        const Status& status,
                                                        const gps::Dictionary& options)
{
    setDebugLevelFromOptions(options);
    if (data == nullptr) {
        status->gpsStateChange(0);
        return std::nullopt;
    }
    return startWorker(status, "status", options, {{"data", *data}}, &MagellanGPSPlugin::runSend);
}

void MagellanGPSPlugin::runSend(const gps::Dictionary& work)
{
    gps::GPSOutputReceiver& status = **work.find("status")->as<Status>();
    for (const auto& bracket :
         sendOrder(*work.findDictionary("data"), *work.findDictionary("folders"),
                   *work.findString("targetPath"))) {
        status.startSending(bracket.label, bracket.kind);
        for (const auto& job : bracket.jobs)
            save(job);
        status.endSending(bracket.kind);
    }
    status.gpsStateChange(0);
}

} // namespace magellan
