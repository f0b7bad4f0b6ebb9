// SPDX-License-Identifier: MIT
// A driver reports an empty transfer for data that it could not read, and logs the reason. The
// rules here distinguish a device without data from a failure.

#include "host/transfer/OperationReport.h"

#include "host/bundle/SerialPort.h"
#include "host/transfer/LineEnds.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
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

// A driver stops reading waypoints at the first path that it cannot read, but only logs it. If no
// further kind was requested, nothing else shows that it stopped.
bool endedTransfer(const LoggedError& logged, const Outcome& outcome)
{
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

// A session that the host stops ends like one whose line fails: with an error without words.
bool isEffectOfStop(const gps::Error& error, const OperationFacts& facts)
{
    return facts.isStopAsked && !error.description();
}

void addErrors(OperationReport& report, const Outcome& outcome, const OperationFacts& facts)
{
    for (const auto& error : outcome.reported) {
        if (!isEffectOfStop(error, facts))
            report.errors.push_back(report.isSerial ? describeSerialError(error, report.location)
                                                    : error);
    }
    if (!outcome.error)
        return;
    if (auto explained = report.isRefused ? explainLineEnds(report.sourceFile) : std::nullopt) {
        report.errors.push_back(*std::move(explained));
        return;
    }
    const bool isRangeError = outcome.error->domain() == gps::kRangeErrorDomain;
    report.errors.push_back(isRangeError ? describeRangeError(*outcome.error, report.sourceFile)
                                         : *outcome.error);
}

// A folder between the files of a device is harmless, unless it was read in place of a file that
// was requested (an import), or the driver stopped at it.
bool isHarmless(const LoggedError& logged, const Outcome& outcome, const OperationReport& report)
{
    const bool isImport = !report.sourceFile.empty();
    return logged.isFolder && !isImport && report.missing.empty() &&
           !endedTransfer(logged, outcome);
}

// Such lines are not damaged for good: whoever knows why can read their records.
void addChangedLineEnds(OperationReport& report)
{
    if (!report.account)
        return;
    for (const auto& file : report.account->files) {
        if (file.lines.skippedFor(gps::SkipReason::kWrongChecksum) +
                file.lines.skippedFor(gps::SkipReason::kNotASentence) ==
            0)
            continue;
        if (auto explained = explainLineEnds(file.path))
            report.unreadable.push_back(*std::move(explained));
    }
}

// The account names paths of which nothing is logged, and the log may name more files than an
// account has room for.
void addUnreadable(OperationReport& report, const Outcome& outcome)
{
    std::set<std::string> known;
    const auto add = [&](gps::Error error) {
        const auto path = error.path().value_or("");
        const bool isReturned = outcome.error && outcome.error->path() == path;
        if (known.insert(path).second && !isReturned)
            report.unreadable.push_back(std::move(error));
    };
    if (report.account) {
        for (auto& error : unreadablePaths(*report.account))
            add(std::move(error));
    }
    for (const auto& logged : outcome.loggedErrors) {
        if (!isHarmless(logged, outcome, report))
            add(causeOf(logged.error));
    }
    addChangedLineEnds(report);
    report.moreUnreadable = outcome.moreErrors;
}

// For a driver, a line on which nobody answers is a receiver without data. For the user it is a
// failure.
void addSession(OperationReport& report, const Outcome& outcome,
                const gps::GPSPlugInProtocol& driver, const OperationFacts& facts)
{
    // Only after the worker has failed: an error that the driver returned explains itself.
    if (!report.errors.empty() && !outcome.error)
        report.portFailure = explainPortFailure(report.location);
    if (const auto* const account = dynamic_cast<const gps::GPSTransferAccount*>(&driver))
        report.voice = account->lineVoice();
    else if (report.errors.empty())
        report.voice = facts.wasHeard ? gps::LineVoice::kReceiver : gps::LineVoice::kNothing;
    if (report.account && report.isAnswered())
        report.gaps = gapsIn(*report.account, facts.repeats.routes);
}

std::optional<gps::TransferAccount> accountOf(const gps::GPSPlugInProtocol& driver,
                                              const Outcome& outcome)
{
    const auto* const account = dynamic_cast<const gps::GPSTransferAccount*>(&driver);
    if (account == nullptr || outcome.isAbandoned) // it is not over, so nobody may ask for it
        return std::nullopt;
    return account->transferAccount();
}

} // namespace

// A serial session has no such lines: what arrives damaged is sent again.
bool OperationReport::hasDamagedLines() const
{
    if (!unreadValues.empty())
        return true;
    if (!account || isSerial)
        return false;
    const auto tallies = talliesOf(*account);
    return std::any_of(tallies.begin(), tallies.end(), [](const KindTally& tally) {
        return tally.damagedCount() + tally.lines.skippedFor(gps::SkipReason::kIncomplete) > 0;
    });
}

OperationReport reportOn(const Outcome& outcome, const gps::GPSPlugInProtocol& driver,
                         const OperationFacts& facts)
{
    OperationReport report;
    const auto* const sourceFile = facts.options.findString(kSourcePathKey);
    const bool isImport = facts.options.contains(kSourcePathKey);
    if (isImport)
        report.sourceFile = sourceFile != nullptr ? *sourceFile : std::string{};
    else
        report.location = facts.location;
    report.isSerial = !isImport && driver.needsSerialRefresh();
    report.requested = requestedKinds(facts.options, driver);
    report.received = outcome.transfers;
    report.repeats = facts.repeats;
    report.isInterrupted = facts.isStoppedByUser;
    report.isAbandoned = outcome.isAbandoned;
    report.isRefused = isImport && facts.isOfDriver && outcome.error && outcome.transfers.empty();
    if (facts.isOfDriver)
        report.account = accountOf(driver, outcome);
    // The order matters: each of these steps uses what those before it have found.
    addErrors(report, outcome, facts);
    if (report.errors.empty())
        report.missing = missingKinds(report);
    addUnreadable(report, outcome);
    if (report.isSerial)
        addSession(report, outcome, driver, facts);
    report.logLines = outcome.logLines;
    report.moreLogLines = outcome.moreLines;
    return report;
}

OperationReport reportOnRefused(const Outcome& outcome, gps::FileAccount account)
{
    OperationReport report{.sourceFile = account.path, .received = outcome.transfers};
    if (outcome.error)
        report.errors.push_back(*outcome.error);
    gps::FileAccount total{.kind = account.kind};
    total.lines.addCounts(account.lines);
    report.account = gps::TransferAccount{.files = {std::move(account)}, .totals = {total}};
    addChangedLineEnds(report);
    return report;
}

} // namespace host
