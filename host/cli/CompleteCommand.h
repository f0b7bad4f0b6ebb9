// SPDX-License-Identifier: MIT
// The hidden command `__complete`, with which the shells' completion scripts ask what can follow on
// a command line. Loads the plug-in only for words that depend on it: drivers, devices, backups and
// the extensions of sentence files. [host thread]

#pragma once

#include <string>
#include <vector>

namespace host {

/// Completes the last word; see host/commandline/Completion.h for the form of the answers.
/// Reports no errors: what cannot be found out is missing from the answers.
/// @param words  those after the program's name; the last one may be empty
[[nodiscard]] std::string completionsFor(const std::vector<std::string>& words);

} // namespace host
