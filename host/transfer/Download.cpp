// SPDX-License-Identifier: MIT
// Events are consumed on a thread of the running operation, so the host thread must not access
// anything that consume() uses until runOperation() has returned.

#include "host/transfer/Download.h"

#include "host/base/HostError.h"
#include "host/base/Translation.h"
#include "host/bundle/DeviceChoice.h"
#include "host/bundle/SerialPort.h"
#include "host/files/OutputFile.h"
#include "host/points/Points.h"
#include "host/transfer/MapFileImport.h"
#include "host/transfer/OperationWatch.h"
#include "host/transfer/ProgressTracker.h"
#include "host/transfer/RefusedFile.h"
#include "host/transfer/RepeatFilter.h"

#include <gps/GPSFileDevice.h>
#include <gps/GPSTransferAccount.h>
#include <gps/NumberText.h>
#include <platform/OrvUtils/SerialTraffic.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

RequestedKinds onlyKind(gps::TransferKind kind)
{
    return {.waypoints = kind == gps::TransferKind::kWaypoints,
            .routes = kind == gps::TransferKind::kRoutes,
            .tracks = kind == gps::TransferKind::kTracks};
}

// Seconds since 1970. A fixed time makes outputs of the same records equal; the variable is that of
// https://reproducible-builds.org/specs/source-date-epoch/.
std::int64_t timeOfOutput()
{
    const char* const fixed = std::getenv("SOURCE_DATE_EPOCH");
    const auto time = fixed != nullptr ? gps::wholeInteger(fixed) : std::nullopt;
    return time && *time >= 0 && *time < kEndOfTimestamps ? *time : std::time(nullptr);
}

gps::Error olderFileKept(const std::string& path)
{
    return hostError(
        tr("No record arrived, so the output file was not written, and the older one is kept"),
        tr("To have an empty file instead, remove the older one first"), path);
}

// A file is called after its name without the extension.
std::string titleOf(const OutputRequest& output)
{
    if (!output.title.empty() || output.path == "-")
        return output.title;
    return std::filesystem::path{output.path}.stem().string();
}

class Download {
public:
    Download(gps::GPSPlugInProtocol& driver, const DownloadRequest& request)
        : driver_(driver), request_(request), dates_(request.dateRule, std::time(nullptr)),
          gaps_(request.gapRule), progress_(request.progress)
    {
        for (std::size_t i = 0; i < request.filters.size(); ++i)
            behindFilter_.emplace_back([this, i](const Event& event) { filter(event, i + 1); });
    }

    [[nodiscard]] DownloadReport run();

private:
    [[nodiscard]] std::optional<gps::Error> openOutput();
    void runOperations();
    void readMissingKinds();
    [[nodiscard]] OperationReport runOperationOn(const std::string& sourceFile,
                                                 const gps::Dictionary& options);
    [[nodiscard]] OperationReport readMapFile(const std::string& file,
                                              const gps::Dictionary& options);
    void readRefusedFile(OperationReport& report);
    [[nodiscard]] std::function<bool()> answerQuery() const;
    void waitForPort();
    [[nodiscard]] OperationWatch::Listening listening(bool isSerial) const;
    void consume(const EventBatch& batch);
    void showBytesRead(const EventBatch& batch);
    void handOut(const Event& event);
    void deliver(const Event& event);
    void filter(const Event& event, std::size_t index);
    void finishFilters();
    void passOn(const Event& event);
    void reportGap();
    void write(const Event& event) const;
    void handOutResult(const std::optional<gps::Error>& error) const;
    void finishOutput();
    [[nodiscard]] RecordCounts chosen() const;
    [[nodiscard]] bool isOutputKept() const;
    void closeOutput();

    gps::GPSPlugInProtocol& driver_;
    const DownloadRequest& request_;
    DateFix dates_;
    std::vector<EventFilter::Sink> behindFilter_; // what each of the request's filters passes on to
    GapFinder gaps_;
    bool hasTrackGap_ = false; // the open track
    ProgressTracker progress_;
    std::atomic<std::size_t> bytesRead_{0}; // of a map file
    std::atomic<std::size_t> bytesToRead_{0};
    RecordCounter received_;
    RecordCounter passed_;                // by the filters; not used without any
    std::optional<RepeatFilter> repeats_; // while a serial session runs
    const EventFilter::Sink toConsumers_ = [this](const Event& event) { deliver(event); };
    std::optional<OutputFile> file_;
    // Below the file, so that it is destroyed first: it writes to the file's output.
    std::unique_ptr<Writer> fileWriter_; // null without an output file
    DownloadReport report_;
};

DownloadReport Download::run()
{
    report_.output.error = openOutput();
    if (report_.output.error)
        return std::move(report_);
    runOperations();
    finishFilters();
    finishOutput();
    report_.received = received_.counts();
    report_.chosen = chosen();
    report_.written = fileWriter_ ? report_.chosen : RecordCounts{};
    report_.dates = {dates_.adjustedCount(), dates_.suspectNewest()};
    return std::move(report_);
}

std::optional<gps::Error> Download::openOutput()
{
    if (!request_.output)
        return std::nullopt;
    file_.emplace(request_.output->path);
    if (auto failure = file_->open())
        return failure;
    fileWriter_ = request_.output->format->make(file_->output(), file_->folder(),
                                                originOf(driver_, request_));
    return std::nullopt;
}

void Download::runOperations()
{
    if (request_.sourceFiles.empty()) {
        report_.operations.push_back(runOperationOn({}, operationOptions(request_)));
        readMissingKinds();
    }
    for (const auto& sourceFile : request_.sourceFiles) {
        if (report_.isInterrupted())
            return;
        if (fileWriter_)
            fileWriter_->sourceFile(sourceFile.substr(sourceFile.find_last_of('/') + 1));
        const auto options = operationOptions(request_, sourceFile);
        auto report = isMapFile(sourceFile) ? readMapFile(sourceFile, options)
                                            : runOperationOn(sourceFile, options);
        if (report.isRefused)
            readRefusedFile(report);
        report_.operations.push_back(std::move(report));
    }
}

// A driver's import decides by the first sentence whether it knows a file, its decoder does not.
void Download::readRefusedFile(OperationReport& report)
{
    const auto* const decoder = dynamic_cast<const gps::GPSFileDevice*>(&driver_);
    if (decoder == nullptr || !request_.readsMissingKinds || request_.driverOptions)
        return;
    auto file = decodeRefusedFile(*decoder, report.sourceFile);
    if (file.data.empty())
        return;
    const auto outcome = runOperation(
        [&](const std::shared_ptr<EventStream>& status) -> std::optional<gps::Error> {
            reportRecords(file.data, *status);
            return std::nullopt;
        },
        [this](const EventBatch& batch) { consume(batch); });
    handOutResult(outcome.error);
    report = reportOnRefused(outcome, std::move(file.account));
}

// No driver reads these.
OperationReport Download::readMapFile(const std::string& file, const gps::Dictionary& options)
{
    const auto stopRequested = [&] { return request_.stopRequested && request_.stopRequested(); };
    if (stopRequested())
        return {.sourceFile = file, .isInterrupted = true};
    bool isStopped = false;
    UnreadParts unread;
    bytesToRead_ = 0;
    progress_.begin(TransferPhase::kReading);
    const auto outcome = runOperation(
        [&](const std::shared_ptr<EventStream>& status) {
            return importMapFile(file, *status, unread,
                                 [this](std::size_t done, std::size_t total) {
                                     bytesRead_ = done;
                                     bytesToRead_ = total;
                                 });
        },
        [this](const EventBatch& batch) { consume(batch); },
        [&] {
            isStopped = isStopped || stopRequested();
            return !isStopped;
        });
    handOutResult(outcome.error);
    progress_.finish();
    auto report = reportOn(outcome, driver_,
                           {.options = options, .isStoppedByUser = isStopped, .isOfDriver = false});
    report.unreadable.insert(report.unreadable.end(), unread.firstWaypoints.begin(),
                             unread.firstWaypoints.end());
    report.moreUnreadable += unread.waypoints - unread.firstWaypoints.size();
    report.unreadValues = std::move(unread.values);
    report.ignored = std::move(unread.ignored);
    return report;
}

// A driver for files stops at the first waypoint file that it cannot read. The kinds after it are
// as readable as ever.
void Download::readMissingKinds()
{
    const auto first = report_.operations.front(); // a copy: the vector grows
    // If no transfer began, the driver failed before any kind, and would fail again.
    if (!request_.readsMissingKinds || request_.driverOptions || first.isSerial ||
        first.isInterrupted || first.isAbandoned || first.received.empty())
        return;
    for (const auto kind : first.missing) {
        auto one = request_;
        one.kinds = onlyKind(kind);
        report_.operations.push_back(runOperationOn({}, operationOptions(one)));
        if (report_.operations.back().isInterrupted)
            return;
        if (report_.operations.back().missing.empty())
            report_.operations.front().recovered.push_back(kind);
    }
}

OperationReport Download::runOperationOn(const std::string& sourceFile,
                                         const gps::Dictionary& options)
{
    const bool isSerial = driver_.needsSerialRefresh() && sourceFile.empty();
    // For drivers that keep no account: whether anything answered shows only in the traffic.
    const auto linesBefore = gps::serialTraffic().linesRead;
    OperationWatch watch{driver_, request_.stopRequested, listening(isSerial)};
    repeats_.reset();
    if (isSerial)
        repeats_.emplace();
    if (isSerial)
        waitForPort();
    if (isSerial)
        progress_.begin(TransferPhase::kLookingForReceiver, request_.location, answerQuery());
    else
        progress_.begin(TransferPhase::kReading);
    const auto outcome = runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) {
            return driver_.gpsRunAcquire(status, options);
        },
        [this](const EventBatch& batch) { consume(batch); }, [&] { return watch.waits(); });
    if (repeats_)
        repeats_->finish(toConsumers_);
    handOutResult(outcome.error);
    progress_.finish();
    return reportOn(outcome, driver_,
                    {.options = options,
                     .location = request_.location,
                     .wasHeard = gps::serialTraffic().linesRead != linesBefore,
                     .isStopAsked = watch.isStopAsked(),
                     .isStoppedByUser = watch.isStoppedByUser(),
                     .repeats = repeats_ ? repeats_->dropped() : RepeatCounts{}});
}

std::function<bool()> Download::answerQuery() const
{
    const auto* const account = dynamic_cast<const gps::GPSTransferAccount*>(&driver_);
    if (account == nullptr)
        return {};
    return [account] { return account->lineVoice() == gps::LineVoice::kReceiver; };
}

// A port that is still busy after that is left to the driver, whose error is part of the events.
void Download::waitForPort()
{
    bool isShown = false;
    waitWhileBusy(request_.location, [&] {
        if (!std::exchange(isShown, true))
            progress_.begin(TransferPhase::kWaitingForPort, request_.location);
        progress_.consume({});
        return !request_.stopRequested || !request_.stopRequested();
    });
}

OperationWatch::Listening Download::listening(bool isSerial) const
{
    using enum OperationWatch::Listening;
    if (!isSerial)
        return kNone;
    return request_.isDriverReused ? kAndWait : kAndLeave;
}

void Download::consume(const EventBatch& batch)
{
    for (const auto& event : batch)
        handOut(event);
    for (const auto* const consumers : {&request_.consumers, &request_.verbatimConsumers}) {
        for (auto* const consumer : *consumers)
            consumer->flush(); // whoever reads the other end sees events as they come
    }
    showBytesRead(batch);
    progress_.consume(batch);
}

// The host thread reads a map file before it reports the first record.
void Download::showBytesRead(const EventBatch& batch)
{
    const std::size_t total = batch.empty() ? bytesToRead_.load() : 0;
    progress_.read(total > 0 ? bytesRead_.load() : 0, total);
}

void Download::handOut(const Event& event)
{
    for (auto* const consumer : request_.verbatimConsumers)
        consumer->event(event);
    if (repeats_)
        repeats_->event(event, toConsumers_);
    else
        deliver(event);
}

void Download::deliver(const Event& event)
{
    received_.add(event);
    // Filters get adjusted times, too: with another date rule, records that were saved before count
    // as new ones.
    const auto& adjusted = dates_.adjusted(event);
    if (request_.filters.empty())
        passOn(adjusted);
    else
        filter(adjusted, 0);
}

// From the filter of that index on.
void Download::filter(const Event& event, std::size_t index)
{
    if (index < request_.filters.size()) {
        request_.filters[index]->event(event, behindFilter_[index]);
        return;
    }
    passed_.add(event);
    passOn(event);
}

void Download::finishFilters()
{
    for (std::size_t i = 0; i < request_.filters.size(); ++i)
        request_.filters[i]->finish(behindFilter_[i]);
}

void Download::passOn(const Event& event)
{
    if (event.kind != EventKind::kTrackPoint) {
        hasTrackGap_ = hasTrackGap_ && event.kind == EventKind::kNewSegment;
        gaps_.restart();
    } else if (gaps_.isGapBefore(event.point)) {
        reportGap();
    }
    write(event);
}

void Download::reportGap()
{
    if (fileWriter_ && fileWriter_->hasSegments()) {
        report_.splits.areJumps = request_.gapRule.isDefault();
        report_.splits.tracks += std::exchange(hasTrackGap_, true) ? 0U : 1U;
        ++report_.splits.gaps;
    }
    write(newSegmentEvent(false));
}

void Download::write(const Event& event) const
{
    for (auto* const consumer : request_.consumers)
        consumer->event(event);
    if (fileWriter_)
        fileWriter_->event(event);
}

void Download::handOutResult(const std::optional<gps::Error>& error) const
{
    if (fileWriter_)
        fileWriter_->result(error);
    for (const auto* const consumers : {&request_.consumers, &request_.verbatimConsumers}) {
        for (auto* const consumer : *consumers)
            consumer->result(error);
    }
}

void Download::finishOutput()
{
    if (!fileWriter_)
        return;
    if (isOutputKept())
        closeOutput();
}

RecordCounts Download::chosen() const
{
    return request_.filters.empty() ? received_.counts() : passed_.counts();
}

bool Download::isOutputKept() const
{
    if (!request_.output->isKeptEmpty && chosen().isEmpty())
        return false;
    return request_.output->isKeptAfterFailure || report_.isComplete() ||
           report_.isInterrupted(); // it is not tried again
}

void Download::closeOutput()
{
    auto& output = report_.output;
    output.error = fileWriter_->close();
    if (output.error)
        return;
    output.remark = fileWriter_->remark();
    const bool isComplete = report_.isComplete();
    // An older file is worth more than an empty one.
    if (!isComplete && !report_.hasReceived())
        return;
    if (isComplete && chosen().isEmpty() && file_->replacesMore()) {
        output.error = olderFileKept(request_.output->path);
        return;
    }
    const auto path = isComplete ? request_.output->path : file_->partialPath();
    output.error = isComplete ? file_->commit() : file_->keepPartial();
    if (output.error)
        return;
    output.state = isComplete ? OutputReport::State::kComplete : OutputReport::State::kPartial;
    output.path = path; // asked for before: a finished file has no partial path
}

} // namespace

RecordOrigin originOf(const gps::GPSPlugInProtocol& driver, const DownloadRequest& request)
{
    RecordOrigin origin{.time = timeOfOutput()};
    if (request.output) {
        origin.title = titleOf(*request.output);
        origin.tiles = request.output->tiles;
    }
    if (!request.sourceFiles.empty())
        return origin;
    origin.receiver = driver.gpsName();
    if (const auto model = descriptionOf(driver, request.location).model)
        origin.receiver += " " + *model;
    if (const auto* const device = dynamic_cast<const gps::GPSFileDevice*>(&driver))
        origin.identifier = device->deviceIdentifier().value_or("");
    return origin;
}

DownloadReport download(gps::GPSPlugInProtocol& driver, const DownloadRequest& request)
{
    return Download{driver, request}.run();
}

} // namespace host
