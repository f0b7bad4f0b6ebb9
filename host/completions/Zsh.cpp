// SPDX-License-Identifier: MIT

#include "host/base/Text.h"
#include "host/completions/CommandTable.h"

#include <CLI/CLI.hpp>

#include <utility>

namespace host {
namespace {

constexpr char kTemplate[] = R"sh(#compdef magellangps
# zsh completion for magellangps, made from the program's own command table.

_magellangps_drivers()
{
    local -a drivers
    drivers=(${(f)"$(@DRIVERS@)"})
    compadd -a drivers
}

_magellangps()
{
    local curcontext=$curcontext state line
    typeset -A opt_args
    local -a globals commands arguments
    globals=(
@GLOBALS@
    )
    commands=(
@NAMES@
    )
    _arguments -C $globals '1:command:{_describe command commands}' '*::argument:->arguments' && return
    case $line[1] in
@COMMANDS@
        *) return 1 ;;
    esac
    _arguments $globals $arguments
}

_magellangps "$@"
)sh";

std::string zshAction(const CLI::Option& option)
{
    const auto completion = completionOf(option);
    auto head = ':' + option.get_type_name() + ':';
    switch (completion.source) {
    case Source::kFiles:
        return head + "_files";
    case Source::kFolders:
        return head + "_files -/";
    case Source::kWords:
        return head + '(' + completion.words + ')';
    case Source::kDrivers:
        return head + "_magellangps_drivers";
    case Source::kNothing:
        break;
    }
    return head;
}

std::string zshText(std::string text)
{
    for (const char* special : {"[", "]", ":"})
        text = replaced(std::move(text), special, std::string{"\\"}.append(special));
    return replaced(std::move(text), "'", "'\\''"); // leaves the quotes for a moment
}

// What an option is under one of its names. The others are no longer offered then, unless it may be
// repeated.
std::string zshOption(const CLI::Option& option, const std::string& name)
{
    const std::string others =
        option.get_items_expected_max() > 1 ? "*" : '(' + joined(namesOf(option), " ") + ')';
    const std::string text = '[' + zshText(option.get_description()) + ']';
    if (!takesValue(option))
        return others + name + text;
    return others + name + (name.rfind("--", 0) == 0 ? '=' : '+') + text + zshAction(option);
}

std::string zshOptions(const CLI::App& app, const std::string& indent)
{
    std::string rows;
    for (const auto* option : optionsOf(app)) {
        for (const auto& name : namesOf(*option))
            rows += indent + '\'' + zshOption(*option, name) + "'\n";
    }
    return rows;
}

std::string zshCommands(const CLI::App& app)
{
    std::string rows;
    for (const auto* command : commandsOf(app)) {
        rows += "        " + command->get_name() + ")\n            arguments=(\n" +
                zshOptions(*command, "                ");
        for (const auto* argument : argumentsOf(*command))
            rows += "                '*" + zshAction(*argument) + "'\n";
        rows += "            ) ;;\n";
    }
    return rows;
}

} // namespace

std::string zshScript(const CLI::App& app)
{
    std::string names;
    for (const auto* command : commandsOf(app))
        names +=
            "        '" + command->get_name() + ':' + zshText(command->get_description()) + "'\n";
    auto script = replaced(kTemplate, "@DRIVERS@", kDriverNames);
    script = replaced(std::move(script), "@GLOBALS@\n", zshOptions(app, "        "));
    script = replaced(std::move(script), "@NAMES@\n", names);
    return replaced(std::move(script), "@COMMANDS@\n", zshCommands(app));
}

} // namespace host
