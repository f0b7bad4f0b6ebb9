// SPDX-License-Identifier: MIT
// The command table as the completion scripts see it. For this room alone. [any]

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace host {

/// A shell command that prints the drivers' names as --driver takes them.
inline constexpr char kDriverNames[] =
    "magellangps info 2>/dev/null | sed -n 's/^Driver: //p' | tr 'A-Z ' 'a-z-'";

/// Where the completions of an argument come from.
enum class Source { kNothing, kFiles, kFolders, kWords, kDrivers };

struct Completion {
    Source source = Source::kNothing;
    std::string words{}; ///< one space between
};

/// What completes an option's value, or a positional argument.
[[nodiscard]] Completion completionOf(const CLI::Option& option);

[[nodiscard]] bool takesValue(const CLI::Option& option);

/// An app's own options and commands without those that the help hides (a command's --help counts
/// as the program's), and its positional arguments.
[[nodiscard]] std::vector<const CLI::Option*> optionsOf(const CLI::App& app);
[[nodiscard]] std::vector<const CLI::Option*> argumentsOf(const CLI::App& app);
[[nodiscard]] std::vector<const CLI::App*> commandsOf(const CLI::App& app);

/// An option's names, as "-o" and "--output".
[[nodiscard]] std::vector<std::string> namesOf(const CLI::Option& option);

/// The names of all options, and of all commands, of an app.
[[nodiscard]] std::vector<std::string> optionNames(const CLI::App& app);
[[nodiscard]] std::vector<std::string> commandNames(const CLI::App& app);

/// The text with each `from` in it replaced.
[[nodiscard]] std::string replaced(std::string text, std::string_view from, std::string_view to);

[[nodiscard]] std::string bashScript(const CLI::App& app);
[[nodiscard]] std::string zshScript(const CLI::App& app);
[[nodiscard]] std::string fishScript(const CLI::App& app);

} // namespace host
