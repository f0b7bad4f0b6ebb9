// SPDX-License-Identifier: MIT
// Uses nothing that belongs to the host thread, which may be anywhere in its work.

#include "host/cli/EarlyStop.h"

#include "host/cli/Console.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/ProgressLine.h"
#include "host/words/StopText.h"

#include <cstdlib>
#include <string>
#include <utility>

namespace host {
namespace {

template <typename Options>
[[noreturn]] void printAndLeave(int signal, const Options& options, std::string text)
{
    const EarlyEnd end{statusAfterSignal(signal), {true, std::move(text)}};
    ProgressLine{canShowProgress(options, false)}.show({}); // removes the line
    // The exit status shows already that the command failed.
    (void)printEarlyEnd(end, earlyDocument(options, end), Console{options.quiet});
    // Without destructors: the host thread is still using its objects.
    std::_Exit(static_cast<int>(end.status));
}

} // namespace

void endEarly(int signal, const DownloadOptions& options)
{
    printAndLeave(signal, options, "The download was stopped before it began.");
}

void endEarly(int signal, const SendOptions& options)
{
    printAndLeave(signal, options, stoppedSendText());
}

void endEarly(int signal, const RestoreOptions& options)
{
    printAndLeave(signal, options,
                  options.backup ? stoppedRestoreText()
                                 : "The command was stopped: the backups are not listed.");
}

} // namespace host
