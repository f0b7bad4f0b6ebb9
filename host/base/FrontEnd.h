// SPDX-License-Identifier: MIT
// FrontEnd: which program this library runs in. Messages are the same in all of them, but what to
// do next is an option or a command in a terminal, and a button or a menu in a window.

#pragma once

#include <string>
#include <string_view>

namespace host {

enum class FrontEnd { kTerminal, kWindow };

/// Precondition: no other thread runs yet. Without a call it is the terminal.
void setFrontEnd(FrontEnd frontEnd) noexcept;

/// The advice for the program that is running. [any]
[[nodiscard]] std::string advice(std::string_view inTerminal, std::string_view inWindow);

} // namespace host
