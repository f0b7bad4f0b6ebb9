// SPDX-License-Identifier: MIT
// PathChooser: the desktop's own dialog for files and folders; one at a time. [main loop]

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtkmm.h>

namespace host {

class PathChooser {
public:
    using Chosen = std::function<void(const std::vector<std::string>& paths)>;

    /// Makes a dialog, which the caller may change before it shows it.
    /// @param chosen  gets at least one path; not called if the user gives up
    Gtk::FileChooserNative& make(const char* title, Gtk::Window& window,
                                 Gtk::FileChooser::Action action, Chosen chosen);

private:
    Glib::RefPtr<Gtk::FileChooserNative> dialog_; // while it is open
};

} // namespace host
