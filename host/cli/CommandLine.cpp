// SPDX-License-Identifier: MIT
// What was typed comes from outside, so mistakes are made safe to print before they leave here.

#include "host/cli/CommandLine.h"

#include "host/base/NearestName.h"
#include "host/base/Text.h"
#include "host/commandline/Arguments.h"
#include "host/commandline/Configuration.h"
#include "host/commandline/HelpFormatter.h"
#include "host/commandline/UnexpectedWord.h"
#include "host/options/CommandTable.h"
#include "host/options/ConfigurationCheck.h"
#include "host/options/RawOptions.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
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
    const auto guess = guessedCommand(*topic, app);
    return mistake(fmt::format("unknown command \"{}\"; {}", *topic,
                               guess.empty() ? "the commands are: " + joined(names, ", ")
                                             : fmt::format("did you mean \"{}\"?", guess)));
}

// Pairs of options: one that was typed makes a default of the other meaningless.
bool isOverruled(const CommandTable& table, const std::string& name)
{
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kRules{
        {{"--device", "driver"},
         {"--card", "driver"},
         {"--driver", "device"},
         {"--test-folder", "device"}}};
    const auto& app = table.app();
    const auto isTypedIn = [](const CLI::App& part, std::string_view option) {
        const auto* const found = part.get_option_no_throw(std::string{option});
        return found != nullptr && found->count() > 0;
    };
    const auto isTyped = [&](std::string_view option) {
        return isTypedIn(app, option) || isTypedIn(*app.get_subcommands().front(), option);
    };
    if (name == "format")
        return isFormatNamedByExtension(table.raw());
    return std::any_of(kRules.begin(), kRules.end(), [&](const auto& rule) {
        return rule.second == name && isTyped(rule.first);
    });
}

using Defaults = std::vector<const ConfiguredOption*>;

void markDefaults(const Defaults& defaults, CommandOptions& options)
{
    const bool isEjectDefault =
        std::any_of(defaults.begin(), defaults.end(),
                    [](const ConfiguredOption* option) { return option->name == "eject"; });
    std::visit(
        [isEjectDefault](auto& command) {
            if constexpr (requires { command.disk; })
                command.disk.isEjectDefault = isEjectDefault;
        },
        options);
}

// Completes what was typed with these defaults.
std::string finishWith(const Defaults& defaults, CommandTable& table, const RawOptions& typed,
                       std::optional<CommandOptions>& options)
{
    table.restore(typed);
    for (const auto* const option : defaults)
        setDefault(table.app(), *option);
    auto wrong = finish(table.raw(), options);
    if (wrong.empty())
        markDefaults(defaults, *options);
    return wrong;
}

// Leaves out defaults that do not fit to what was typed: as few as possible, the last ones first.
// @param defaults  out: those that are used
std::string finishWithFitting(Defaults& defaults, CommandTable& table,
                              std::optional<CommandOptions>& options)
{
    const auto typed = table.raw();
    for (;; defaults.pop_back()) {
        auto wrong = finishWith(defaults, table, typed, options);
        if (wrong.empty() || defaults.empty())
            return wrong;
        for (auto i = defaults.size(); i-- > 0;) {
            auto fewer = defaults;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
            if (finishWith(fewer, table, typed, options).empty()) {
                defaults = std::move(fewer);
                return {};
            }
        }
    }
}

// The file that was named, or the user's own if there is one.
std::optional<std::string> configurationPath(const GlobalOptions& typed,
                                             const std::optional<std::string>& usersFile)
{
    if (typed.config)
        return typed.config;
    std::error_code failure; // then reading reports it
    if (typed.noConfig || !usersFile || (!std::filesystem::exists(*usersFile, failure) && !failure))
        return std::nullopt;
    return usersFile;
}

// @param defaults  what they point to lives in `configuration`
std::string readDefaults(Configuration& configuration, CommandTable& table, Defaults& defaults)
{
    if (auto wrong = readCheckedConfiguration(configuration); !wrong.empty())
        return wrong;
    defaults = applicableDefaults(configuration, table.app(), table.exclusions());
    std::erase_if(defaults,
                  [&](const ConfiguredOption* option) { return isOverruled(table, option->name); });
    return {};
}

// A time that was left out lets more records through than the user may expect.
std::string noteOnTimes(const Defaults& read, const Defaults& used, const std::string& path)
{
    const auto isUnusedTime = [&used](const ConfiguredOption* option) {
        return (option->name == "since" || option->name == "until") &&
               std::find(used.begin(), used.end(), option) == used.end();
    };
    const auto found = std::find_if(read.begin(), read.end(), isUnusedTime);
    return found == read.end()
               ? std::string{}
               : fmt::format("\"{}\" of the configuration file is not used, because it contradicts "
                             "what was typed. Path: {}, line {}",
                             (*found)->name, path, (*found)->line);
}

ParsedCommandLine complete(CommandTable& table, const std::optional<std::string>& usersFile)
{
    Configuration configuration;
    Defaults defaults;
    if (const auto path = configurationPath(table.raw().global, usersFile)) {
        configuration.path = *path;
        configuration.escape =
            table.raw().global.config ? "leave --config out" : "ignore it with --no-config";
        if (const auto wrong = readDefaults(configuration, table, defaults); !wrong.empty())
            return mistake(wrong);
    }
    ParsedCommandLine parsed;
    const auto read = defaults;
    if (const auto wrong = finishWithFitting(defaults, table, parsed.options); !wrong.empty())
        return mistake(wrong);
    parsed.note = noteOnTimes(read, defaults, configuration.path);
    return parsed;
}

} // namespace

ParsedCommandLine parseCommandLine(int argc, const char* const* argv,
                                   const std::optional<std::string>& configFile)
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
    return complete(table, configFile);
}

} // namespace host
