// SPDX-License-Identifier: MIT
// HelpFormatter: how --help looks, for both programs: usage line, description, arguments, options,
// commands, examples. Wraps at 80 columns. Stateless. [any]

#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace host {

/// Set it before adding commands, which inherit it from their program.
class HelpFormatter final : public CLI::Formatter {
public:
    [[nodiscard]] std::string make_help(const CLI::App* app, std::string name,
                                        CLI::AppFormatMode mode) const override;
};

/// An option's names as typed: "-o", "--output".
[[nodiscard]] std::vector<std::string> namesOf(const CLI::Option& option);

/// What messages call an option: "--output", or the type of a positional argument: "FILE".
[[nodiscard]] std::string titleOf(const CLI::Option& option);

/// The options of a program or a command that are not hidden, in the order of their definition.
[[nodiscard]] std::vector<const CLI::Option*> visibleOptions(const CLI::App& app);

/// The positional arguments, in order.
[[nodiscard]] std::vector<const CLI::Option*> argumentsOf(const CLI::App& app);

/// The commands that are not hidden.
[[nodiscard]] std::vector<const CLI::App*> visibleCommands(const CLI::App& app);

/// Their names.
[[nodiscard]] std::vector<std::string> commandNames(const CLI::App& app);

} // namespace host
