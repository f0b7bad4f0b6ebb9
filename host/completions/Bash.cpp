// SPDX-License-Identifier: MIT

#include "host/base/Text.h"
#include "host/completions/CommandTable.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr char kTemplate[] =
    R"sh(# bash completion for magellangps, made from the program's own command table.

_magellangps_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$word")
}

_magellangps_files()
{
    mapfile -t COMPREPLY < <(compgen "$1" -- "$word")
    compopt -o filenames 2>/dev/null
}

# Completes $word after the option $before; fails where that is none that takes a value.
_magellangps_value()
{
    case $before in
@VALUES@
        *) return 1 ;;
    esac
    return 0
}

_magellangps()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    local globals="@GLOBALS@"
    COMPREPLY=()
    if [[ $word == "=" ]]; then # "--format=gpx" comes as three words
        word=''
    elif [[ $before == "=" ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    _magellangps_value && return
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            @CASES@) command=${COMP_WORDS[i]} && break ;;
        esac
    done
    case $command in
@COMMANDS@
        *) _magellangps_words "$globals @NAMES@" ;;
    esac
}

complete -F _magellangps magellangps
)sh";

std::string bashReply(const Completion& completion)
{
    switch (completion.source) {
    case Source::kFiles:
        return "_magellangps_files -f";
    case Source::kFolders:
        return "_magellangps_files -d";
    case Source::kWords:
        return "_magellangps_words \"" + completion.words + '"';
    case Source::kDrivers:
        return "_magellangps_words \"$(" + std::string{kDriverNames} + ")\"";
    case Source::kNothing:
        break;
    }
    return ":";
}

// The cases that tell what follows an option; an option means the same wherever it is taken.
std::string bashValues(const CLI::App& app)
{
    std::vector<std::string> rows;
    const auto addRows = [&](const CLI::App& table) {
        for (const auto* option : optionsOf(table)) {
            if (takesValue(*option))
                rows.push_back("        " + joined(namesOf(*option), " | ") + ") " +
                               bashReply(completionOf(*option)) + " ;;\n");
        }
    };
    addRows(app);
    for (const auto* command : commandsOf(app))
        addRows(*command);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return joined(rows, "");
}

std::string bashCommands(const CLI::App& app)
{
    std::string rows;
    for (const auto* command : commandsOf(app)) {
        const auto arguments = argumentsOf(*command);
        rows += "        " + command->get_name() + ") " +
                (arguments.empty() ? "" : "[[ $word == -* ]] && ") +
                "_magellangps_words \"$globals " + joined(optionNames(*command), " ") + '"';
        for (const auto* argument : arguments)
            rows += " || " + bashReply(completionOf(*argument));
        rows += " ;;\n";
    }
    return rows;
}

} // namespace

std::string bashScript(const CLI::App& app)
{
    auto script = replaced(kTemplate, "@VALUES@\n", bashValues(app));
    script = replaced(std::move(script), "@GLOBALS@", joined(optionNames(app), " "));
    script = replaced(std::move(script), "@NAMES@", joined(commandNames(app), " "));
    script = replaced(std::move(script), "@CASES@", joined(commandNames(app), " | "));
    return replaced(std::move(script), "@COMMANDS@\n", bashCommands(app));
}

} // namespace host
