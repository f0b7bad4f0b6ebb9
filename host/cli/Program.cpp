// SPDX-License-Identifier: MIT
// From the command line to the exit status. Exceptions end here: expected failures are values, so
// one that gets this far is a defect and is reported as unexpected.

#include "host/base/HostError.h"
#include "host/base/Text.h"
#include "host/bundle/DeviceChoice.h"
#include "host/cli/CommandLine.h"
#include "host/cli/Commands.h"
#include "host/cli/CompleteCommand.h"
#include "host/cli/EarlyDocument.h"
#include "host/cli/EarlyStop.h"
#include "host/commandline/Completion.h"
#include "host/files/Output.h"
#include "host/files/StateFolder.h"
#include "host/operations/StopSignals.h"

#include <platform/System/Log.h>

#include <fmt/format.h>

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include <unistd.h>

namespace host {
namespace {

// Runs the command that the options are for: one overload per alternative of CommandOptions.
struct Runner {
    const PlugInBundle& plugIn;
    const Console& console;

    ExitStatus operator()(const InfoOptions& options) const
    {
        return runInfo(plugIn, options, console);
    }
    ExitStatus operator()(const DevicesOptions& options) const
    {
        return runDevices(plugIn, options, console);
    }
    ExitStatus operator()(const AcquireOptions& options) const
    {
        return runAcquire(plugIn, options, console);
    }
    ExitStatus operator()(const ImportOptions& options) const
    {
        return runImport(plugIn, options, console);
    }
    ExitStatus operator()(const OpenOptions& options) const
    {
        return runOpen(plugIn, options, console);
    }
    ExitStatus operator()(const SendOptions& options) const
    {
        return runSend(plugIn, options, console);
    }
    ExitStatus operator()(const RestoreOptions& options) const
    {
        return runRestore(plugIn, options, console);
    }
    ExitStatus operator()(const WatchOptions& options) const
    {
        return runWatch(plugIn, options, console);
    }
};

const GlobalOptions& globalOptions(const CommandOptions& command)
{
    return std::visit([](const GlobalOptions& options) -> const GlobalOptions& { return options; },
                      command);
}

// The --device of a command that has this option.
std::optional<std::string> deviceOf(const CommandOptions& command)
{
    return std::visit(
        [](const auto& options) -> std::optional<std::string> {
            if constexpr (requires { options.device; })
                return options.device;
            else
                return std::nullopt;
        },
        command);
}

// Those commands that have an account of what they did say at every end what that is; at the others
// a signal just ends the program.
StopSignals::EndProgram earlyEndOf(const CommandOptions& command)
{
    return std::visit(
        [](const auto& options) -> StopSignals::EndProgram {
            if constexpr (requires { endEarly(0, options); })
                return [&options](int signal) { endEarly(signal, options); };
            else
                return {};
        },
        command);
}

ExitStatus endWith(const CommandOptions& command, const EarlyEnd& end, const Console& console)
{
    const auto document =
        std::visit([&](const auto& options) { return earlyDocument(options, end); }, command);
    return printEarlyEnd(end, document, console);
}

std::optional<gps::Error> loadUntilStopped(const CommandOptions& command, PlugInBundle& plugIn)
{
    std::optional<StopSignals> stop; // until the command itself watches for signals
    if (auto end = earlyEndOf(command))
        stop.emplace(std::move(end));
    const auto& options = globalOptions(command);
    prepareDrivers({{}, deviceOf(command), options.testFolders});
    const auto path = findBundle(options.plugin);
    if (!path)
        return hostError("No plug-in bundle was found beside the program or where it is installed",
                         "Name one with --plugin");
    return loadBundle(*path, plugIn); // reads the devices that are mounted
}

ExitStatus run(const CommandOptions& command, const Console& console)
{
    const auto& options = globalOptions(command);
    // Log lines can hold texts of a device, which must not command the terminal.
    gps::setLogToStandardError(options.verbose,
                               [](std::string_view line) { return displayText(line); });
    PlugInBundle plugIn;
    if (const auto failure = loadUntilStopped(command, plugIn)) {
        const EarlyEnd end{ExitStatus::kNothingToWorkOn, {true, sentencesOf(*failure)}, failure};
        return endWith(command, end, console);
    }
    return std::visit(Runner{plugIn, console}, command);
}

ExitStatus runOrFail(const CommandOptions& command, const Console& console)
{
    std::optional<gps::Error> failure;
    try {
        return run(command, console);
    } catch (const std::bad_alloc&) { // by now its objects have been destroyed
        failure = lackOfMemory();
    } catch (const std::exception& unexpected) {
        failure =
            hostError(fmt::format("Something unexpected happened: {}", unexpected.what()), "");
    }
    const EarlyEnd end{.status = ExitStatus::kFailed,
                       .message = {true, sentencesOf(*failure)},
                       .error = failure,
                       .mayHaveBegun = true};
    return endWith(command, end, console);
}

ExitStatus runAny(int argc, const char* const* argv)
{
    // Before the parser: a command line that is being typed is rarely valid.
    if (argc > 1 && std::string_view{argv[1]} == kCompleteCommand)
        return print(completionsFor(wordsToComplete(argc, argv)), Console{false});
    const auto parsed = parseCommandLine(argc, argv, configurationFile());
    if (!parsed.options) {
        if (parsed.status == ExitStatus::kSuccess)
            return print(parsed.text, Console{false});
        Output output{STDERR_FILENO, "stderr"};
        output.write(parsed.text);
        (void)output.flush(); // if stderr is closed, the exit status is all there is
        return parsed.status;
    }
    const Console console{globalOptions(*parsed.options).quiet};
    if (!parsed.note.empty())
        console.note(parsed.note);
    return runOrFail(*parsed.options, console);
}

} // namespace

ExitStatus runProgram(int argc, const char* const* argv)
{
    try {
        return runAny(argc, argv);
    } catch (const std::bad_alloc&) {
        Console{false}.error(lackOfMemory());
    } catch (const std::exception& failure) {
        Console{false}.error(fmt::format("Something unexpected happened: {}", failure.what()));
    }
    return ExitStatus::kFailed;
}

ExitStatus print(std::string_view text, const Console& console)
{
    Output output{STDOUT_FILENO, "the standard output"};
    output.write(text);
    const auto failure = output.flush();
    if (failure)
        console.error(*failure);
    return failure ? ExitStatus::kFailed : ExitStatus::kSuccess;
}

} // namespace host
