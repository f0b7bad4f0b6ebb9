// SPDX-License-Identifier: MIT
// One sentence for each result; all else is below "Details".

#include "host/window/TransferResults.h"

#include "host/base/TranslatedFormat.h"
#include "host/window/base/Translation.h"
#include "host/words/RecordCountText.h"
#include "host/words/RestoreText.h"

#include <utility>

namespace host {
namespace {

Glib::ustring sentenceOn(const ReceivedRecords& received)
{
    const auto counts = recordCountText(received.counts);
    if (!counts.empty())
        return received.isComplete ? trFormat("Received: {}.", counts)
                                   : trFormat("Received, but not complete: {}.", counts);
    if (!received.isComplete)
        return tr("Nothing was received.");
    return received.news ? tr("There is nothing new.") : tr("There are no records.");
}

} // namespace

void showReceived(MessageArea& messages, const ReceivedRecords& received)
{
    messages.show(MessageTopic::kReceived, sentenceOn(received), received.messages,
                  !received.isComplete);
}

void showSent(MessageArea& messages, const SendResult& result, bool isUtc)
{
    messages.show(MessageTopic::kWritten, result.sentence, messagesOn(result, isUtc),
                  !result.isComplete);
}

void showRestored(MessageArea& messages, const RestoreReport& report)
{
    auto details = restoreMessages(report);
    for (auto& line : restoreLines(report))
        details.push_back({false, std::move(line)});
    messages.show(MessageTopic::kWritten,
                  report.isComplete()
                      ? tr("The backup is restored: the receiver holds what it held then.")
                      : tr("The backup was not restored, or not completely."),
                  details, !report.isComplete());
}

Glib::ustring sentenceOnLeftOut(const ReceivedRecords& received)
{
    const auto counts = received.news ? recordCountText(received.news->leftOut) : "";
    if (counts.empty())
        return {};
    return Glib::ustring::compose(
        tr("Left out because it was saved before: %1. To see everything, untick “Only what is "
           "new”, and download again."),
        counts);
}

} // namespace host
