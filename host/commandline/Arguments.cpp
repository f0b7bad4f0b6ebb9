// SPDX-License-Identifier: MIT
// CLI11's exceptions say what kind of mistake was made; which option it concerns is looked up in
// the app. Their texts are written for programmers and are not used, except for those that the
// programs' own callbacks throw.

#include "host/commandline/Arguments.h"

#include "host/commandline/HelpFormatter.h"
#include "host/commandline/UnexpectedWord.h"

#include <gps/NumberText.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace host {
namespace {

ParseResult mistake(std::string text)
{
    return {ParseResult::Kind::kMistake, std::move(text)};
}

// The program and, if one was typed, its command.
std::vector<const CLI::App*> tablesOf(const CLI::App& app)
{
    std::vector<const CLI::App*> tables{&app};
    for (const auto* command : app.get_subcommands())
        tables.push_back(command);
    return tables;
}

// If the program and the command have options of the same name, the command's is found.
const CLI::Option* findOption(const CLI::App& app, const std::string& name)
{
    const CLI::Option* found = nullptr;
    for (const auto* table : tablesOf(app)) {
        if (const auto* option = table->get_option_no_throw(name))
            found = option;
    }
    return found;
}

// The first option of the program or the command typed that the predicate accepts.
template <typename Predicate>
const CLI::Option* findIf(const CLI::App& app, const Predicate& predicate)
{
    for (const auto* table : tablesOf(app)) {
        for (const auto* option : table->get_options()) {
            if (predicate(*option))
                return option;
        }
    }
    return nullptr;
}

// A wrong number of values: an option that was repeated, or one at the end without its value. The
// exception does not name the option, so it is derived from the counts and the last word.
std::string wrongCount(const CLI::App& app, const std::string& lastWord)
{
    const auto* const repeated = findIf(app, [](const CLI::Option& option) {
        return option.get_expected_min() > 0 &&
               option.count() > static_cast<std::size_t>(option.get_items_expected_max());
    });
    if (repeated != nullptr)
        return titleOf(*repeated) + " is given more than once";
    const auto* const last = findOption(app, lastWord);
    return last == nullptr
               ? "an option has the wrong number of values; " + helpHint(app)
               : fmt::format("{} needs a value: {}", titleOf(*last), last->get_type_name());
}

std::string describe(const CLI::App& app, const CLI::ParseError& error, const std::string& lastWord)
{
    // First, because an unknown word often causes the other mistakes.
    if (const auto extras = app.remaining(true); !extras.empty())
        return unexpectedWord(app, extras.front());
    if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr)
        return error.what(); // thrown by a callback of ours
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        const auto* const missing = findIf(app, [](const CLI::Option& option) {
            return option.get_required() && option.count() == 0;
        });
        if (missing != nullptr)
            return fmt::format("no {} is given; {}", titleOf(*missing), helpHint(app));
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr)
        return wrongCount(app, lastWord);
    return fmt::format("this command line cannot be understood; {}", helpHint(app));
}

const CLI::Option* findAnywhere(const CLI::App& app, const std::string& name)
{
    const auto* found = app.get_option_no_throw(name);
    for (const auto* command : app.get_subcommands({})) {
        if (found == nullptr)
            found = command->get_option_no_throw(name);
    }
    return found;
}

bool isFlagAnywhere(const CLI::App& app, const std::string& name)
{
    const auto isFlag = [&](const CLI::App& table) {
        const auto* const option = table.get_option_no_throw(name);
        return option != nullptr && option->get_expected_max() == 0;
    };
    const auto commands = app.get_subcommands({});
    return isFlag(app) || std::any_of(commands.begin(), commands.end(),
                                      [&](const auto* command) { return isFlag(*command); });
}

// What is wrong with a word that CLI11 would misunderstand; empty if nothing is. It would take the
// value of "--option=" from the next word, read "--flag=false" as no flag, and "-output" as the
// option "-o" with a value.
std::string wrongOptionWord(const CLI::App& app, std::string_view word)
{
    const auto equals = word.find('=');
    const std::string name{word.substr(0, equals)};
    if (!word.starts_with("--")) {
        const bool hasOneHyphen = name.size() > 2 && name.front() == '-';
        return hasOneHyphen && findAnywhere(app, '-' + name) != nullptr
                   ? fmt::format(R"(unknown option "{0}"; did you mean "-{0}"?)", name)
                   : "";
    }
    if (equals == word.npos || equals < 3)
        return {};
    if (isFlagAnywhere(app, name))
        return name + " takes no value";
    return equals + 1 == word.size() ? name + " has no value after its \"=\"" : "";
}

std::string wrongOptionWord(const CLI::App& app, int argc, const char* const* argv)
{
    for (int i = 1; i < argc && std::string_view{argv[i]} != "--"; ++i) {
        if (auto wrong = wrongOptionWord(app, argv[i]); !wrong.empty())
            return wrong;
    }
    return {};
}

std::string wrongCombination(const std::vector<Exclusion>& exclusions)
{
    const auto isWrong = [](const Exclusion& exclusion) {
        return exclusion.first->count() > 0 && exclusion.second->count() > 0;
    };
    const auto found = std::find_if(exclusions.begin(), exclusions.end(), isWrong);
    if (found == exclusions.end())
        return {};
    return fmt::format("{} and {} cannot be used together", titleOf(*found->first),
                       titleOf(*found->second));
}

} // namespace

ParseResult parseArguments(CLI::App& app, const std::vector<Exclusion>& exclusions, int argc,
                           const char* const* argv)
{
    if (auto wrong = wrongOptionWord(app, argc, argv); !wrong.empty())
        return mistake(std::move(wrong));
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        return {ParseResult::Kind::kAnswer, std::string{version.what()} + '\n'};
    } catch (const CLI::Success&) {
        return {ParseResult::Kind::kAnswer, app.help()};
    } catch (const CLI::ParseError& error) {
        return mistake(describe(app, error, argc > 1 ? argv[argc - 1] : ""));
    }
    if (auto wrong = wrongCombination(exclusions); !wrong.empty())
        return mistake(std::move(wrong));
    return {};
}

std::string helpHint(const CLI::App& app)
{
    std::string command = app.get_name();
    for (const auto* chosen : app.get_subcommands())
        command += ' ' + chosen->get_name();
    return fmt::format("see \"{} --help\"", command);
}

std::int32_t wholeNumber(std::string_view option, const std::string& text, std::int32_t low,
                         std::int32_t high)
{
    const auto number = gps::wholeInteger(text);
    if (!number || *number < low || *number > high)
        throw CLI::ValidationError{
            std::string{option},
            fmt::format("\"{}\" is not a whole number from {} to {}", text, low, high)};
    return static_cast<std::int32_t>(*number);
}

} // namespace host
