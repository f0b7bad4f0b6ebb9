// SPDX-License-Identifier: MIT
// Everything is laid out as rows of two columns. What CLI11 would add to a row on its own
// ("Excludes: -v", default values) is left out: descriptions say it in words.

#include "host/commandline/HelpFormatter.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstddef>
#include <string_view>

namespace host {
namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kSecondColumn = 26;
constexpr std::size_t kWidth = 80;

// Appends a text that starts at `column`, wrapped at spaces; further lines are indented to there.
void appendWrapped(std::string& out, std::string_view text, std::size_t column)
{
    const auto room = kWidth - column;
    while (text.size() > room) {
        auto end = text.rfind(' ', room);
        if (end == std::string_view::npos)
            break; // one long word: better too wide than cut
        out.append(text.substr(0, end)).append("\n").append(column, ' ');
        text.remove_prefix(end + 1);
    }
    out.append(text).append("\n");
}

std::string row(std::string_view left, std::string_view description)
{
    auto text = fmt::format("{:{}}{}", "", kIndent, left);
    if (text.size() + kIndent > kSecondColumn)
        text += '\n' + std::string(kSecondColumn, ' ');
    else
        text.resize(kSecondColumn, ' ');
    appendWrapped(text, description, kSecondColumn);
    return text;
}

std::string rowOf(const CLI::Option& option)
{
    auto left = fmt::format("{}", fmt::join(namesOf(option), ", "));
    if (option.get_positional())
        left = option.get_type_name();
    else if (option.get_expected_min() > 0)
        left += ' ' + option.get_type_name();
    return row(left, option.get_description());
}

std::string section(std::string_view title, const std::string& rows)
{
    return rows.empty() ? "" : fmt::format("\n{}:\n{}", title, rows);
}

std::string usageOf(const CLI::Option& argument)
{
    const bool isRepeated = argument.get_items_expected_max() > 1;
    const auto text = argument.get_type_name() + (isRepeated ? "..." : "");
    return argument.get_required() ? text : '[' + text + ']';
}

std::string usageLine(const CLI::App& app, const std::string& name)
{
    auto line = "usage: " + name + " [OPTIONS]";
    for (const auto* argument : argumentsOf(app))
        line += ' ' + usageOf(*argument);
    return line + (visibleCommands(app).empty() ? "\n" : " COMMAND\n");
}

std::string optionRows(const std::vector<const CLI::Option*>& options)
{
    std::string rows;
    for (const auto* option : options)
        rows += rowOf(*option);
    return rows;
}

} // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode /*mode*/) const
{
    auto text = usageLine(*app, name) + '\n';
    appendWrapped(text, app->get_description(), 0);
    std::string commands;
    for (const auto* command : visibleCommands(*app))
        commands += row(command->get_name(), command->get_description());
    text += section("Commands", commands);
    text += section("Arguments", optionRows(argumentsOf(*app)));
    text += section("Options", optionRows(visibleOptions(*app)));
    return text + '\n' + app->get_footer();
}

std::vector<std::string> namesOf(const CLI::Option& option)
{
    std::vector<std::string> names;
    for (const auto& name : option.get_snames())
        names.push_back('-' + name);
    for (const auto& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

std::string titleOf(const CLI::Option& option)
{
    return option.get_positional() ? option.get_type_name() : namesOf(option).back();
}

std::vector<const CLI::Option*> visibleOptions(const CLI::App& app)
{
    return app.get_options([](const CLI::Option* option) {
        return !option->get_positional() && !option->get_group().empty();
    });
}

std::vector<const CLI::Option*> argumentsOf(const CLI::App& app)
{
    return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::App*> visibleCommands(const CLI::App& app)
{
    return app.get_subcommands(
        [](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<std::string> commandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const auto* command : visibleCommands(app))
        names.push_back(command->get_name());
    return names;
}

} // namespace host
