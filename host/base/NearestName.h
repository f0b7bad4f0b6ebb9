// SPDX-License-Identifier: MIT
// Guesses which command, option or key a mistyped word was meant to be. Used by the command lines
// and by checks of files that people write. Stateless. [any]

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The name that is most like a word. Hyphens at the beginning are ignored, so "--export" may be
/// answered with a command, and so is case.
///
/// A name is like a word if the word has at least three letters and begins the name, or if at most
/// three letters, and fewer than half of the name's, were added, left out or changed.
/// @return  empty if no name is
[[nodiscard]] std::string nearestName(std::string_view word, const std::vector<std::string>& names);

} // namespace host
