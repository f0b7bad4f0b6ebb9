// SPDX-License-Identifier: MIT
// `watch`: prints one line for each thing that happens, to the standard output.

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/Commands.h"
#include "host/cli/ProgressLine.h"
#include "host/desktop/Notifier.h"
#include "host/desktop/UDisks.h"
#include "host/operations/StopSignals.h"
#include "host/watching/KnownRecords.h"
#include "host/watching/Watcher.h"
#include "host/words/WatchText.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace host {
namespace {

WatchRequest watchRequest(const WatchOptions& options)
{
    WatchRequest request;
    request.driver = options.driver;
    request.isSerialIncluded = options.serial;
    request.folder = options.into;
    request.format = options.format;
    if (options.newOnly)
        request.knownRecordsFolder = knownRecordsFolder();
    request.download.debugLevel = options.debug;
    request.download.dateRule = options.fixDates;
    request.download.gapRule = options.splitGap;
    return request;
}

class WatchCommand {
public:
    WatchCommand(const PlugInBundle& plugIn, const WatchOptions& options, const Console& console)
        : plugIn_(plugIn), options_(options), console_(console),
          progress_(canShowProgress(options, false))
    {}

    [[nodiscard]] ExitStatus run();

private:
    [[nodiscard]] bool printEvent(const WatchEvent& event);
    [[nodiscard]] bool printLine(const std::string& text);
    void notify(const WatchEvent& event);

    const PlugInBundle& plugIn_;
    const WatchOptions& options_;
    const Console& console_;
    ProgressLine progress_;
    ExitStatus status_ = ExitStatus::kSuccess;
    bool isInterrupted_ = false; // in the middle of a download
    UDisks disks_;
    Notifier notifier_;
    bool canNotify_ = true; // no notification has failed so far
};

ExitStatus WatchCommand::run()
{
    auto request = watchRequest(options_);
    request.download.progress = progress_.callback();
    request.disks = options_.mount ? &disks_ : nullptr;
    if (const auto missing = options_.mount ? disks_.whyUnavailable() : std::nullopt)
        console_.note(sentencesOf(*missing));
    const StopSignals stop;
    Watcher watcher{plugIn_, std::move(request),
                    [this](const WatchEvent& event) { return printEvent(event); }};
    if (const auto failure = watcher.run(stop)) {
        console_.error(*failure);
        return ExitStatus::kFailed;
    }
    if (stop.stopRequested())
        (void)printLine("stopped: on request");
    // A signal is the ordinary end; only one that cut a download short sets the status.
    return isInterrupted_ ? statusAfterSignal(stop.signal()) : status_;
}

bool WatchCommand::printEvent(const WatchEvent& event)
{
    if (event.kind == WatchEvent::Kind::kStarted)
        return printLine("watching: files are saved in " + options_.into);
    if (event.kind == WatchEvent::Kind::kDriverMissing)
        return printLine("note: There is no driver \"" + options_.driver.value_or("") +
                         "\" so far. The drivers are: " + driverNames(plugIn_.drivers) + '.');
    isInterrupted_ = isInterrupted_ || event.report.isInterrupted();
    const auto text = watchText(event, options_.newOnly, !options_.verbose);
    console_.messages(text.notes);
    notify(event);
    return std::all_of(text.lines.begin(), text.lines.end(),
                       [this](const std::string& line) { return printLine(line); });
}

// Without a desktop there may be a failure for each download, of which one is enough.
void WatchCommand::notify(const WatchEvent& event)
{
    const auto notification =
        options_.notify ? watchNotification(event, options_.newOnly) : std::nullopt;
    const auto failure =
        notification ? notifier_.show(notification->title, notification->text) : std::nullopt;
    if (failure && canNotify_)
        console_.note(sentencesOf(*failure));
    canNotify_ = canNotify_ && !failure;
}

// A line that cannot be written, such as to a full disk, ends the watching.
bool WatchCommand::printLine(const std::string& text)
{
    status_ = print(displayText(text) + '\n', console_);
    return status_ == ExitStatus::kSuccess;
}

} // namespace

ExitStatus runWatch(const PlugInBundle& plugIn, const WatchOptions& options, const Console& console)
{
    if (options.newOnly && !knownRecordsFolder()) {
        console.error("--new-only needs a folder to remember what was saved. Set HOME or "
                      "XDG_STATE_HOME.");
        return ExitStatus::kFailed;
    }
    return WatchCommand{plugIn, options, console}.run();
}

} // namespace host
