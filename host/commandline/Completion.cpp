// SPDX-License-Identifier: MIT
// Walks the typed words as the parser would, but forgivingly: a word that means nothing is skipped,
// because the user may correct it later.

#include "host/commandline/Completion.h"

#include "host/commandline/HelpFormatter.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace host {
namespace {

bool takesValue(const CLI::Option& option)
{
    return option.get_expected_min() > 0;
}

bool isRepeatable(const CLI::Option& option)
{
    return option.get_items_expected_max() > 1;
}

std::string described(const std::string& word, const std::string& description)
{
    return fmt::format("{}\t{}\n", word, description);
}

// What the words before the one to complete mean.
class Walk {
public:
    Walk(const CLI::App& app, const std::vector<std::string>& words) : app_(app)
    {
        for (std::size_t i = 0; i + 1 < words.size(); ++i)
            step(words[i]);
    }

    [[nodiscard]] const CLI::App* command() const noexcept { return command_; }
    [[nodiscard]] bool onlyArguments() const noexcept { return onlyArguments_; }
    [[nodiscard]] const TypedValues& values() const noexcept { return values_; }

    /// The option whose value comes next; null if none waits for one.
    [[nodiscard]] const CLI::Option* pending() const noexcept { return pending_; }

    [[nodiscard]] const CLI::Option* find(const std::string& name) const
    {
        const auto* const found =
            command_ != nullptr ? command_->get_option_no_throw(name) : nullptr;
        return found != nullptr ? found : app_.get_option_no_throw(name);
    }

    [[nodiscard]] bool isTyped(const CLI::Option& option) const
    {
        return values_.find(option.get_name()) != values_.end();
    }

private:
    [[nodiscard]] const CLI::App* commandNamed(const std::string& word) const;
    void step(const std::string& word);
    void stepOption(const std::string& word);

    const CLI::App& app_;
    const CLI::App* command_ = nullptr;
    const CLI::Option* pending_ = nullptr;
    bool onlyArguments_ = false; // after "--"
    TypedValues values_;
};

/// Null if a command was typed before, or if no command has this name.
const CLI::App* Walk::commandNamed(const std::string& word) const
{
    const auto commands = visibleCommands(app_);
    const auto found = std::find_if(commands.begin(), commands.end(), [&](const auto* command) {
        return command->get_name() == word;
    });
    return command_ != nullptr || found == commands.end() ? nullptr : *found;
}

void Walk::step(const std::string& word)
{
    if (pending_ != nullptr) {
        values_[std::exchange(pending_, nullptr)->get_name()].push_back(word);
    } else if (word == "--") {
        onlyArguments_ = true;
    } else if (!onlyArguments_ && word.size() > 1 && word.front() == '-') {
        stepOption(word);
    } else if (const auto* const command = commandNamed(word); command != nullptr) {
        command_ = command;
    } else {
        values_[""].push_back(word);
    }
}

void Walk::stepOption(const std::string& word)
{
    const auto equals = word.find('=');
    const auto* const option = find(word.substr(0, equals));
    if (option == nullptr)
        return;
    auto& values = values_[option->get_name()];
    if (equals != word.npos)
        values.push_back(word.substr(equals + 1));
    else if (takesValue(*option))
        pending_ = option;
}

// Answers for a value of which `start` has been typed.
// @param prefix  the part of the word before the value, such as "--output="; may be empty
std::string valuesFor(const CLI::Option& option, const ValueSources& sources,
                      const TypedValues& typed, const std::string& start,
                      const std::string& prefix = {})
{
    const auto source = sources.find(&option);
    std::vector<std::string> answers;
    if (source != sources.end())
        answers = source->second(typed);
    else if (option.get_type_name() == "FILE")
        answers = {":files"};
    else if (option.get_type_name() == "DIR")
        answers = {":folders"};
    std::string lines;
    for (const auto& answer : answers) {
        if (answer.starts_with(':'))
            lines += answer + '\n';
        else if (answer.starts_with(start))
            lines += prefix + answer + '\n';
    }
    return lines;
}

std::string optionsFor(const CLI::App& table, const Walk& walk, const std::string& start)
{
    std::string lines;
    for (const auto* option : visibleOptions(table)) {
        // A command has a --help of its own beside the program's: one is enough.
        const bool isSecondHelp = option == table.get_help_ptr() && table.get_parent() == nullptr &&
                                  walk.command() != nullptr;
        if (isSecondHelp || (walk.isTyped(*option) && !isRepeatable(*option)))
            continue;
        for (const auto& name : namesOf(*option)) {
            if (name.starts_with(start))
                lines += described(name, option->get_description());
        }
    }
    return lines;
}

std::string commandsFor(const CLI::App& app, const std::string& start)
{
    std::string lines;
    for (const auto* command : visibleCommands(app)) {
        if (command->get_name().starts_with(start))
            lines += described(command->get_name(), command->get_description());
    }
    return lines;
}

} // namespace

ValueSource wordSource(std::vector<std::string> words)
{
    return [words = std::move(words)](const TypedValues& /*typed*/) { return words; };
}

std::vector<std::string> wordsToComplete(int argc, const char* const* argv)
{
    std::vector<std::string> words(argv + std::min(argc, 2), argv + argc);
    if (!words.empty() && words.front() == "--")
        words.erase(words.begin());
    return words;
}

std::string completionsOf(const CLI::App& app, const ValueSources& sources,
                          const std::vector<std::string>& words)
{
    const Walk walk{app, words};
    const auto start = words.empty() ? std::string{} : words.back();
    if (walk.pending() != nullptr)
        return valuesFor(*walk.pending(), sources, walk.values(), start);
    const auto* const table = walk.command() != nullptr ? walk.command() : &app;
    if (!walk.onlyArguments() && start.starts_with('-')) {
        const auto equals = start.find('=');
        if (equals == start.npos)
            return (table != &app ? optionsFor(*table, walk, start) : "") +
                   optionsFor(app, walk, start);
        const auto* const option = walk.find(start.substr(0, equals));
        return option == nullptr || !takesValue(*option)
                   ? ""
                   : valuesFor(*option, sources, walk.values(), start.substr(equals + 1),
                               start.substr(0, equals + 1));
    }
    const auto arguments = argumentsOf(*table);
    std::string lines = table == &app ? commandsFor(app, start) : "";
    // Only the first positional argument has completions: if it takes a single value, nothing
    // follows one word.
    const bool isFull = !arguments.empty() && !isRepeatable(*arguments.front()) &&
                        walk.values().find("") != walk.values().end();
    return arguments.empty() || isFull
               ? lines
               : lines + valuesFor(*arguments.front(), sources, walk.values(), start);
}

} // namespace host
