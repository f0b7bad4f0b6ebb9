// SPDX-License-Identifier: MIT
// Words that the parser could not use: what they are, and what the user may have meant. Stateless.
// [host thread]

#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
} // namespace CLI

namespace host {

/// The command that a mistyped word, or the word of another program, may mean; empty if none.
[[nodiscard]] std::string guessedCommand(std::string_view word, const CLI::App& app);

/// The message for such a word: one sentence, without a line end. It says that an option belongs to
/// another command or after its command, guesses a mistyped name, or lists the commands.
/// @param app   has parsed the command line
/// @param word  an option, a command or an argument
[[nodiscard]] std::string unexpectedWord(const CLI::App& app, const std::string& word);

} // namespace host
