// SPDX-License-Identifier: MIT
// The summary is printed after the errors, so that it is the last thing on a terminal; with event
// lines nothing else may go to the standard output.

#include "host/cli/DownloadCommand.h"

#include "host/base/Sentences.h"
#include "host/cli/DownloadMessages.h"
#include "host/cli/ProgressLine.h"
#include "host/cli/Summary.h"
#include "host/formats/EventLines.h"
#include "host/transfer/Download.h"

#include <optional>
#include <utility>

#include <unistd.h>

namespace host {
namespace {

class DownloadCommand {
public:
    DownloadCommand(const DownloadOptions& options, const Console& console)
        : options_(options), console_(console),
          isSummaryShown_(!options.events && (!options.output || options.summary)),
          progress_(canShowProgress(options, options.events || options.output == "-"))
    {}

    [[nodiscard]] ExitStatus run(gps::GPSPlugInProtocol& driver, DownloadRequest request);

private:
    [[nodiscard]] std::optional<gps::Error> finishStandardOutput(const DownloadReport& report);
    void printMessages(const DownloadReport& report) const;

    const DownloadOptions& options_;
    const Console& console_;
    bool isSummaryShown_;
    ProgressLine progress_;
    Output standardOutput_{STDOUT_FILENO, "the standard output"};
    EventLines eventLines_{standardOutput_};
    Summary summary_{standardOutput_};
};

ExitStatus DownloadCommand::run(gps::GPSPlugInProtocol& driver, DownloadRequest request)
{
    if (options_.events)
        request.verbatimConsumers.push_back(&eventLines_);
    if (isSummaryShown_)
        request.consumers.push_back(&summary_);
    request.progress = progress_.callback();
    const auto report = download(driver, request);
    for (const auto& operation : report.operations)
        console_.messages(operationMessages(operation, !options_.verbose));
    const auto failure = finishStandardOutput(report);
    if (failure)
        console_.error(*failure);
    if (const auto advice = dateAdvice(report.dates); !advice.empty() && options_.output)
        console_.note(advice);
    console_.messages(outputMessages(report.output));
    return failure || !report.succeeded() ? ExitStatus::kFailed : ExitStatus::kSuccess;
}

std::optional<gps::Error> DownloadCommand::finishStandardOutput(const DownloadReport& report)
{
    if (options_.events)
        return eventLines_.close();
    const bool isAnythingToShow =
        !report.operations.empty() && (report.hasReceived() || report.operationsSucceeded());
    if (!isSummaryShown_ || !isAnythingToShow)
        return std::nullopt;
    auto failure = summary_.close();
    if (const auto advice = dateAdvice(report.dates); !advice.empty() && !failure) {
        standardOutput_.write("\n" + advice + "\n");
        failure = standardOutput_.flush();
    }
    return failure;
}

} // namespace

DownloadRequest downloadRequest(const DownloadOptions& options)
{
    DownloadRequest request;
    request.kinds = {options.waypoints, options.routes, options.tracks};
    request.driverOptions = options.driverOptions;
    request.debugLevel = options.debug;
    request.dateRule = options.fixDates;
    if (options.output)
        request.output = OutputRequest{.path = *options.output, .format = options.format};
    return request;
}

ExitStatus runDownload(gps::GPSPlugInProtocol& driver, DownloadRequest request,
                       const DownloadOptions& options, const Console& console)
{
    return DownloadCommand{options, console}.run(driver, std::move(request));
}

} // namespace host
