// SPDX-License-Identifier: MIT

#include "host/completions/CommandTable.h"

#include "host/base/Text.h"
#include "host/formats/Formats.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace host {
namespace {

// The lower-case words of "auto|off|WEEKS".
std::string fixedWords(const std::string& typeName)
{
    std::vector<std::string> words = CLI::detail::split(typeName, '|');
    words.erase(
        std::remove_if(words.begin(), words.end(), [](const auto& word) { return word < "a"; }),
        words.end());
    return joined(words, " ");
}

} // namespace

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

Completion completionOf(const CLI::Option& option)
{
    const auto type = option.get_type_name();
    if (type == "FILE" || type == "LOCATION" || type == "BACKUP")
        return {Source::kFiles};
    if (type == "DIR" || type == "BUNDLE")
        return {Source::kFolders};
    if (type == "FORMAT")
        return {Source::kWords, replaced(formatNames(), ",", "")};
    if (type == "NAME")
        return {Source::kDrivers};
    if (type.find('|') != std::string::npos)
        return {Source::kWords, fixedWords(type)};
    return {};
}

bool takesValue(const CLI::Option& option)
{
    return option.get_expected_min() > 0;
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app)
{
    return app.get_options([&](const CLI::Option* option) {
        const bool isRepeated = option == app.get_help_ptr() && app.get_parent() != nullptr;
        return !option->get_positional() && !option->get_group().empty() && !isRepeated;
    });
}

std::vector<const CLI::Option*> argumentsOf(const CLI::App& app)
{
    return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
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

std::vector<std::string> optionNames(const CLI::App& app)
{
    std::vector<std::string> all;
    for (const auto* option : optionsOf(app)) {
        const auto names = namesOf(*option);
        all.insert(all.end(), names.begin(), names.end());
    }
    return all;
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app)
{
    return app.get_subcommands(
        [](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<std::string> commandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const auto* command : commandsOf(app))
        names.push_back(command->get_name());
    return names;
}

} // namespace host
