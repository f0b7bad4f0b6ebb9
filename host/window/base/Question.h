// SPDX-License-Identifier: MIT
// Question: the one kind of dialog that stops the user: before something is stopped, or replaced.
// [main loop]

#pragma once

#include <functional>

#include <gtkmm.h>

namespace host {

/// The texts of the two answers; an underscore stands before the key.
struct Answers {
    const char* cancel;
    const char* accept;
};

/// Asks, and calls `accepted` if the user wants it. Closing the question means no.
void ask(Gtk::Window& window, const char* question, const char* explanation, const Answers& answers,
         std::function<void()> accepted);

} // namespace host
