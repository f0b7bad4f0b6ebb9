// SPDX-License-Identifier: MIT
// The library's own window for this.

#include "host/window/About.h"

#include "host/window/base/Translation.h"

#include <adwaita.h>

namespace host {

const char* const kWindowVersion = WINDOW_VERSION;

void showAbout(Gtk::Window& window)
{
    adw_show_about_window(
        window.gobj(), "application-name", "Magellan GPS", "version", kWindowVersion, "comments",
        tr("Gets tracks, waypoints, routes and geocaches off Magellan GPS receivers, and back onto "
           "them."),
        "license-type", GTK_LICENSE_MIT_X11, "application-icon", kApplicationId, nullptr);
}

} // namespace host
