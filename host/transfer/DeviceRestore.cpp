// SPDX-License-Identifier: MIT
// Nothing is backed up if nothing would change: each new backup removes an old one.

#include "host/transfer/DeviceRestore.h"

#include "host/backup/Restore.h"
#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/Translation.h"
#include "host/files/FolderLock.h"
#include "host/operations/Operation.h"
#include "host/transfer/ProgressTracker.h"
#include "host/transfer/SendPreparation.h"

#include <gps/GPSFileDevice.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

std::optional<gps::Error> backUpPresent(const DataFolders& device, const RestoreRequest& request,
                                        RestoreReport& report)
{
    auto source = device;
    source.stopRequested = request.stopRequested;
    auto policy = request.policy;
    policy.protectedPath = request.backup; // the new backup must not push this one out
    MadeBackup made;
    if (auto failure = makeBackup(policy, source, made))
        return failure;
    report.previous = std::move(made.backup);
    report.deletedBackups = std::move(made.deleted);
    return std::nullopt;
}

// A backup that is put back, and what of it the device does not hold.
struct OpenedBackup {
    Restore restore{};
    std::vector<std::string> changedFiles{};
};

std::optional<gps::Error> writeFiles(const OpenedBackup& backup, const DataFolders& device,
                                     const RestoreRequest& request, ProgressTracker& progress,
                                     WrittenFiles& files)
{
    progress.begin(TransferPhase::kRestoring);
    progress.expectWrites(backup.restore.bytesOf(backup.changedFiles));
    return backup.restore.write(device.device, files, [&] {
        progress.consume({});
        return request.stopRequested && request.stopRequested();
    });
}

std::optional<gps::Error> writeBack(const OpenedBackup& backup, const DataFolders& device,
                                    const RestoreRequest& request, ProgressTracker& progress,
                                    RestoreReport& report)
{
    WrittenFiles files{.asBefore = backup.restore.files()};
    progress.begin(TransferPhase::kBackingUp);
    auto failure = backUpPresent(device, request, report);
    if (!failure)
        failure = writeFiles(backup, device, request, progress, files);
    report.restored = std::move(files.written);
    report.asBefore = std::move(files.asBefore);
    return failure;
}

// A backup that was stopped fails. Any other failure is reported, whether or not there is a
// request.
void writeOrStop(const OpenedBackup& backup, const DataFolders& device,
                 const RestoreRequest& request, ProgressTracker& progress, RestoreReport& report)
{
    if (request.beforeWriting)
        request.beforeWriting();
    report.error = writeBack(backup, device, request, progress, report);
    const bool isStopRequested = request.stopRequested && request.stopRequested();
    if (isStopRequested && !report.previous)
        report.error.reset();
    report.wasStopped = isStopRequested && !report.error && !report.asBefore.empty();
}

} // namespace

std::optional<gps::Error> checkRestore(const DataFolders& device, const std::string& backup,
                                       bool isForced, Restore& restore)
{
    if (device.failure)
        return device.failure;
    if (auto failure = restore.open(backup))
        return failure;
    if (!isForced && !restore.isOf(device.identifier, device.device))
        return hostError(tr("This backup seems to be of another device"),
                         tr("Choose another backup") + advice(", or restore it with --force", ""),
                         backup);
    return restore.checkFolders(device.device);
}

namespace {

RestoreReport putBack(const DataFolders& device, const RestoreRequest& request,
                      ProgressTracker& progress)
{
    RestoreReport report;
    std::optional<FolderLock> lock{device.device};
    if (lock->isHeldByAnother()) {
        report.error = deviceInUse(device.device);
        return report;
    }
    OpenedBackup backup;
    auto& restore = backup.restore;
    report.error = checkRestore(device, request.backup, request.isForced, restore);
    if (report.error)
        return report;
    if (lock->isOfAny(device.folders) || lock->isOfAny(restore.folders(device.device)))
        lock.reset();
    backup.changedFiles = restore.changedFiles(device.device);
    report.wasUpToDate = backup.changedFiles.empty();
    if (!report.wasUpToDate)
        writeOrStop(backup, device, request, progress, report);
    if (report.wasUpToDate || (report.previous && !report.wasStopped))
        report.extraFiles = restore.extraFiles(device.device);
    return report;
}

} // namespace

std::optional<DataFolders> dataFoldersOf(const ChosenDevice& device)
{
    const auto* const files = dynamic_cast<const gps::GPSFileDevice*>(device.driver.get());
    if (files == nullptr || device.location.empty() || !canSend(*device.driver))
        return std::nullopt;
    const auto snapshot = files->takeSnapshot();
    if (!snapshot)
        return DataFolders{device.location, {}, {}};
    const auto& failures = snapshot->failures();
    return DataFolders{.device = device.location,
                       .identifier = snapshot->identifier().value_or(""),
                       .folders = snapshot->dataFolders(),
                       .failure =
                           failures.empty() ? std::nullopt : std::optional{failures.front()}};
}

RestoreReport restoreBackup(const DataFolders& device, const RestoreRequest& request)
{
    ProgressTracker progress{request.progress};
    progress.begin(TransferPhase::kRestoring);
    auto report = putBack(device, request, progress);
    progress.finish();
    return report;
}

} // namespace host
