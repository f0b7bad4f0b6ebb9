// SPDX-License-Identifier: MIT
// The summary is printed after the errors, so that it is the last thing on a terminal; with event
// lines or a JSON document nothing else may go to the standard output.

#include "host/cli/DownloadCommand.h"

#include "host/base/HostError.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/DownloadJson.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/ProgressLine.h"
#include "host/cli/Summary.h"
#include "host/files/Files.h"
#include "host/formats/EventLines.h"
#include "host/transfer/ChoiceFilter.h"
#include "host/transfer/Download.h"
#include "host/transfer/InputFiles.h"
#include "host/transfer/KindFilter.h"
#include "host/watching/NewRecordFilter.h"
#include "host/words/DownloadMessages.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace host {
namespace {

std::vector<Message> messagesOf(const DownloadReport& report, const DownloadOptions& options)
{
    const MessageOptions how{.isLogShown = !options.verbose, .isDamageAnError = options.strict};
    std::vector<Message> messages;
    for (const auto& operation : report.operations) {
        auto more = operationMessages(operation, how);
        std::move(more.begin(), more.end(), std::back_inserter(messages));
    }
    return messages;
}

// An output that replaced its own source would lose what the format has no place for.
std::optional<gps::Error> checkOutputOf(const std::vector<std::string>& files,
                                        const DownloadOptions& options)
{
    if (!options.output || !isOneOfFiles(*options.output, files))
        return std::nullopt;
    return hostError("The output file is one of the files to import",
                     "Name another output file with -o", *options.output);
}

PageTiles tilesOf(const DownloadOptions& options)
{
    if (!options.tiles)
        return {};
    return {.url = *options.tiles,
            .attribution = options.tilesAttribution.value_or(usualAttribution(*options.tiles))};
}

class DownloadCommand {
public:
    DownloadCommand(const DownloadOptions& options, StopSignals& stop, const Console& console,
                    KnownRecords* known)
        : options_(options), stop_(stop), console_(console), known_(known), choice_(options.choice),
          isSummaryShown_(!options.events && !options.json && (!options.output || options.summary)),
          progress_(canShowProgress(options, options.events || options.output == "-")),
          summary_(standardOutput_,
                   options.list ? Summary::Rows::kAll : Summary::Rows::kCollections,
                   options.utc ? Summary::Clock::kUtc : Summary::Clock::kLocal)
    {
        if (known != nullptr)
            newOnly_.emplace(*known);
    }

    [[nodiscard]] ExitStatus run(gps::GPSPlugInProtocol& driver, DownloadRequest request,
                                 const AfterDownload& afterwards);

private:
    [[nodiscard]] DownloadReport download(gps::GPSPlugInProtocol& driver, DownloadRequest request);
    void loadKnown();
    void addFilters(DownloadRequest& request);
    [[nodiscard]] bool isChoosing() const;
    [[nodiscard]] std::optional<gps::Error> rememberSaved(const DownloadReport& report);
    void printChoice(const DownloadReport& report);
    void print(std::vector<Message> messages);
    [[nodiscard]] bool finish(std::vector<Message> messages);
    [[nodiscard]] ExitStatus statusOf(const DownloadReport& report) const;
    [[nodiscard]] std::optional<gps::Error> finishStandardOutput(const DownloadReport& report);
    [[nodiscard]] std::optional<gps::Error> printJson(const DownloadReport& report,
                                                      ExitStatus status);

    const DownloadOptions& options_;
    StopSignals& stop_;
    const Console& console_;
    KnownRecords* known_; // null without --new-only
    ChoiceFilter choice_;
    std::optional<NewRecordFilter> newOnly_;
    std::optional<KindFilter> kinds_; // for an import of some kinds
    bool isSummaryShown_;
    ProgressLine progress_;
    Output standardOutput_{STDOUT_FILENO, "the standard output"};
    EventLines eventLines_{standardOutput_};
    Summary summary_;
    std::vector<Message> printed_;
};

ExitStatus DownloadCommand::run(gps::GPSPlugInProtocol& driver, DownloadRequest request,
                                const AfterDownload& afterwards)
{
    loadKnown();
    const auto report = download(driver, std::move(request));
    print(messagesOf(report, options_));
    printChoice(report);
    auto failure = finishStandardOutput(report);
    if (failure)
        console_.error(*failure);
    if (const auto advice = dateAdvice(report.dates);
        !advice.empty() && !isSummaryShown_ && (options_.output || options_.json))
        print({{false, advice}});
    print(outputMessages(report.output));
    auto status = failure ? ExitStatus::kFailed : statusOf(report);
    if (const auto unsaved = rememberSaved(report)) {
        print({{true, sentencesOf(*unsaved)}});
        status = ExitStatus::kFailed;
    }
    if (afterwards && !finish(afterwards(status == ExitStatus::kSuccess)) &&
        status == ExitStatus::kSuccess)
        status = ExitStatus::kFailed;
    // The document is last, because it holds all messages and the status.
    if (!options_.json)
        return status;
    failure = printJson(report, status);
    if (failure)
        console_.error(*failure);
    return failure ? ExitStatus::kFailed : status;
}

DownloadReport DownloadCommand::download(gps::GPSPlugInProtocol& driver, DownloadRequest request)
{
    if (options_.events)
        request.verbatimConsumers.push_back(&eventLines_);
    if (isSummaryShown_ || options_.list)
        request.consumers.push_back(&summary_);
    addFilters(request);
    request.readsMissingKinds = !options_.events; // event lines are those of one operation
    request.progress = progress_.callback();
    stop_.requestOnly();
    request.stopRequested = [this] { return stop_.stopRequested(); };
    auto report = host::download(driver, request);
    report.leftOut.choice = choice_.leftOut();
    if (newOnly_)
        report.leftOut.savedBefore = newOnly_->leftOut();
    return report;
}

void DownloadCommand::loadKnown()
{
    if (known_ == nullptr)
        return;
    if (const auto failure = known_->load())
        print({{false, sentencesOf(*failure)}});
}

// The choice comes first: what it leaves out is not saved, so it is not remembered.
void DownloadCommand::addFilters(DownloadRequest& request)
{
    if (!request.sourceFiles.empty() && !request.driverOptions && !request.kinds.areAll())
        request.filters.push_back(&kinds_.emplace(request.kinds));
    if (!options_.choice.isEverything())
        request.filters.push_back(&choice_);
    if (newOnly_)
        request.filters.push_back(&*newOnly_);
    // Whoever reads a pipe expects a document.
    if (request.output && isChoosing())
        request.output->isKeptEmpty = request.output->path == "-";
}

bool DownloadCommand::isChoosing() const
{
    return kinds_ || newOnly_ || !options_.choice.isEverything();
}

void DownloadCommand::printChoice(const DownloadReport& report)
{
    auto messages = choiceMessages(report);
    const bool isFileMissing = options_.output && options_.output != "-" && isChoosing() &&
                               report.chosen.isEmpty() && report.isComplete();
    if (isFileMissing)
        messages.push_back(
            {false, "No record is left, so no file was written. Path: " + *options_.output});
    print(std::move(messages));
}

// A record counts as saved only once the file with it has its final name.
std::optional<gps::Error> DownloadCommand::rememberSaved(const DownloadReport& report)
{
    if (known_ == nullptr || report.output.state != OutputReport::State::kComplete)
        return std::nullopt;
    return known_->add(newOnly_->seen());
}

void DownloadCommand::print(std::vector<Message> messages)
{
    console_.messages(messages);
    std::move(messages.begin(), messages.end(), std::back_inserter(printed_));
}

// Prints messages. Returns false if one of them is an error.
bool DownloadCommand::finish(std::vector<Message> messages)
{
    const bool isGood = std::none_of(messages.begin(), messages.end(),
                                     [](const Message& message) { return message.isError; });
    print(std::move(messages));
    return isGood;
}

// A stop comes first: what is missing after it is its consequence.
ExitStatus DownloadCommand::statusOf(const DownloadReport& report) const
{
    if (report.isInterrupted())
        return statusAfterSignal(stop_.signal());
    const bool isTooDamaged = options_.strict && report.hasDamagedLines();
    return report.succeeded() && !isTooDamaged ? ExitStatus::kSuccess : ExitStatus::kFailed;
}

std::optional<gps::Error> DownloadCommand::finishStandardOutput(const DownloadReport& report)
{
    if (options_.events)
        return eventLines_.close();
    // A table of zeros would look like an empty receiver after a download that failed.
    if (!isSummaryShown_ || (report.received.isEmpty() && !report.isComplete()))
        return std::nullopt;
    auto failure = summary_.close();
    if (const auto advice = dateAdvice(report.dates); !advice.empty() && !failure) {
        standardOutput_.write("\n" + advice + "\n");
        failure = standardOutput_.flush();
    }
    return failure;
}

std::optional<gps::Error> DownloadCommand::printJson(const DownloadReport& report,
                                                     ExitStatus status)
{
    standardOutput_.write(
        downloadJson(report, printed_, status, options_.list ? &summary_.records() : nullptr));
    return standardOutput_.flush();
}

} // namespace

DownloadRequest downloadRequest(const DownloadOptions& options)
{
    DownloadRequest request;
    request.kinds = {options.waypoints, options.routes, options.tracks};
    request.driverOptions = options.driverOptions;
    request.debugLevel = options.debug;
    request.dateRule = options.fixDates;
    request.gapRule = options.splitGap;
    if (options.output)
        request.output = OutputRequest{.path = *options.output,
                                       .format = options.format,
                                       .title = options.title.value_or(""),
                                       .tiles = tilesOf(options)};
    return request;
}

ExitStatus runImportOf(const PlugInBundle& plugIn, std::vector<std::string> files,
                       const DownloadOptions& options, StopSignals& stop, const Console& console)
{
    Driver driver;
    if (const auto failure = chooseImporter(plugIn.drivers, options.driver, driver))
        return refuse(options, *failure, ExitStatus::kNothingToWorkOn, stop, console);
    const auto types = driver->fileTypes().value_or(std::vector<std::string>{});
    auto failure = expandFolders(files, types);
    if (!failure && !options.events) // event lines show what the driver does with any file
        failure = checkImport(files, types);
    if (!failure)
        failure = checkOutputOf(files, options);
    if (failure)
        return refuse(options, *failure, ExitStatus::kFailed, stop, console);
    auto request = downloadRequest(options);
    request.sourceFiles = std::move(files);
    return runDownload(*driver, std::move(request), options, stop, console);
}

ExitStatus runDownload(gps::GPSPlugInProtocol& driver, DownloadRequest request,
                       const DownloadOptions& options, StopSignals& stop, const Console& console,
                       const DownloadEnvironment& environment)
{
    return DownloadCommand{options, stop, console, environment.known}.run(
        driver, std::move(request), environment.afterwards);
}

} // namespace host
