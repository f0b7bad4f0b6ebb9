// SPDX-License-Identifier: MIT
// FileDrop: files that are dropped onto a widget. [main loop]

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtkmm.h>

namespace host {

/// Calls a function with the files and folders that the user drops onto a widget. One that is not
/// on this computer has an empty path.
void acceptFiles(Gtk::Widget& widget,
                 std::function<void(const std::vector<std::string>& paths)> dropped);

} // namespace host
