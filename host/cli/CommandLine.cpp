// SPDX-License-Identifier: MIT
// What was typed comes from outside, so mistakes are made safe to print before they leave here.

#include "host/cli/CommandLine.h"

#include "host/base/Text.h"
#include "host/cli/CommandTable.h"
#include "host/cli/RawOptions.h"
#include "host/commandline/Arguments.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <string_view>

namespace host {
namespace {

ParsedCommandLine mistake(std::string_view text)
{
    return {std::nullopt, fmt::format("magellangps: {}\n", displayText(text)), ExitStatus::kUsage};
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
    ParsedCommandLine parsed;
    if (const auto wrong = finish(table.raw(), parsed.options); !wrong.empty())
        return mistake(wrong);
    return parsed;
}

} // namespace host
