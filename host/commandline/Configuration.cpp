// SPDX-License-Identifier: MIT
// CLI11 has a reader of its own, but it takes any text for a configuration and knows no lines.

#include "host/commandline/Configuration.h"

#include "host/base/NearestName.h"
#include "host/commandline/HelpFormatter.h"
#include "host/commandline/WindowTable.h"

#include <platform/System/FileManager.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {
namespace {

std::string mistakeAt(const Configuration& configuration, std::uint32_t line, std::string_view what)
{
    return fmt::format("{}, line {}: {}; correct the file, or {}", configuration.path, line, what,
                       configuration.escape);
}

// The text of a number, a date or a time as it is written in the file.
template <typename T> std::string textOf(const T& value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

// The text of a single value; nullopt for a boolean, an array or a table.
std::optional<std::string> textOf(const toml::node& node)
{
    if (const auto* const text = node.as_string())
        return text->get();
    if (const auto* const number = node.as_integer())
        return std::to_string(number->get());
    if (const auto* const number = node.as_floating_point())
        return fmt::format("{}", number->get());
    if (const auto* const date = node.as_date())
        return textOf(date->get());
    if (const auto* const time = node.as_date_time())
        return textOf(time->get());
    return std::nullopt;
}

// @return  whether the node can be the value of an option
bool readValue(const toml::node& node, ConfiguredOption& option)
{
    if (const auto* const flag = node.as_boolean()) {
        option.value = flag->get();
        return true;
    }
    std::vector<std::string> values;
    const auto* const array = node.as_array();
    if (array == nullptr) {
        if (const auto text = textOf(node))
            values.push_back(*text);
    } else {
        for (const auto& element : *array) {
            const auto text = textOf(element);
            if (!text)
                return false;
            values.push_back(*text);
        }
    }
    const bool isRead = array != nullptr || !values.empty();
    option.value = std::move(values);
    return isRead;
}

std::string readTable(const toml::table& table, const std::string& command,
                      Configuration& configuration)
{
    for (const auto& [key, node] : table) {
        const auto line = key.source().begin.line;
        const std::string name{key.str()};
        if (const auto* const inner = node.as_table(); inner != nullptr && command.empty()) {
            if (name == kWindowTable) {
                if (const auto wrong = findWindowMistake(*inner))
                    configuration.windowMistake =
                        mistakeAt(configuration, wrong->line, wrong->what);
                continue;
            }
            if (auto mistake = readTable(*inner, name, configuration); !mistake.empty())
                return mistake;
            if (inner->empty()) // its name is checked, too
                configuration.options.push_back({name, {}, false, line});
            continue;
        }
        ConfiguredOption option{command, name, false, line};
        if (!readValue(node, option))
            return mistakeAt(configuration, line,
                             fmt::format("\"{}\" needs a text, a number, a date, true or false, or "
                                         "a list of these",
                                         name));
        configuration.options.push_back(std::move(option));
    }
    return {};
}

CLI::App* commandNamed(CLI::App& app, const std::string& name)
{
    const auto commands =
        app.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
    return commands.empty() ? nullptr : commands.front();
}

// Whether an option only makes sense where it is typed.
bool isTypedOnly(std::string_view name)
{
    constexpr std::array<std::string_view, 4> kTypedOnly{"help", "version", "config", "no-config"};
    return std::find(kTypedOnly.begin(), kTypedOnly.end(), name) != kTypedOnly.end();
}

// An option that a configuration can have: neither an argument nor an option for typing only.
CLI::Option* optionIn(CLI::App& table, const std::string& name)
{
    if (isTypedOnly(name))
        return nullptr;
    auto* const option = table.get_option_no_throw("--" + name);
    return option == nullptr || option->get_positional() ? nullptr : option;
}

void addNames(const CLI::App& table, std::vector<std::string>& names)
{
    for (const auto* option : visibleOptions(table)) {
        const auto& own = option->get_lnames();
        std::remove_copy_if(own.begin(), own.end(), std::back_inserter(names), isTypedOnly);
    }
}

std::vector<CLI::App*> tablesFor(const ConfiguredOption& option, CLI::App& app)
{
    if (option.command.empty()) {
        auto tables = app.get_subcommands([](const CLI::App*) { return true; });
        tables.insert(tables.begin(), &app);
        return tables;
    }
    auto* const command = commandNamed(app, option.command);
    return command != nullptr ? std::vector{command, &app} : std::vector<CLI::App*>{};
}

std::vector<CLI::Option*> optionsFor(const ConfiguredOption& option, CLI::App& app)
{
    std::vector<CLI::Option*> options;
    for (auto* const table : tablesFor(option, app)) {
        if (auto* const found = optionIn(*table, option.name))
            options.push_back(found);
    }
    return options;
}

std::string guessText(const std::string& name, const std::vector<std::string>& names)
{
    const auto guess = nearestName(name, names);
    return guess.empty() ? "" : fmt::format(", did you mean \"{}\"?", guess);
}

std::string unknownText(const ConfiguredOption& option, CLI::App& app)
{
    std::vector<std::string> names;
    if (!option.command.empty() && commandNamed(app, option.command) == nullptr) {
        for (const auto* command : visibleCommands(app))
            names.push_back(command->get_name());
        return fmt::format("there is no command \"{}\"{}", option.command,
                           guessText(option.command, names));
    }
    if (isTypedOnly(option.name))
        return fmt::format("\"{}\" can be typed only, and has no place in a configuration file",
                           option.name);
    for (const auto* table : tablesFor(option, app))
        addNames(*table, names);
    return fmt::format("there is no option \"{}\"{}{}", option.name,
                       option.command.empty() ? "" : " of " + option.command,
                       guessText(option.name, names));
}

bool isFlag(const CLI::Option& option)
{
    return option.get_expected_max() == 0;
}

// What is wrong with the form of a value; empty if nothing is.
std::string wrongForm(const CLI::Option& option, const ConfiguredOption& configured)
{
    const auto* const values = std::get_if<std::vector<std::string>>(&configured.value);
    if (isFlag(option))
        return values != nullptr ? fmt::format("\"{}\" needs true or false", configured.name) : "";
    if (values == nullptr)
        return fmt::format("\"{}\" needs a value: {}", configured.name, option.get_type_name());
    if (values->size() > static_cast<std::size_t>(option.get_items_expected_max()))
        return fmt::format("\"{}\" has one value, not a list", configured.name);
    return {};
}

// A flag that is false and an empty list are as good as no key.
bool isSetting(const ConfiguredOption& configured)
{
    const auto* const values = std::get_if<std::vector<std::string>>(&configured.value);
    return values != nullptr ? !values->empty() : std::get<bool>(configured.value);
}

void set(CLI::Option& option, const ConfiguredOption& configured)
{
    if (!isSetting(configured))
        return;
    if (const auto* const values = std::get_if<std::vector<std::string>>(&configured.value))
        option.add_result(*values);
    else
        option.add_result("true");
    option.run_callback();
}

std::string checkValue(const ConfiguredOption& configured, CLI::App& app)
{
    const auto options = optionsFor(configured, app);
    if (options.empty())
        return unknownText(configured, app);
    for (auto* const option : options) {
        if (auto wrong = wrongForm(*option, configured); !wrong.empty())
            return wrong;
        try {
            option->clear();
            set(*option, configured);
        } catch (const CLI::ParseError& error) {
            return error.what();
        }
    }
    return {};
}

bool isOf(const CLI::Option* option, const std::vector<CLI::Option*>& options)
{
    return std::find(options.begin(), options.end(), option) != options.end();
}

// The option of the same table that an option cannot be used together with; empty if there is none.
std::string rivalOf(const ConfiguredOption& configured, const Configuration& configuration,
                    CLI::App& app, const std::vector<Exclusion>& exclusions)
{
    const auto own = optionsFor(configured, app);
    for (const auto& other : configuration.options) {
        if (other.command != configured.command || &other == &configured || !isSetting(other) ||
            !isSetting(configured))
            continue;
        const auto others = optionsFor(other, app);
        for (const auto& [first, second] : exclusions) {
            if ((isOf(first, own) && isOf(second, others)) ||
                (isOf(second, own) && isOf(first, others)))
                return other.name;
        }
    }
    return {};
}

// Whether an option excludes one that was typed or is among these.
bool isExcluded(const CLI::Option* option, const std::vector<const CLI::Option*>& chosen,
                const std::vector<Exclusion>& exclusions)
{
    const auto isChosen = [&](const CLI::Option* other) {
        return other->count() > 0 || std::find(chosen.begin(), chosen.end(), other) != chosen.end();
    };
    return std::any_of(exclusions.begin(), exclusions.end(), [&](const Exclusion& exclusion) {
        return (exclusion.first == option && isChosen(exclusion.second)) ||
               (exclusion.second == option && isChosen(exclusion.first));
    });
}

// The option of the chosen command or of the program; null if the key is about another command.
CLI::Option* chosenOption(const ConfiguredOption& configured, CLI::App& app)
{
    auto* const command = app.get_subcommands().front();
    if (!configured.command.empty() && configured.command != command->get_name())
        return nullptr;
    auto* const own = optionIn(*command, configured.name);
    return own != nullptr ? own : optionIn(app, configured.name);
}

} // namespace

std::string readConfiguration(Configuration& configuration)
{
    std::string text;
    std::error_code error;
    const auto kind = std::filesystem::status(configuration.path, error).type();
    if (std::filesystem::canonical(configuration.path, error) == "/dev/null")
        return {}; // the usual name of a file with nothing in it
    if (kind == std::filesystem::file_type::fifo || kind == std::filesystem::file_type::character)
        return fmt::format("{} is a pipe or a device, not a file; name a file, or {}",
                           configuration.path, configuration.escape);
    if (const auto failure = gps::FileManager{}.readFile(configuration.path, text)) {
        const auto* const reason = failure->userInfo().findString(gps::kErrorReasonKey);
        return fmt::format("{} cannot be read{}; check its path and permissions, or {}",
                           configuration.path, reason != nullptr ? " (" + *reason + ')' : "",
                           configuration.escape);
    }
    const auto result = toml::parse(text);
    if (!result)
        return mistakeAt(
            configuration, result.error().source().begin.line,
            fmt::format(R"(this is not TOML, whose lines are like format = "gpx" ({}))",
                        result.error().description()));
    if (auto mistake = readTable(result.table(), {}, configuration); !mistake.empty())
        return mistake;
    // The library sorts keys by their names.
    std::stable_sort(
        configuration.options.begin(), configuration.options.end(),
        [](const ConfiguredOption& a, const ConfiguredOption& b) { return a.line < b.line; });
    return {};
}

std::string checkConfiguration(const Configuration& configuration, CLI::App& app,
                               const std::vector<Exclusion>& exclusions,
                               const std::function<std::string(const ConfiguredOption&)>& check)
{
    for (const auto& configured : configuration.options) {
        const bool isEmptyTable = configured.name.empty() && !configured.command.empty();
        if (isEmptyTable && commandNamed(app, configured.command) != nullptr)
            continue;
        for (const auto& wrong : {checkValue(configured, app), check(configured)}) {
            if (!wrong.empty())
                return mistakeAt(configuration, configured.line, wrong);
        }
        if (const auto rival = rivalOf(configured, configuration, app, exclusions); !rival.empty())
            return mistakeAt(
                configuration, configured.line,
                fmt::format(R"("{}" and "{}" cannot be used together)", configured.name, rival));
    }
    return {};
}

std::vector<const ConfiguredOption*> applicableDefaults(const Configuration& configuration,
                                                        CLI::App& app,
                                                        const std::vector<Exclusion>& exclusions)
{
    std::vector<const ConfiguredOption*> defaults;
    std::vector<const CLI::Option*> decided; // by a key that comes before
    std::vector<const CLI::Option*> chosen;
    for (const bool isInTable : {true, false}) {
        for (const auto& configured : configuration.options) {
            auto* const option =
                configured.command.empty() != isInTable ? chosenOption(configured, app) : nullptr;
            if (option == nullptr || option->count() > 0 ||
                std::find(decided.begin(), decided.end(), option) != decided.end())
                continue;
            decided.push_back(option);
            if (!isSetting(configured) || isExcluded(option, chosen, exclusions))
                continue;
            chosen.push_back(option);
            defaults.push_back(&configured);
        }
    }
    return defaults;
}

void setDefault(CLI::App& app, const ConfiguredOption& option)
{
    auto* const chosen = chosenOption(option, app);
    chosen->clear();
    set(*chosen, option);
}

} // namespace host
