// SPDX-License-Identifier: MIT
// PreferencesWindow: where the user changes the settings; each change counts at once. [main loop]

#pragma once

#include "host/window/settings/WindowSettings.h"

#include <functional>

#include <gtkmm.h>

namespace host {

using SettingsChanged = std::function<void(const WindowSettings& settings)>;

/// Shows the preferences until the user closes them.
void showPreferences(Gtk::Window& window, const WindowSettings& settings, SettingsChanged changed);

} // namespace host
