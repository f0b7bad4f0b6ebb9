// SPDX-License-Identifier: MIT
// A driver answers before its worker has written anything, and the worker only logs its failures.
// So the result is taken from four sources: the answer, the status calls, the log, and the files.

#include "host/transfer/Send.h"

#include "host/base/HostError.h"
#include "host/base/Translation.h"
#include "host/transfer/LostChanges.h"
#include "host/transfer/PresentFiles.h"
#include "host/transfer/ProgressTracker.h"
#include "host/transfer/RenamedTracks.h"

#include <gps/GPSSessionControl.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {
namespace {

std::optional<gps::Error> backUp(const PreparedSend& send, SendReport& report)
{
    if (send.request.backup->folder.empty())
        return hostError(tr("There is no folder for backups"), tr("Name one"));
    MadeBackup made;
    const DataFolders source{.device = send.device.location,
                             .identifier = send.snapshot->identifier().value_or(""),
                             .folders = send.snapshot->dataFolders(),
                             .known = &send.snapshot->files(),
                             .stopRequested = send.request.stopRequested};
    if (auto failure = makeBackup(*send.request.backup, source, made))
        return failure;
    report.backup = std::move(made.backup);
    report.notBackedUp = std::move(made.skipped);
    report.deletedBackups = std::move(made.deleted);
    return std::nullopt;
}

// A device without an identifier is known by its volume.
bool isSameDevice(const PreparedSend& send, const DeviceState& now)
{
    const auto& before = send.snapshot->identifier();
    return send.files->deviceIdentifier() == before && (before || now.isOfSameVolume(send.state));
}

// After the driver's operation. What is in the place of the device now must be neither judged nor
// changed.
bool isGone(const PreparedSend& send)
{
    return !isSameDevice(send, DeviceState::of(send.device.location, {}));
}

gps::Error deviceGone(const PreparedSend& send)
{
    return hostError(
        tr("The receiver was removed, or another one has taken its place, while it was "
           "written to"),
        tr("Connect the one that you want to send to, and send again. The other one may "
           "have got a part of it"),
        send.device.location);
}

// Before anything is written, the device is compared with the one that the plan is for. What
// another program changes later, the driver merges into, and check() recognises.
void lookAgain(const PreparedSend& send, SendReport& report)
{
    if (!send.isPlanned() || report.obstacle || report.backupError)
        return;
    const auto& location = send.device.location;
    const auto now = DeviceState::of(location, send.snapshot->dataFolders());
    if (!isSameDevice(send, now)) {
        report.obstacle =
            hostError(tr("The receiver that was read is no longer here, or another one "
                         "has taken its place"),
                      tr("Check which one is connected, and send again"), location);
    } else if (now != send.state) {
        report.obstacle = hostError(tr("Another program has changed the device since it was read"),
                                    tr("Let it finish, and send again"), location);
        report.isOutdated = true;
    }
}

// The data that the driver gets: all of it, or a copy without the kinds that cannot be written.
class DataToSend {
public:
    explicit DataToSend(const PreparedSend& send)
    {
        if (!send.request.data)
            return;
        reduced_ = withoutBlocked(*send.request.data, send.plan);
        data_ = reduced_ ? &*reduced_ : &*send.request.data;
    }
    // data_ can point into this object.
    DataToSend(const DataToSend&) = delete;
    DataToSend& operator=(const DataToSend&) = delete;

    [[nodiscard]] const gps::Dictionary* get() const noexcept { return data_; }

private:
    std::optional<gps::Dictionary> reduced_;
    const gps::Dictionary* data_ = nullptr;
};

// Waits however long it takes: a worker that may be writing is never abandoned.
Outcome run(const PreparedSend& send, const gps::Dictionary* data, ProgressTracker& progress)
{
    auto* const control = dynamic_cast<gps::GPSSessionControl*>(send.device.driver.get());
    return runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return send.device.driver->gpsRunSend(data, status, send.request.driverOptions);
        },
        [&](const EventBatch& batch) {
            progress.consume(batch);
            if (control != nullptr && send.request.isStopRequested())
                control->requestStop(); // again and again: it has no effect before the worker runs
            if (send.request.onEvents)
                send.request.onEvents(batch);
        });
}

std::vector<gps::TransferKind> missingKinds(const gps::Dictionary* data, const Outcome& outcome)
{
    std::vector<gps::TransferKind> missing;
    const auto requested = data != nullptr ? kindsIn(*data) : std::vector<gps::TransferKind>{};
    std::copy_if(requested.begin(), requested.end(), std::back_inserter(missing),
                 [&](gps::TransferKind kind) {
                     return std::find(outcome.sendings.begin(), outcome.sendings.end(), kind) ==
                            outcome.sendings.end();
                 });
    return missing;
}

void addErrors(const PreparedSend& send, const gps::Dictionary* data, Outcome& outcome,
               SendReport& report)
{
    report.errors = std::move(outcome.reported);
    report.answer = std::move(outcome.error);
    if (report.answer) { // the worker was never started
        report.errors.push_back(*report.answer);
        return;
    }
    for (auto& logged : outcome.loggedErrors) {
        if (!isExpected(logged.error, send.plan))
            report.errors.push_back(std::move(logged.error));
    }
    report.moreErrors = outcome.moreErrors;
    report.missingKinds = missingKinds(data, outcome);
}

// Whether the driver could read a file before it merged into it. Then records that are missing now
// had been taken out by another program, and an old version must not replace its work.
bool wasRead(const SendReport& report, const std::string& path)
{
    if (!report.account)
        return false;
    const auto& files = report.account->files;
    return std::any_of(files.begin(), files.end(),
                       [&path](const auto& file) { return file.path == path && !file.error; });
}

gps::Error lostChange(LostChanges::Change change, const std::string& path)
{
    switch (change) {
    case LostChanges::Change::kDeleted:
        return hostError(
            tr("Another program has deleted this file during the send, and the send has "
               "created it again"),
            tr("Delete it again if that was meant"), path);
    case LostChanges::Change::kReplaced:
        return hostError(tr("Another program has put a file or a link in the place of this file "
                            "during the send, and the send has replaced it"),
                         tr("Make the change again"), path);
    case LostChanges::Change::kNone:
    case LostChanges::Change::kWritten:
        break;
    }
    return hostError(tr("Another program has changed this file during the send, and the send has "
                        "written over its change"),
                     tr("Make the change again"), path);
}

void addLostChanges(const LostChanges& changes, SendReport& report)
{
    for (const auto& file : report.files) {
        const bool isAsPlanned = file.result == SentFile::Result::kWritten;
        const auto change = changes.find(file.path, isAsPlanned);
        if (change != LostChanges::Change::kNone)
            report.errors.push_back(lostChange(change, file.path));
    }
}

void check(const PreparedSend& send, const RenamedTracks& renamed, const LostChanges& changes,
           ProgressTracker& progress, SendReport& report)
{
    progress.begin(TransferPhase::kReadingBack);
    if (plannedWrites(send.plan) > 0 && isGone(send)) {
        report.isDeviceGone = true;
        report.errors.push_back(deviceGone(send));
        report.files = unknownFiles(send.plan);
        return;
    }
    report.files = checkFiles(send.plan, send.snapshot->dataFolders());
    renamed.find(send.plan, report.files);
    for (std::size_t i = 0; i < report.files.size(); ++i) {
        const auto& planned = send.plan.files[i];
        if (report.files[i].result == SentFile::Result::kDifferent &&
            holdsPlannedRecords(planned, *send.files))
            report.files[i].result = SentFile::Result::kAlsoChanged;
        const auto* const before = findFile(*send.snapshot, planned.path);
        if (before != nullptr && !wasRead(report, planned.path))
            putBackIfLost(*before, planned, *send.files, report.files[i]);
        report.files[i].isAsBefore = isAsBefore(report.files[i], before);
    }
    addLostChanges(changes, report);
    // After another failure, most records are missing because of it. Tracks that the plan has no
    // file for are missing for a reason of their own.
    report.missingRecords = report.isComplete()
                                ? missingRecords(send.stored(), send.plan, *send.files)
                                : unplannedTracks(*send.request.data, send.plan);
}

void runAndCheck(const PreparedSend& send, ProgressTracker& progress, SendReport& report)
{
    const RenamedTracks renamed{send.plan};
    LostChanges changes{send.plan};
    progress.begin(TransferPhase::kSending);
    progress.expectWrites(plannedBytes(send.plan));
    const DataToSend data{send};
    auto outcome = run(send, data.get(), progress);
    changes.end();
    const auto* const account =
        dynamic_cast<const gps::GPSTransferAccount*>(send.device.driver.get());
    if (account != nullptr)
        report.account = account->transferAccount();
    report.logLines = std::move(outcome.logLines);
    report.moreLogLines = outcome.moreLines;
    addErrors(send, data.get(), outcome, report);
    if (send.isPlanned() && !report.answer)
        check(send, renamed, changes, progress, report);
    // A request that came after the last write has stopped nothing.
    report.wasStopped = send.request.isStopRequested() && !report.isComplete();
}

} // namespace

bool SendReport::isComplete() const noexcept
{
    const auto isGood = [](const SentFile& file) {
        return file.result == SentFile::Result::kWritten ||
               file.result == SentFile::Result::kRenamed ||
               file.result == SentFile::Result::kAlsoChanged ||
               file.result == SentFile::Result::kNothingToWrite;
    };
    return wasRun() && !wasStopped && errors.empty() && moreErrors == 0 && missingKinds.empty() &&
           std::all_of(files.begin(), files.end(), isGood) && missingRecords.empty();
}

SendReport performSend(const PreparedSend& send)
{
    SendReport report;
    ProgressTracker progress{send.request.progress};
    report.obstacle = send.obstacle;
    if (!report.obstacle && send.request.backup && plannedWrites(send.plan) > 0) {
        lookAgain(send, report); // a plan can wait for its reader
        progress.begin(TransferPhase::kBackingUp);
        if (!report.obstacle)
            report.backupError = backUp(send, report);
    }
    lookAgain(send, report); // a backup can take minutes
    if (!report.obstacle && send.request.isStopRequested()) {
        report.wasStopped = report.wasStoppedEarly = true;
        report.backupError.reset(); // a backup that was stopped
    }
    if (report.wasRun())
        runAndCheck(send, progress, report);
    progress.finish();
    return report;
}

} // namespace host
