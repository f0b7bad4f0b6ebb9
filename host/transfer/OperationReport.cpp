// SPDX-License-Identifier: MIT
// A driver reports an empty transfer for data that it could not read, and logs the reason. The
// rules here distinguish a device without data from a failure.

#include "host/transfer/OperationReport.h"

#include "host/bundle/SerialPort.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {
namespace {

std::vector<gps::TransferKind> missingKinds(const OperationReport& report)
{
    const auto& received = report.received;
    std::vector<gps::TransferKind> missing;
    std::copy_if(report.requested.begin(), report.requested.end(), std::back_inserter(missing),
                 [&](gps::TransferKind kind) {
                     return std::find(received.begin(), received.end(), kind) == received.end();
                 });
    return missing;
}

// A driver stops reading waypoints at the first file that it cannot read, and any kind at a damaged
// sentence, but only logs it. If no further kind was requested, nothing else shows that it stopped.
bool endedTransfer(const LoggedError& logged, const Outcome& outcome)
{
    if (logged.error.domain() == gps::kRangeErrorDomain)
        return true;
    return !outcome.transfers.empty() &&
           outcome.transfers.back() == gps::TransferKind::kWaypoints &&
           logged.transfersBegun == outcome.transfers.size();
}

// A damaged sentence ends an import with an error that knows neither the file nor what helps.
gps::Error describeRangeError(const gps::Error& reported, const std::string& file)
{
    auto info = reported.userInfo();
    info.set(gps::kErrorSuggestionKey, "What comes before it was imported. Repair or delete that "
                                       "line of the file to import the rest");
    info.set(gps::kErrorPathKey, file);
    return {reported.domain(), reported.code(), std::move(info)};
}

void addErrors(OperationReport& report, const Outcome& outcome)
{
    for (const auto& error : outcome.reported)
        report.errors.push_back(report.isSerial ? describeSerialError(error, report.location)
                                                : error);
    if (!outcome.error)
        return;
    const bool isRangeError = outcome.error->domain() == gps::kRangeErrorDomain;
    report.errors.push_back(isRangeError ? describeRangeError(*outcome.error, report.sourceFile)
                                         : *outcome.error);
}

// A folder between the files of a device is harmless, unless it was read in place of a file that
// was requested (an import), or the driver stopped at it.
void addUnreadable(OperationReport& report, const Outcome& outcome, bool isImport)
{
    const bool isFolderHarmless = !isImport && report.missing.empty();
    report.moreUnreadable = outcome.moreErrors;
    for (const auto& logged : outcome.loggedErrors) {
        const bool isEnd = isFolderHarmless && endedTransfer(logged, outcome);
        if (logged.isFolder && isFolderHarmless && !isEnd)
            continue;
        report.isCutShort = report.isCutShort || isEnd;
        if (!outcome.error || outcome.error->path() != logged.error.path())
            report.unreadable.push_back(logged.error);
    }
}

// For a driver, a receiver that never answers is one without data. For the user it is a failure.
void addPortState(OperationReport& report, const Outcome& outcome, bool wasHeard)
{
    if (!outcome.reported.empty())
        report.portFailure = explainPortFailure(report.location);
    else
        report.isReceiverSilent = !outcome.error && !wasHeard;
}

} // namespace

OperationReport reportOn(const Outcome& outcome, const gps::GPSPlugInProtocol& driver,
                         const gps::Dictionary& options, const std::string& location, bool wasHeard)
{
    OperationReport report;
    const auto* const sourceFile = options.findString(kSourcePathKey);
    const bool isImport = options.contains(kSourcePathKey);
    if (isImport)
        report.sourceFile = sourceFile != nullptr ? *sourceFile : std::string{};
    else
        report.location = location;
    report.isSerial = !isImport && driver.needsSerialRefresh();
    report.requested = requestedKinds(options, driver);
    report.received = outcome.transfers;
    addErrors(report, outcome);
    if (report.errors.empty())
        report.missing = missingKinds(report);
    addUnreadable(report, outcome, isImport);
    if (report.isSerial)
        addPortState(report, outcome, wasHeard);
    report.logLines = outcome.logLines;
    report.moreLogLines = outcome.moreLines;
    return report;
}

} // namespace host
