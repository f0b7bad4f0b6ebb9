// SPDX-License-Identifier: MIT
// The records in the window may be others before the file is complete, so all that is known of them
// goes along with it.

#include "host/window/Exporter.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/files/Files.h"
#include "host/formats/Formats.h"
#include "host/window/base/Translation.h"

#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace host {
namespace {

std::optional<Glib::ustring> whyNotWrite(const std::string& path,
                                         const std::vector<std::string>& sources)
{
    if (findFormat(fileTypeOf(path)) == nullptr)
        return Glib::ustring::compose(tr("The name of the file must end in one of these: %1."),
                                      formatNames());
    if (isOneOfFiles(path, sources))
        return tr("The file was not replaced, because it is what the records were imported "
                  "from, and may hold more than is shown. Choose another name.");
    return std::nullopt;
}

} // namespace

Exporter::Exporter(MessageArea& messages, Handlers handlers)
    : messages_(messages), handlers_(std::move(handlers))
{
    messages_.append(bar_);
}

void Exporter::write(const std::string& path, const ReceivedRecords& received,
                     const TickedRecords& ticked)
{
    if (const auto obstacle = whyNotWrite(path, received.sources)) {
        messages_.show(MessageTopic::kWritten, *obstacle);
        return;
    }
    ExportRequest request{
        .path = path, .format = findFormat(fileTypeOf(path)), .origin = received.origin};
    request.origin.title = std::filesystem::path{path}.stem().string();
    bar_.write(received.records, ticked, std::move(request),
               [this, path, isComplete = received.isComplete, news = received.news,
                ticked](const ExportReport& report) {
                   if (report.isComplete() && news)
                       handlers_.saved(news, ticked);
                   showEnd(path, isComplete, report);
                   handlers_.ended(report);
               });
}

void Exporter::showEnd(const std::string& path, bool isComplete, const ExportReport& report)
{
    if (report.error)
        messages_.show(MessageTopic::kWritten, sentencesOf(*report.error));
    else if (report.isStopped)
        messages_.show(MessageTopic::kWritten,
                       Glib::ustring::compose(
                           tr("Stopped: %1 was not written. A file that had this name before is "
                              "unchanged."),
                           displayText(path)),
                       {}, false);
    else
        messages_.show(MessageTopic::kWritten,
                       Glib::ustring::compose(tr("Saved: %1"), displayText(path)),
                       {{false, report.remark},
                        {true, isComplete ? "" : tr("What was received is not complete.")}},
                       !isComplete);
}

} // namespace host
