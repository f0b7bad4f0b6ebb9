// SPDX-License-Identifier: MIT
// Members of MagellanGPSPlugin: the send to a mounted receiver. The host's call starts a worker
// that writes one kind after the other.

#include "../common/Errors.h"
#include "../common/OperationAccount.h"
#include "DeviceFileWriters.h"
#include "MagellanGPSPlugin.h"
#include "PlannedTexts.h"
#include "SendOrder.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/System/FileError.h>
#include <platform/System/Log.h>

#include <exception>
#include <optional>
#include <utility>

namespace magellan {
namespace {

std::optional<gps::Error> write(const SendJob& job, const PlannedTexts* planned,
                                gps::FileAccount& present)
{
    switch (job.kind) {
    case RecordKind::kTracks:
        return saveTracks(job.records(), *job.folder, false, planned);
    case RecordKind::kWaypoints:
        return saveWaypoints(job.records(), *job.folder, false, &present, planned);
    case RecordKind::kGeocaches:
        return saveGeocaches(job.records(), *job.folder, false, &present, planned);
    case RecordKind::kRoutes:
        break;
    }
    return saveRoutes(job.records(), *job.folder, false, &present);
}

/// Whether the host has asked for the end of the send. The account then says so.
bool isStopped(const OperationMonitor& monitor, OperationAccount& account)
{
    if (!monitor.stopRequested())
        return false;
    account.setStopped();
    return true;
}

/// Writes the records of one kind. Failures, exceptions included, are logged only: the other kinds
/// are written all the same.
void save(const SendJob& job, const PlannedTexts* planned, OperationAccount& account)
{
    if (!job.folder)
        return;
    gps::FileAccount present{.kind = nameOf(job.kind), .path = targetOf(job)};
    try {
        if (const auto error = write(job, planned, present))
            gps::logError(kFilesLogSource, *error);
    } catch (const std::exception& failure) {
        present.error = makeThrownError(failure, present.path);
        gps::logError(kFilesLogSource, *present.error);
    }
    const bool isNew =
        present.error && gps::FileErrorCode::kReadNoSuchFile == present.error->code();
    if (job.kind != RecordKind::kTracks && !isNew) // only these merge into what is there
        account.addFile(std::move(present));
}

} // namespace

std::optional<gps::Error> MagellanGPSPlugin::gpsRunSend(const gps::Dictionary* data,
                                                        const Status& status,
                                                        const gps::Dictionary& options)
{
    setDebugLevelFromOptions(options);
    if (data == nullptr) {
        monitor().begin();
        status->gpsStateChange(0);
        return std::nullopt;
    }
    return startWorker(
        status, "status", options, {{"data", *data}},
        [this, planned = plannedTexts()](const auto& work) { runSend(work, planned.get()); });
}

void MagellanGPSPlugin::runSend(const gps::Dictionary& work, const PlannedTexts* planned)
{
    gps::GPSOutputReceiver& status = **work.find("status")->as<Status>();
    {
        OperationAccount account{monitor()}; // published at the end of this scope
        for (const auto& bracket :
             sendOrder(*work.findDictionary("data"), *work.findDictionary("folders"),
                       *work.findString("targetPath"))) {
            if (isStopped(monitor(), account))
                break;
            status.startSending(bracket.label, bracket.kind);
            for (const auto& job : bracket.jobs) {
                if (!isStopped(monitor(), account))
                    save(job, planned, account);
            }
            status.endSending(bracket.kind);
        }
    }
    status.gpsStateChange(0);
}

} // namespace magellan
