// SPDX-License-Identifier: MIT
// Shortcuts: the keys of the window's actions, and the window that lists them. [main loop]

#pragma once

#include <gtkmm.h>

namespace host {

/// Connects the keys to the actions.
void addShortcuts(Gtk::Application& application);

/// Opens the window that lists them.
void showShortcuts(Gtk::Window& window);

} // namespace host
