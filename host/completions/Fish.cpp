// SPDX-License-Identifier: MIT

#include "host/completions/CommandTable.h"

#include <CLI/CLI.hpp>

#include <utility>

namespace host {
namespace {

constexpr char kTemplate[] =
    R"sh(# fish completion for magellangps, made from the program's own command table.

function __magellangps_drivers
    @DRIVERS@
end

complete -c magellangps -f
)sh";

std::string fishText(std::string text)
{
    return '\'' + replaced(replaced(std::move(text), "\\", "\\\\"), "'", "\\'") + '\'';
}

std::string fishAction(const Completion& completion)
{
    switch (completion.source) {
    case Source::kFiles:
        return " -r -F";
    case Source::kFolders:
        return " -x -a '(__fish_complete_directories)'";
    case Source::kWords:
        return " -x -a '" + completion.words + '\'';
    case Source::kDrivers:
        return " -x -a '(__magellangps_drivers)'";
    case Source::kNothing:
        break;
    }
    return " -x";
}

std::string fishRows(const CLI::App& app, const std::string& condition)
{
    const std::string head = "complete -c magellangps" + condition;
    std::string rows;
    for (const auto* option : optionsOf(app)) {
        rows += head;
        for (const auto& name : option->get_snames())
            rows += " -s " + name;
        for (const auto& name : option->get_lnames())
            rows += " -l " + name;
        rows += " -d " + fishText(option->get_description()) +
                (takesValue(*option) ? fishAction(completionOf(*option)) : "") + '\n';
    }
    for (const auto* argument : argumentsOf(app)) {
        if (completionOf(*argument).source == Source::kFiles)
            rows += head + " -F\n";
    }
    return rows;
}

} // namespace

std::string fishScript(const CLI::App& app)
{
    auto script = replaced(kTemplate, "@DRIVERS@", kDriverNames) + fishRows(app, "");
    for (const auto* command : commandsOf(app)) {
        const auto& name = command->get_name();
        script += "complete -c magellangps -n __fish_use_subcommand -a " + name + " -d " +
                  fishText(command->get_description()) + '\n' +
                  fishRows(*command, " -n '__fish_seen_subcommand_from " + name + '\'');
    }
    return script;
}

} // namespace host
