// SPDX-License-Identifier: MIT
// The action "win.map-source": which map is below the records. Its state is the one that is shown:
// "none", "openstreetmap" or "file". [main loop]

#pragma once

#include "host/window/map/TrackMap.h"

#include <functional>
#include <string>

#include <gtkmm.h>

namespace host {

using PathChosen = std::function<void(const std::string& path)>;

/// Adds the action to a window. Both must outlive what the map does.
/// @param chooseFile  asks the user for an .mbtiles file
void addMapSourceAction(Gtk::ApplicationWindow& window, TrackMap& map,
                        std::function<void(PathChosen chosen)> chooseFile);

/// A menu with the choices of that action.
[[nodiscard]] Glib::RefPtr<Gio::Menu> mapSourceMenu();

} // namespace host
