// SPDX-License-Identifier: MIT
// Uses nothing that belongs to the host thread, which may be anywhere in its work.

#include "host/cli/EarlyStop.h"

#include "host/cli/Console.h"
#include "host/cli/ExitStatus.h"
#include "host/cli/ProgressLine.h"
#include "host/cli/RestoreJson.h"
#include "host/cli/SendJson.h"
#include "host/files/Output.h"

#include <fmt/format.h>

#include <cstdlib>

#include <unistd.h>

namespace host {
namespace {

// @param document  empty without --json
[[noreturn]] void printAndLeave(const GlobalOptions& options, const Message& message,
                                std::string_view document, ExitStatus status)
{
    ProgressLine{canShowProgress(options, false)}.show({}); // removes the line
    Console{options.quiet}.messages({message});
    Output output{STDOUT_FILENO, "the standard output"};
    output.write(document);
    (void)output.flush(); // the exit status shows already that the command failed
    // Without destructors: the host thread is still using its objects.
    std::_Exit(static_cast<int>(status));
}

} // namespace

std::string stoppedEarlyText(std::string_view command)
{
    return fmt::format(
        "The {} was stopped before anything was written: every file of the device is as it was.",
        command);
}

void endEarly(int signal, const SendOptions& options)
{
    const auto status = statusAfterSignal(signal);
    const Message message{true, stoppedEarlyText("send")};
    PreparedSend nothing;
    nothing.request.isDryRun = options.dryRun;
    SendReport report;
    report.wasStopped = report.wasStoppedEarly = true;
    printAndLeave(options, message,
                  options.json ? sendJson(nothing, report, {message}, status) : "", status);
}

void endEarly(int signal, const RestoreOptions& options)
{
    const auto status = statusAfterSignal(signal);
    const Message message{true, stoppedEarlyText("restore")};
    RestoreReport report;
    report.wasStopped = true;
    printAndLeave(options, message,
                  options.json ? restoreJson({}, *options.backup, report, {message}, status) : "",
                  status);
}

} // namespace host
