// SPDX-License-Identifier: MIT
// Looks in the tables of all commands: most words of this kind are right, but in the wrong place.

#include "host/commandline/UnexpectedWord.h"

#include "host/base/NearestName.h"
#include "host/base/Text.h"
#include "host/commandline/Arguments.h"
#include "host/commandline/HelpFormatter.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace host {
namespace {

// What other programs call the commands.
constexpr std::array<std::pair<std::string_view, std::string_view>, 14> kOtherWords{
    {{"download", "acquire"},
     {"get", "acquire"},
     {"fetch", "acquire"},
     {"read", "acquire"},
     {"export", "acquire"},
     {"save", "acquire"},
     {"convert", "import"},
     {"load", "import"},
     {"upload", "send"},
     {"write", "send"},
     {"list", "devices"},
     {"show", "open"},
     {"view", "open"},
     {"backups", "restore"}}};

std::string commandCalled(std::string_view word, const std::vector<std::string>& commands)
{
    const auto* const other = std::find_if(kOtherWords.begin(), kOtherWords.end(),
                                           [&](const auto& pair) { return pair.first == word; });
    return other != kOtherWords.end() && isOneOf(other->second, commands)
               ? std::string{other->second}
               : std::string{};
}

// The program's name, option or command that is most like the word.
std::string guessFor(std::string_view word, const CLI::App& app)
{
    std::vector<std::string> names;
    std::vector<const CLI::App*> tables{&app};
    for (const auto* command : app.get_subcommands())
        tables.push_back(command);
    for (const auto* table : tables) {
        for (const auto* option : visibleOptions(*table)) {
            for (const auto& name : namesOf(*option))
                names.push_back(name);
        }
    }
    if (app.get_subcommands().empty()) {
        auto commands = commandNames(app);
        if (auto command = commandCalled(word, commands); !command.empty())
            return command;
        for (auto& name : commands)
            names.push_back(std::move(name));
    }
    return nearestName(word.substr(0, word.find('=')), names);
}

bool isFolder(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

// "acquire, import and send".
std::string enumerationOf(const std::vector<std::string>& names)
{
    std::string list;
    for (std::size_t i = 0; i < names.size(); ++i)
        list += (i == 0 ? "" : i + 1 < names.size() ? ", " : " and ") + names[i];
    return list;
}

std::vector<std::string> commandsWith(const CLI::App& app, const std::string& option)
{
    std::vector<std::string> names;
    for (const auto* command : visibleCommands(app)) {
        if (command->get_option_no_throw(option) != nullptr)
            names.push_back(command->get_name());
    }
    return names;
}

// An option as typed: "--device LOCATION", "--dry-run".
std::string typedForm(const std::string& name, const CLI::Option& option)
{
    return option.get_expected_min() > 0 ? name + ' ' + option.get_type_name() : name;
}

// An option of another command, or one that was typed before its command. Empty if no command has
// it.
std::string misplacedOption(const CLI::App& app, const std::string& name)
{
    const auto owners = commandsWith(app, name);
    if (owners.empty())
        return {};
    const auto typed = app.get_subcommands();
    if (typed.empty())
        return fmt::format("{} is an option of {}, and follows the command; {}", name,
                           enumerationOf(owners), helpHint(app));
    const auto& command = *typed.front();
    if (const auto* const own = command.get_option_no_throw(name))
        return fmt::format("{0} is an option of {1}, and follows it: \"{2} {1} {3}\"", name,
                           command.get_name(), app.get_name(), typedForm(name, *own));
    return fmt::format("{} is an option of {}, not of {}; {}", name, enumerationOf(owners),
                       command.get_name(), helpHint(app));
}

std::string exampleOf(const CLI::App& app, const CLI::App& command, const std::string& words)
{
    return fmt::format("\"{} {} {}\"", app.get_name(), command.get_name(), words);
}

// The commands as they are typed with a file.
std::vector<std::string> examplesWithFile(const CLI::App& app, const std::string& file)
{
    std::vector<std::string> examples;
    for (const auto* command : visibleCommands(app)) {
        for (const auto* argument : argumentsOf(*command)) {
            if (argument->get_type_name() == "FILE")
                examples.push_back(exampleOf(app, *command, file));
        }
    }
    return examples;
}

// The first command for a device, which a folder may be, and the first one for files.
std::vector<std::string> examplesWithFolder(const CLI::App& app, const std::string& folder)
{
    auto examples = examplesWithFile(app, folder);
    examples.resize(std::min<std::size_t>(examples.size(), 1));
    for (const auto* command : visibleCommands(app)) {
        for (const auto* option : visibleOptions(*command)) {
            if (option->get_type_name() != "LOCATION")
                continue;
            examples.insert(examples.begin(),
                            exampleOf(app, *command, titleOf(*option) + ' ' + folder));
            return examples;
        }
    }
    return examples;
}

// What may be meant by a word where a command is expected.
std::string commandHint(const CLI::App& app, const std::string& word)
{
    std::vector<std::string> examples;
    if (isFolder(word))
        examples = examplesWithFolder(app, word);
    else if (word.find_first_of("./") != word.npos)
        examples = examplesWithFile(app, word);
    return examples.empty()
               ? fmt::format("the commands are: {}", fmt::join(commandNames(app), ", "))
               : fmt::format("a {} follows its command: {}", isFolder(word) ? "folder" : "file",
                             fmt::join(examples, " or "));
}

// Whether an option's value can be this word: a device is a folder or a port, and a file has an
// extension.
bool canBeValue(const std::string& type, const std::string& word)
{
    const bool isDevice = isFolder(word) || word.starts_with("/dev/");
    const bool isFile = !isDevice && std::filesystem::path{word}.has_extension();
    return (type == "LOCATION" && !isFile) || (type == "FILE" && !isDevice);
}

// What may be meant by a word where no further argument is expected.
std::string argumentHint(const CLI::App& app, const std::string& word)
{
    const auto typed = app.get_subcommands();
    if (typed.empty())
        return helpHint(app);
    const auto& command = *typed.front();
    const auto arguments = argumentsOf(command);
    if (!arguments.empty() && arguments.back()->get_items_expected_max() > 1) // takes all after it
        return fmt::format("it follows the command: \"{} {} {}\"", app.get_name(),
                           command.get_name(), word);
    std::vector<std::string> options;
    for (const auto* option : visibleOptions(command)) {
        if (arguments.empty() && canBeValue(option->get_type_name(), word))
            options.push_back(fmt::format("\"{} {}\"", titleOf(*option), word));
    }
    return options.empty() ? helpHint(app)
                           : fmt::format("did you mean {}?", fmt::join(options, " or "));
}

} // namespace

std::string guessedCommand(std::string_view word, const CLI::App& app)
{
    const auto names = commandNames(app);
    const auto called = commandCalled(word, names);
    return called.empty() ? nearestName(word, names) : called;
}

std::string unexpectedWord(const CLI::App& app, const std::string& word)
{
    const bool isOption = word.size() > 1 && word.front() == '-';
    if (isOption) {
        if (auto misplaced = misplacedOption(app, word.substr(0, word.find('=')));
            !misplaced.empty())
            return misplaced;
    }
    const bool isCommand =
        !isOption && app.get_subcommands().empty() && !visibleCommands(app).empty();
    const auto* const what = isOption    ? "unknown option"
                             : isCommand ? "unknown command"
                                         : "unexpected argument";
    const auto guess = guessFor(word, app);
    const auto hint = !guess.empty() ? fmt::format("did you mean \"{}\"?", guess)
                      : isOption     ? helpHint(app)
                      : isCommand    ? commandHint(app, word)
                                     : argumentHint(app, word);
    return fmt::format("{} \"{}\"; {}", what, word, hint);
}

} // namespace host
