// SPDX-License-Identifier: MIT
// About: what the program is, its version and its licence. [main loop]

#pragma once

#include <gtkmm.h>

namespace host {

/// Identifies the program on the desktop: its bus name, its icon and its entry in menus.
inline constexpr const char* kApplicationId = "com.orvane.MagellanGPS";

extern const char* const kWindowVersion;

void showAbout(Gtk::Window& window);

} // namespace host
