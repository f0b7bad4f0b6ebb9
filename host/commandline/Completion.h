// SPDX-License-Identifier: MIT
// Completion: what can follow on a command line that is being typed. The shells' completion scripts
// ask the program, by its hidden command `__complete -- WORD...`, and get one line per answer:
//
//     WORD             a word that can replace the last one
//     WORD<tab>TEXT    the same, with a description
//     :files           the names of files and folders, which the shell completes itself
//     :files EXT...    those of folders, and of files with one of these extensions
//     :folders         those of folders
//
// Stateless. [host thread]

#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace host {

/// The first argument that asks for completions.
inline constexpr char kCompleteCommand[] = "__complete";

/// The values typed before the word to complete: by option name ("--device"), or under "" for
/// positional arguments.
using TypedValues = std::map<std::string, std::vector<std::string>, std::less<>>;

/// Answers, as above, for an option's value. They need not begin with what was typed.
using ValueSource = std::function<std::vector<std::string>(const TypedValues& typed)>;

/// Where the values of options and arguments come from. An option that is missing here completes
/// to files if its type is FILE, to folders if it is DIR, and to nothing otherwise.
using ValueSources = std::map<const CLI::Option*, ValueSource>;

/// A source of these words, or of these directives.
[[nodiscard]] ValueSource wordSource(std::vector<std::string> words);

/// The words that `__complete` was given: what follows it and an optional "--".
[[nodiscard]] std::vector<std::string> wordsToComplete(int argc, const char* const* argv);

/// Completes the last word. The app need not have parsed anything.
/// @param words  those after the program's name; the last one may be empty
/// @return       the answers, each with a line end
[[nodiscard]] std::string completionsOf(const CLI::App& app, const ValueSources& sources,
                                        const std::vector<std::string>& words);

} // namespace host
