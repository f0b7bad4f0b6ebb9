// SPDX-License-Identifier: MIT
// The plan is made once more for the send: a preview holds no lock on the device, which the user
// may look at for an hour.

#include "host/window/send/SendWork.h"

#include "host/base/HostError.h"
#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/transfer/Send.h"
#include "host/window/base/Translation.h"
#include "host/words/AccountText.h"
#include "host/words/PlanReport.h"
#include "host/words/RecordCountText.h"
#include "host/words/RestoreText.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <glibmm.h>

namespace host {
namespace {

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
        begin = end == std::string::npos ? text.size() : end + 1;
    }
    return lines;
}

std::string summaryOf(const PreparedSend& plan)
{
    if (plan.request.data->empty())
        return plan.present.isEmpty() ? tr("Nothing is ticked.")
                                      : tr("The receiver has everything already.");
    const auto files = plannedWrites(plan.plan);
    const auto missing = countMissing(plan.unplanned, *plan.request.data);
    auto counts = countRecords(*plan.request.data);
    counts -= missing;
    Glib::ustring text = tr("Nothing can be written.");
    if (files > 0 && !counts.isEmpty())
        text = Glib::ustring::compose(tr("%1, into %2 file.", "%1, into %2 files.", files),
                                      recordCountText(counts), groupedText(files));
    return missing.isEmpty()
               ? text
               : Glib::ustring::compose(tr("%1 Does not fit: %2."), text, recordCountText(missing));
}

// An empty plan of a receiver that is not there any more.
SendPreview withoutReceiver()
{
    SendPreview preview;
    preview.problems.push_back(sentencesOf(receiverGone()));
    return preview;
}

SendPreview previewOf(const PreparedSend& plan)
{
    SendPreview preview{.location = plan.device.location};
    if (plan.files == nullptr) {
        preview.problems.emplace_back(
            tr("Nothing can be sent to this receiver. Connect one that mounts as a disk."));
        return preview;
    }
    if (plan.snapshot)
        preview.identifier = plan.snapshot->identifier();
    preview.problems = emptyRecordErrors(plan);
    for (auto& problem : planErrors(plan))
        preview.problems.push_back(std::move(problem));
    preview.lines = linesOf(planReport(plan));
    preview.summary = summaryOf(plan);
    preview.canSend = !plan.obstacle && plannedWrites(plan.plan) > 0;
    return preview;
}

SendResult notSent(const char* sentence)
{
    return {.sentence = sentence};
}

bool isNothingWritten(const SendReport& report)
{
    return !report.wasRun() || std::all_of(report.files.begin(), report.files.end(),
                                           [](const SentFile& file) { return file.isAsBefore; });
}

SendResult resultOf(const PreparedSend& plan, const SendReport& report)
{
    SendResult result{.isComplete = report.isComplete()};
    const auto add = [&result](bool isError, std::vector<std::string> sentences) {
        for (auto& sentence : sentences)
            result.messages.push_back({isError, std::move(sentence)});
    };
    add(true, sendErrors(report, plan));
    add(false, writingNotes(report, plan));
    if (report.backup)
        result.backup = report.backup->name;
    result.sentence =
        report.isComplete()
            ? Glib::ustring::compose(tr("Sent, and read back from the receiver: %1"),
                                     summaryOf(plan))
            : Glib::ustring{isNothingWritten(report) ? tr("Nothing was sent.")
                                                     : tr("Not everything was sent.")};
    return result;
}

} // namespace

std::vector<Message> messagesOn(const SendResult& result, bool isUtc)
{
    auto messages = result.messages;
    if (!result.backup.empty())
        messages.push_back(
            {false, Glib::ustring::compose(tr("The receiver's files are kept in the backup %1."),
                                           backupTimeText(result.backup, isUtc))});
    return messages;
}

gps::Error receiverGone(const std::string& location)
{
    return hostError(tr("The receiver is not there any more"),
                     tr("Plug it in again, or open it again if it is a folder"), location);
}

SendPreview previewSend(const ChosenDevice& device, const SendChoice& choice,
                        const BackupPolicy& backup)
{
    if (device.location.empty())
        return withoutReceiver();
    RepeatedIndices repeated;
    const auto plan = prepareSend(
        device,
        {.data = numberedSendData(*choice.records, choice.ticked),
         .isDryRun = true,
         .backup = backup,
         .onRepeated = [&repeated](std::string_view key, const auto& record, const auto& first) {
             repeated.add(key, record, first);
         }});
    auto preview = previewOf(plan);
    preview.records = plannedRecords(*choice.records, choice.ticked, *plan.request.data, repeated,
                                     plan.unplanned);
    return preview;
}

SendResult sendRecords(const ChosenDevice& device, const SendChoice& choice,
                       const SendPreview& seen, const BackupPolicy& backup, const SendCalls& calls)
{
    if (device.location.empty())
        return {.sentence = tr("Nothing was sent."),
                .messages = {{true, sentencesOf(receiverGone(seen.location))}}};
    if (device.location != seen.location)
        return notSent(tr("Nothing was sent, because another receiver is selected now."));
    const auto plan = prepareSend(device, {.data = sendData(*choice.records, choice.ticked),
                                           .backup = backup,
                                           .stopRequested = calls.stopRequested,
                                           .progress = calls.progress});
    const auto present = previewOf(plan);
    if (!plan.obstacle && (present.lines != seen.lines || present.identifier != seen.identifier))
        return notSent(tr("Nothing was sent, because the receiver has changed. Look at what would "
                          "change now, and send again."));
    return resultOf(plan, performSend(plan));
}

} // namespace host
