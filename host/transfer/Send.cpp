// SPDX-License-Identifier: MIT
// A driver answers before its worker has written anything, and the worker only logs its failures.
// So the result is taken from four sources: the answer, the status calls, the log, and the files.

#include "host/transfer/Send.h"

#include "host/base/HostError.h"
#include "host/transfer/ProgressTracker.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {
namespace {

std::optional<gps::Error> backUp(const PreparedSend& send, SendReport& report)
{
    if (send.request.backup->folder.empty())
        return hostError("There is no folder for backups", "Name one");
    MadeBackup made;
    const DataFolders source{send.device.location, send.files->deviceIdentifier().value_or(""),
                             send.snapshot->dataFolders(), &send.snapshot->files()};
    if (auto failure = makeBackup(*send.request.backup, source, made))
        return failure;
    report.backup = std::move(made.backup);
    report.notBackedUp = std::move(made.skipped);
    report.deletedBackups = std::move(made.deleted);
    return std::nullopt;
}

Outcome run(const PreparedSend& send, ProgressTracker& progress)
{
    const auto& data = send.request.data;
    return runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return send.device.driver->gpsRunSend(data ? &*data : nullptr, status,
                                                  send.request.driverOptions);
        },
        [&](const EventBatch& batch) {
            progress.consume(batch);
            if (send.request.onEvents)
                send.request.onEvents(batch);
        });
}

std::vector<gps::TransferKind> missingKinds(const PreparedSend& send, const Outcome& outcome)
{
    std::vector<gps::TransferKind> missing;
    const auto requested =
        send.request.data ? kindsIn(*send.request.data) : std::vector<gps::TransferKind>{};
    std::copy_if(requested.begin(), requested.end(), std::back_inserter(missing),
                 [&](gps::TransferKind kind) {
                     return std::find(outcome.sendings.begin(), outcome.sendings.end(), kind) ==
                            outcome.sendings.end();
                 });
    return missing;
}

void addErrors(const PreparedSend& send, Outcome& outcome, SendReport& report)
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
    report.missingKinds = missingKinds(send, outcome);
}

void check(const PreparedSend& send, ProgressTracker& progress, SendReport& report)
{
    progress.begin(TransferPhase::kReadingBack);
    report.files = checkFiles(send.plan);
    if (report.isComplete())
        report.missingRecords = missingRecords(*send.request.data, send.plan, *send.files);
}

} // namespace

bool SendReport::isComplete() const noexcept
{
    const auto isGood = [](const SentFile& file) {
        return file.result == SentFile::Result::kWritten ||
               file.result == SentFile::Result::kNothingToWrite;
    };
    return !backupError && errors.empty() && moreErrors == 0 && missingKinds.empty() &&
           std::all_of(files.begin(), files.end(), isGood) && missingRecords.empty();
}

SendReport performSend(const PreparedSend& send)
{
    SendReport report;
    ProgressTracker progress{send.request.progress};
    if (send.request.backup && plannedWrites(send.plan) > 0) {
        progress.begin(TransferPhase::kBackingUp);
        report.backupError = backUp(send, report);
    }
    if (!report.backupError) {
        progress.begin(TransferPhase::kSending);
        auto outcome = run(send, progress);
        report.logLines = std::move(outcome.logLines);
        report.moreLogLines = outcome.moreLines;
        addErrors(send, outcome, report);
        if (send.isPlanned() && !report.answer)
            check(send, progress, report);
    }
    progress.finish();
    return report;
}

} // namespace host
