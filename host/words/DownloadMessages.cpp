// SPDX-License-Identifier: MIT
// The order of messages follows the order in which things happened: what the driver reported, what
// did not arrive, which files could not be read, what was damaged, the log, the serial port.

#include "host/words/DownloadMessages.h"

#include "host/base/FrontEnd.h"
#include "host/base/HostError.h"
#include "host/base/Sentences.h"
#include "host/base/TermText.h"
#include "host/base/TranslatedFormat.h"
#include "host/bundle/SerialPort.h"
#include "host/points/Points.h"
#include "host/words/AccountText.h"
#include "host/words/KindsText.h"
#include "host/words/RecordCountText.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostUnreadable = 10; // files and folders named one by one

// Whether the host knows why the port of a download could not be used.
bool isPortTheReason(const OperationReport& report)
{
    return report.portFailure && report.received.empty() &&
           report.portFailure->description() != tr(kPortIsFree);
}

// An error of a driver need not say what to do next.
bool isOfDriver(const gps::Error& error)
{
    return error.domain() != gps::kFileErrorDomain && error.domain() != gps::kRangeErrorDomain &&
           error.domain() != kHostErrorDomain && error.domain() != kSystemErrorDomain;
}

void addErrors(std::vector<Message>& messages, const OperationReport& report)
{
    const auto& errors = report.errors;
    for (const auto& error : errors)
        messages.push_back({true, sentencesOf(error)});
    auto next = advice("", tr("Copy the file from the receiver again, and import the copy."));
    if (!next.empty() && !report.sourceFile.empty() && !report.hasReceived() &&
        std::any_of(errors.begin(), errors.end(), isOfDriver))
        messages.push_back({true, std::move(next)});
}

// What was left out between the path where the driver stopped and the kinds read separately. The
// driver reads geocaches after waypoints, and both count as one kind.
std::string leftOutText(const OperationReport& report)
{
    if (!report.account || report.account->files.empty() || !report.account->files.back().error)
        return tr("Records of the kind where it broke off are missing.");
    const auto& last = report.account->files.back();
    const auto name = std::filesystem::path{last.path}.filename().string();
    const auto kind = termText(last.kind);
    return last.kind == "waypoints"
               ? trFormat("Missing: the {} of {} and of the files after it, and all geocaches.",
                          kind, name)
               : trFormat("Missing: the {} of {} and of the files after it.", kind, name);
}

void addMissing(std::vector<Message>& messages, const OperationReport& report)
{
    auto missing = report.missing;
    std::erase_if(missing, [&](gps::TransferKind kind) {
        const auto& recovered = report.recovered;
        return std::find(recovered.begin(), recovered.end(), kind) != recovered.end();
    });
    const char* const what = !report.isInterrupted ? tr("The download broke off.")
                             : report.sourceFile.empty()
                                 ? tr("The download was stopped before its end.")
                                 : tr("The import was stopped before its end.");
    if (!missing.empty())
        messages.push_back({true, trFormat("{} Missing: {}.", what, kindsText(missing))});
    else if (report.isInterrupted)
        messages.push_back({true, what});
    if (!report.recovered.empty())
        messages.push_back({true, trFormat("The download broke off, and was continued with: {}. {}",
                                           kindsText(report.recovered), leftOutText(report))});
}

void addUnreadable(std::vector<Message>& messages, const OperationReport& report)
{
    const auto shown = std::min(report.unreadable.size(), kMostUnreadable);
    for (std::size_t i = 0; i < shown; ++i)
        messages.push_back({true, sentencesOf(report.unreadable[i])});
    const auto unshown = report.unreadable.size() - shown + report.moreUnreadable;
    if (unshown > 0)
        messages.push_back({true, trFormat("And {} more that could not be read.", unshown)});
}

// Whether a line names a file or folder that has a message of its own.
bool isAboutUnreadable(const std::string& line, const OperationReport& report)
{
    const auto& unreadable = report.unreadable;
    return std::any_of(unreadable.begin(), unreadable.end(), [&](const gps::Error& error) {
        return error.path() && line.find(fmt::format("\"{}\"", *error.path())) != line.npos;
    });
}

// If something is missing, the log may say why, so its lines are errors. A serial session logs each
// of its sentences, which nobody wants to see: its account has what is worth knowing.
void addLog(std::vector<Message>& messages, const OperationReport& report)
{
    const bool isNeeded = !report.missing.empty() && report.isAnswered() && !report.isInterrupted;
    if (report.isSerial && (!isNeeded || report.account))
        return;
    const std::string prefix = isNeeded ? tr("log: ") : "";
    for (const auto& line : report.logLines) {
        if (!isAboutUnreadable(line, report))
            messages.push_back({isNeeded, prefix + line});
    }
    if (report.moreLogLines > 0)
        messages.push_back({isNeeded, prefix + trFormat("and {} more", report.moreLogLines)});
}

void addGaps(std::vector<Message>& messages, const OperationReport& report)
{
    // Phases that were not reached share one sentence: usually all that follow the one that failed.
    std::string notReached;
    for (const auto& gap : report.gaps) {
        if (report.isInterrupted && !gap.isClosingDown) // a consequence of the stop
            continue;
        if (gap.cause == SessionGap::Cause::kNotReached)
            notReached.append(notReached.empty() ? "" : ", ").append(termText(gap.subject));
        else
            messages.push_back({true, gapText(gap)});
    }
    if (!notReached.empty())
        messages.push_back(
            {true, trFormat("The session ended before these were read: {}.", notReached)});
}

void addTallies(std::vector<Message>& messages, const OperationReport& report, bool isDamageAnError)
{
    if (!report.account || !report.isAnswered())
        return;
    for (const auto& tally : talliesOf(*report.account)) {
        if (auto text = tallyText(tally); !text.empty())
            messages.push_back({isDamageAnError && !tally.isSerial, std::move(text)});
    }
}

void addUnreadValues(std::vector<Message>& messages, const OperationReport& report,
                     bool isDamageAnError)
{
    for (const auto& sentence : report.unreadValues)
        messages.push_back({isDamageAnError, sentence});
    for (const auto& sentence : report.ignored)
        messages.push_back({false, sentence});
}

void addCounted(std::vector<Message>& messages, std::string_view what, const RecordCounts& counts)
{
    if (const auto text = recordCountText(counts); !text.empty())
        messages.push_back({false, fmt::format("{}: {}.", what, text)});
}

} // namespace

std::vector<Message> operationMessages(const OperationReport& report, const MessageOptions& options)
{
    std::vector<Message> messages;
    if (!isPortTheReason(report)) // the driver can only guess it
        addErrors(messages, report);
    if (report.isAnswered() || report.isInterrupted)
        addMissing(messages, report);
    addUnreadable(messages, report);
    addGaps(messages, report);
    addTallies(messages, report, options.isDamageAnError);
    addUnreadValues(messages, report, options.isDamageAnError);
    if (const auto text = repeatText(report.repeats); !text.empty())
        messages.push_back({false, text});
    if (options.isLogShown)
        addLog(messages, report);
    if (report.portFailure)
        messages.push_back({true, sentencesOf(*report.portFailure)});
    // There is a voice: isAnswered() is true without one.
    if (!report.isAnswered() && !report.isInterrupted && report.errors.empty())
        messages.push_back({true, voiceText(*report.voice, report.location)});
    return messages;
}

std::vector<Message> outputMessages(const OutputReport& report)
{
    std::vector<Message> messages;
    if (!report.remark.empty())
        messages.push_back({false, report.remark});
    if (report.error)
        messages.push_back({true, sentencesOf(*report.error)});
    if (report.state == OutputReport::State::kPartial && !report.path.empty())
        messages.push_back(
            {true, trFormat("The output file was not written, because the download is not "
                            "complete. What arrived is kept in another file. Path: {}",
                            report.path)});
    return messages;
}

// Options choose, which only the command line has: these are not translated.
std::vector<Message> choiceMessages(const DownloadReport& report)
{
    std::vector<Message> messages;
    const auto& [choice, savedBefore] = report.leftOut;
    addCounted(messages, "Left out because of --since or --until", choice.byTime);
    addCounted(messages, "Kept although --since and --until cannot judge what has no time",
               choice.untimed);
    addCounted(messages, "Left out because of --track", choice.byName);
    for (const auto& pattern : choice.unmatchedNames)
        messages.push_back({false, fmt::format("No track that arrived has the name \"{}\". --list "
                                               "shows the names.",
                                               pattern)});
    addCounted(messages, "Left out because of --no-geocaches", choice.geocaches);
    addCounted(messages, "Left out because of --new-only, as it was saved before", savedBefore);
    if (const auto text = splitText(report.splits); !text.empty())
        messages.push_back({false, text});
    return messages;
}

std::string splitText(const SplitReport& splits)
{
    if (splits.gaps == 0)
        return {};
    const auto gaps = splits.areJumps ? trCounted(splits.gaps, "{} jump that no receiver can make",
                                                  "{} jumps that no receiver can make", splits.gaps)
                                      : trCounted(splits.gaps, "{} gap", "{} gaps", splits.gaps);
    const auto keepsWhole = advice(
        fmt::format("; --split-gap off keeps {} whole", splits.tracks == 1 ? "it" : "them"), "");
    return trCounted(splits.tracks, "{} track was divided into segments at {}{}.",
                     "{} tracks were divided into segments at {}{}.", splits.tracks, gaps,
                     splits.areJumps ? keepsWhole : std::string{});
}

std::string dateAdvice(const DateReport& report)
{
    if (!report.suspectNewest)
        return {};
    std::string newest;
    appendTimestamp(newest, *report.suspectNewest, ' ');
    return fmt::format("The dates look 1024 weeks too old; the newest is {}. The receiver's week "
                       "counter has probably rolled over. --fix-dates auto adds 1024 weeks.",
                       newest.substr(0, newest.find(' ')));
}

} // namespace host
