// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"
#include "host/bundle/SerialPort.h"
#include "host/cli/Commands.h"
#include "host/files/Output.h"

#include <platform/System/Log.h>

#include <exception>
#include <optional>
#include <string>
#include <variant>

#include <unistd.h>

namespace host {
namespace {

// One overload per command, so that a visit of the parsed options finds it.
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

// The device that was named, for the commands that work on one.
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

ExitStatus run(const CommandOptions& command, const Console& console)
{
    const auto& options = globalOptions(command);
    gps::setLogToStandardError(options.verbose);
    // Before there are drivers, which look for them, or are not even offered without.
    if (!options.testFolders.empty())
        setTestFolders(options.testFolders);
    if (const auto device = deviceOf(command); device && isSerialPort(*device))
        addSerialPort(*device);
    const auto path = findBundle(options.plugin);
    if (!path) {
        console.error("The plug-in bundle is neither beside the program nor installed. Name it "
                      "with --plugin.");
        return ExitStatus::kNothingToWorkOn;
    }
    PlugInBundle plugIn;
    if (const auto failure = loadBundle(*path, plugIn)) {
        console.error(*failure);
        return ExitStatus::kNothingToWorkOn;
    }
    return std::visit(Runner{plugIn, console}, command);
}

} // namespace

ExitStatus runProgram(int argc, const char* const* argv)
{
    const auto parsed = parseCommandLine(argc, argv);
    if (!parsed.options) {
        const bool isAnswer = parsed.status == ExitStatus::kSuccess;
        if (isAnswer)
            return print(parsed.text, Console{false});
        Output output{STDERR_FILENO, "the terminal"};
        output.write(parsed.text);
        (void)output.flush(); // there is no other place to say it
        return parsed.status;
    }
    const Console console{globalOptions(*parsed.options).quiet};
    try {
        return run(*parsed.options, console);
    } catch (const std::exception& failure) {
        console.error(std::string{"Something unexpected happened: "} + failure.what());
        return ExitStatus::kFailed;
    }
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
