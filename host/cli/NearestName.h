// SPDX-License-Identifier: MIT
// The name that was meant where one was mistyped. Stateless.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The name that a word is most like: at most three letters added, left out or changed, and less
/// than half of the name.
/// @return  empty where no name is so near
[[nodiscard]] std::string nearestName(std::string_view word, const std::vector<std::string>& names);

} // namespace host
