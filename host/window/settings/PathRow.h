// SPDX-License-Identifier: MIT
// PathRow: a row of settings that shows a path, with a button to choose another one. [main loop]

#pragma once

#include "host/window/base/PathChooser.h"

#include <functional>
#include <string>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

class PathRow {
public:
    /// @param title    of the row, and of the dialog
    /// @param unset    what is shown without a path
    /// @param changed  gets the path that the user has chosen
    PathRow(const char* title, const char* unset, Gtk::FileChooser::Action action,
            std::function<void(const std::string& path)> changed);

    /// The widget. Owned by whatever it is put into.
    [[nodiscard]] AdwActionRow* row() const noexcept { return row_; }

    void setPath(const std::string& path);

    /// Shows the dialog, as the button does.
    void choose();

private:
    const char* title_;
    const char* unset_;
    Gtk::FileChooser::Action action_;
    std::function<void(const std::string& path)> changed_;
    std::string path_;
    PathChooser chooser_;
    AdwActionRow* row_;
};

} // namespace host
