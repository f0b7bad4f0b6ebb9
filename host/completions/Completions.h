// SPDX-License-Identifier: MIT
// Scripts that complete the command line in a shell, made from the table that it is parsed with.
// [any]

#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
} // namespace CLI

namespace host {

/// The script that completes the app's commands, options and arguments.
///
/// An option's or argument's type name tells what completes it: FILE, LOCATION and BACKUP files,
/// DIR and BUNDLE folders, FORMAT the output formats, NAME the plug-in's drivers, "this|that|OTHER"
/// the words in lower case; any other nothing. What is hidden in the help is hidden here, too.
/// Precondition: the shell is "bash", "zsh" or "fish".
[[nodiscard]] std::string completionScript(const CLI::App& app, std::string_view shell);

} // namespace host
