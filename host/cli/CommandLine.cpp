// SPDX-License-Identifier: MIT
// What was typed comes from outside, so mistakes are made safe to print before they leave here.

#include "host/cli/CommandLine.h"

#include "host/base/Text.h"
#include "host/cli/CommandTable.h"
#include "host/cli/RawOptions.h"
#include "host/commandline/Arguments.h"
#include "host/commandline/HelpFormatter.h"
#include "host/commandline/NearestName.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {
namespace {

ParsedCommandLine mistake(std::string_view text)
{
    return {std::nullopt, fmt::format("magellangps: {}\n", displayText(text)), ExitStatus::kUsage};
}

ParsedCommandLine helpOn(const CLI::App& app, const std::optional<std::string>& topic)
{
    // Not help(), which prints that of the command that was typed: "help".
    if (!topic)
        return {std::nullopt,
                app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal),
                ExitStatus::kSuccess};
    for (const auto* command : visibleCommands(app)) {
        if (command->get_name() == *topic)
            return {std::nullopt, command->help(app.get_name()), ExitStatus::kSuccess};
    }
    const auto names = commandNames(app);
    const auto guess = nearestName(*topic, names);
    return mistake(fmt::format("unknown command \"{}\"; {}", *topic,
                               guess.empty() ? "the commands are: " + joined(names, ", ")
                                             : fmt::format("did you mean \"{}\"?", guess)));
}

} // namespace

ParsedCommandLine parseCommandLine(int argc, const char* const* argv)
{
    CommandTable table;
    auto& app = table.app();
    const auto result = parseArguments(app, table.exclusions(), argc, argv);
    if (result.kind == ParseResult::Kind::kAnswer)
        return {std::nullopt, result.text, ExitStatus::kSuccess};
    if (result.kind == ParseResult::Kind::kMistake)
        return mistake(result.text);
    if (app.get_subcommands().empty())
        // Without any argument the help is an answer, but the status still shows that nothing was
        // done.
        return argc > 1 ? mistake("no COMMAND is given; " + helpHint(app))
                        : ParsedCommandLine{std::nullopt, app.help(), ExitStatus::kUsage};
    if (table.raw().command == Command::kHelp)
        return helpOn(app, table.raw().helpTopic);
    ParsedCommandLine parsed;
    if (const auto wrong = finish(table.raw(), parsed.options); !wrong.empty())
        return mistake(wrong);
    return parsed;
}

} // namespace host
