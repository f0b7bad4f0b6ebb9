// SPDX-License-Identifier: MIT
// A notification that cannot be shown is not reported: the window has its own list.

#include "host/window/saving/Saver.h"

#include "host/formats/Formats.h"
#include "host/watching/KnownRecords.h"
#include "host/words/WatchText.h"

#include <utility>

namespace host {
namespace {

using Kind = WatchEvent::Kind;

bool hasFailed(const WatchEvent& event)
{
    return event.error || (event.kind == Kind::kDownloaded && !event.report.succeeded());
}

} // namespace

Saver::Saver(const PlugInBundle& plugIn, const std::string& folder,
             std::function<void(SavingEvent event)> happened, std::function<bool()> stopRequested)
    : happened_(std::move(happened)),
      watcher_(plugIn, requestFor(folder, std::move(stopRequested)), [this](const auto& event) {
          report(event);
          return true;
      })
{}

WatchRequest Saver::requestFor(const std::string& folder, std::function<bool()> stopRequested)
{
    WatchRequest request;
    request.folder = folder;
    request.format = findFormat("gpx");
    request.knownRecordsFolder = knownRecordsFolder();
    request.stopRequested = std::move(stopRequested);
    request.download.progress = [this](const TransferProgress&) {
        if (!isRunning_.exchange(true))
            happened_({.isRunning = true});
    };
    return request;
}

void Saver::report(const WatchEvent& event)
{
    if (event.kind != Kind::kDownloaded && event.kind != Kind::kListUnusable)
        return;
    isRunning_ = event.kind != Kind::kDownloaded;
    for (const auto& line : watchText(event, true, false).lines)
        happened_({.isRunning = isRunning_, .text = line, .isError = hasFailed(event)});
    if (const auto notification = watchNotification(event, true))
        (void)notifier_.show(notification->title, notification->text);
}

} // namespace host
