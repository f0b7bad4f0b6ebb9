// SPDX-License-Identifier: MIT
// DriverView: draws the controls of a driver's view, and reports what the user does with them.
// [main loop]

#pragma once

#include "host/window/devices/ReceiverState.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <gtkmm.h>

namespace host {

class DriverView : public Gtk::Box {
public:
    struct Handlers {
        std::function<void(const std::string& control, std::size_t item)> picked;
        std::function<void(const std::string& control)> pressed;
    };

    explicit DriverView(Handlers handlers);

    /// Draws other controls. Keeps the present ones if they are the same.
    void setControls(const std::vector<ControlState>& controls);

private:
    void addMenu(const ControlState& control);
    void addButton(const ControlState& control);

    Handlers handlers_;
    std::vector<ControlState> controls_;
};

} // namespace host
