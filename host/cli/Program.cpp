// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"
#include "host/bundle/SerialPort.h"
#include "host/cli/Commands.h"
#include "host/files/Output.h"

#include <platform/System/Log.h>

#include <exception>
#include <string>

#include <unistd.h>

namespace host {
namespace {

ExitStatus runCommand(const PlugInBundle& plugIn, const Options& options, const Console& console)
{
    switch (options.command) {
    case Command::kInfo:
        return runInfo(plugIn, options, console);
    case Command::kDevices:
        return runDevices(plugIn, options, console);
    case Command::kAcquire:
        return runAcquire(plugIn, options, console);
    case Command::kImport:
        return runImport(plugIn, options, console);
    case Command::kSend:
        return runSend(plugIn, options, console);
    case Command::kRestore:
        return runRestore(plugIn, options, console);
    case Command::kWatch:
        return runWatch(plugIn, options, console);
    }
    return ExitStatus::kUsage;
}

ExitStatus run(const Options& options, const Console& console)
{
    gps::setLogToStandardError(options.verbose);
    // Before there are drivers, which look for them, or are not even offered without.
    if (!options.testFolders.empty())
        setTestFolders(options.testFolders);
    if (options.device && isSerialPort(*options.device))
        addSerialPort(*options.device);
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
    return runCommand(plugIn, options, console);
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
    const Console console{parsed.options->quiet};
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
