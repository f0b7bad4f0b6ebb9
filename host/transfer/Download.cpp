// SPDX-License-Identifier: MIT

#include "host/transfer/Download.h"

#include "host/bundle/DeviceChoice.h"
#include "host/bundle/SerialPort.h"
#include "host/cli/Summary.h"
#include "host/formats/EventLines.h"

#include <platform/OrvUtils/SerialTraffic.h>

#include <algorithm>
#include <ctime>
#include <utility>

#include <unistd.h>

namespace host {
namespace {

constexpr std::size_t kMostShown = 10; // lines of one sort

std::vector<gps::TransferKind> missingKinds(const std::vector<gps::TransferKind>& requested,
                                            const std::vector<gps::TransferKind>& came)
{
    std::vector<gps::TransferKind> missing;
    std::copy_if(requested.begin(), requested.end(), std::back_inserter(missing),
                 [&](gps::TransferKind kind) {
                     return std::find(came.begin(), came.end(), kind) == came.end();
                 });
    return missing;
}

// A driver ends its waypoints at the first thing that it cannot read, and any kind at a damaged
// sentence, and tells nobody but the log. Where nothing else was to follow, the log is all there is
// to see it by.
bool endedAt(const LoggedError& logged, const Outcome& outcome)
{
    if (logged.error.domain() == gps::kRangeErrorDomain)
        return true;
    return !outcome.transfers.empty() &&
           outcome.transfers.back() == gps::TransferKind::kWaypoints &&
           logged.transfersBegun == outcome.transfers.size();
}

} // namespace

Download::Download(const DownloadOptions& options, const Console& console)
    : options_(options), console_(console),
      progress_(wantsProgress(options, options.output == "-")),
      dates_(options.fixDates, std::time(nullptr)),
      standardOutput_(STDOUT_FILENO, "the standard output")
{}

std::optional<gps::Error> Download::open(const Wrap& wrap)
{
    if (options_.output) {
        file_.emplace(*options_.output);
        if (auto failure = file_->open())
            return failure;
        fileWriter_ = options_.format->make(file_->output(), file_->folder());
        if (wrap)
            fileWriter_ = wrap(std::move(fileWriter_));
    }
    if (options_.events)
        tellWriter_ = std::make_unique<EventLines>(standardOutput_);
    else if (!options_.output || options_.summary)
        tellWriter_ = std::make_unique<Summary>(standardOutput_);
    return std::nullopt;
}

void Download::run(gps::GPSPlugInProtocol& driver, const gps::Dictionary& driverOptions)
{
    const auto linesBefore = gps::serialTraffic().linesRead;
    progress_.begin(driver.needsSerialRefresh()
                        ? "looking for a receiver at " + selectedLocation(driver)
                        : "reading");
    const auto outcome = runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return driver.gpsRunAcquire(status, driverOptions);
        },
        [this](const EventBatch& batch) { consume(batch); });
    for (auto* const writer : {fileWriter_.get(), tellWriter_.get()}) {
        if (writer != nullptr)
            writer->result(outcome.error);
    }
    progress_.clear();
    hasArrived_ = hasArrived_ || !outcome.transfers.empty();
    judge(outcome, driver, driverOptions);
    if (driver.needsSerialRefresh())
        judgePort(outcome, selectedLocation(driver), gps::serialTraffic().linesRead != linesBefore);
}

void Download::consume(const EventBatch& batch)
{
    for (const auto& event : batch) {
        const auto& mended = dates_.mended(event);
        if (fileWriter_)
            fileWriter_->event(mended);
        if (tellWriter_) // event lines show what the plug-in said
            tellWriter_->event(options_.events ? event : mended);
    }
    if (options_.events)
        standardOutput_.flush(); // whoever reads the lines sees them as they come
    progress_.show(batch);
}

void Download::judge(const Outcome& outcome, const gps::GPSPlugInProtocol& driver,
                     const gps::Dictionary& driverOptions)
{
    const bool isSerial = driver.needsSerialRefresh();
    for (const auto& error : outcome.reported)
        console_.error(isSerial ? describeSerialError(error, selectedLocation(driver)) : error);
    if (outcome.error)
        console_.error(*outcome.error);
    const bool endedInError = outcome.error || !outcome.reported.empty();
    isIncomplete_ = isIncomplete_ || endedInError;
    const auto missing =
        endedInError ? std::vector<gps::TransferKind>{}
                     : missingKinds(requestedKinds(driverOptions, driver), outcome.transfers);
    judgeMissing(missing);
    judgeLoggedErrors(outcome, driverOptions.contains(kSourcePathKey) || !missing.empty());
    if (!isSerial || !missing.empty()) // a serial session writes each of its sentences to the log
        showLog(outcome, !missing.empty());
}

// To a driver a receiver that never answers is one without data. To the user it is a failure, and
// an older file is worth more than an empty one.
void Download::judgePort(const Outcome& outcome, const std::string& port, bool wasHeard)
{
    if (!outcome.reported.empty()) {
        console_.error(explainPortFailure(port));
    } else if (!outcome.error && !wasHeard) {
        console_.error("No receiver answered at " + port +
                       ". Check that it is on and connected there, and try again.");
        isIncomplete_ = true;
        hasArrived_ = false;
    }
}

void Download::judgeMissing(const std::vector<gps::TransferKind>& missing)
{
    if (missing.empty())
        return;
    std::string names;
    for (const auto kind : missing)
        names += (names.empty() ? "" : ", ") + std::string{kindName(kind)};
    console_.error("The download broke off. Missing: " + names + ".");
    isIncomplete_ = true;
}

void Download::judgeLoggedErrors(const Outcome& outcome, bool foldersCount)
{
    std::size_t shown = 0;
    std::size_t unshown = outcome.moreErrors;
    for (const auto& logged : outcome.loggedErrors) {
        const bool ended = !foldersCount && endedAt(logged, outcome);
        if (logged.isFolder && !foldersCount && !ended)
            continue; // a folder among the files is nothing to read
        isIncomplete_ = isIncomplete_ || ended;
        hasFailed_ = true;
        if (outcome.error && outcome.error->path() == logged.error.path())
            continue; // said already
        if (shown++ < kMostShown)
            console_.error(logged.error);
        else
            ++unshown;
    }
    if (unshown > 0)
        console_.error("And " + std::to_string(unshown) + " more that could not be read.");
    hasFailed_ = hasFailed_ || unshown > 0;
}

void Download::showLog(const Outcome& outcome, bool isNeeded) const
{
    if (options_.verbose)
        return; // there already, line by line
    const auto show = [&](const std::string& line) {
        isNeeded ? console_.error("log: " + line) : console_.note(line);
    };
    std::for_each(outcome.logLines.begin(), outcome.logLines.end(), show);
    if (outcome.moreLines > 0)
        show("and " + std::to_string(outcome.moreLines) + " more");
}

ExitStatus Download::finish()
{
    if (tellWriter_ && (options_.events || hasArrived_ || isWhole()))
        fail(tellWriter_->close());
    tellOfDates();
    if (fileWriter_)
        finishFile();
    return isWhole() ? ExitStatus::kSuccess : ExitStatus::kFailed;
}

void Download::tellOfDates()
{
    const auto hint = dates_.hint();
    if (hint.empty())
        return;
    if (tellWriter_ && !options_.events) { // with the summary
        standardOutput_.write("\n" + hint + "\n");
        fail(standardOutput_.flush());
    }
    if (fileWriter_)
        console_.note(hint);
}

void Download::finishFile()
{
    if (auto failure = fileWriter_->close()) {
        fail(failure);
        return;
    }
    if (const auto remark = fileWriter_->remark(); !remark.empty())
        console_.note(remark);
    if (!isIncomplete_) {
        fail(file_->commit());
    } else if (hasArrived_) {
        const auto path = file_->partialPath();
        const auto failure = file_->keepPartial();
        fail(failure);
        if (!failure && !path.empty())
            console_.error(
                "The output file was not written; what arrived is kept beside its place. Path: " +
                path);
    }
}

void Download::fail(const std::optional<gps::Error>& failure)
{
    if (!failure)
        return;
    console_.error(*failure);
    hasFailed_ = true;
}

ExitStatus download(gps::GPSPlugInProtocol& driver, const std::vector<gps::Dictionary>& operations,
                    const DownloadOptions& options, const Console& console)
{
    Download download{options, console};
    if (const auto failure = download.open()) {
        console.error(*failure);
        return ExitStatus::kFailed;
    }
    for (const auto& driverOptions : operations)
        download.run(driver, driverOptions);
    return download.finish();
}

} // namespace host
