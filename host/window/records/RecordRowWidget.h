// SPDX-License-Identifier: MIT
// RecordRowWidget: the widgets of one row of the list of records. The list uses them for one record
// after another. [main loop]

#pragma once

#include "host/window/map/LineColor.h"

#include <functional>
#include <optional>
#include <string>

#include <gtkmm.h>

namespace host {

class RecordRowWidget : public Gtk::Box {
public:
    /// How a record looks in the list.
    struct Look {
        std::string name;
        std::string detail;
        const char* icon = ""; ///< of a point; not shown if there is a line
        std::optional<LineColor> line{};
        bool isDashed = false;
    };

    RecordRowWidget();

    /// @param toggled  the user has ticked or unticked it
    void show(const Look& look, bool isTicked, std::function<void(bool isTicked)> toggled);

    /// The record is not there any more: its box does nothing.
    void disarm() { toggled_ = {}; }

    /// Does what a click on the box does.
    void toggle() { box_.set_active(!box_.get_active()); }

private:
    void setTicked(bool isTicked);
    void drawLine(const Cairo::RefPtr<Cairo::Context>& cairo, int width, int height) const;

    Gtk::CheckButton box_;
    Gtk::Image icon_;
    Gtk::DrawingArea line_;
    Gtk::Label name_;
    Gtk::Label detail_;
    std::optional<LineColor> color_;
    bool isDashed_ = false;
    std::function<void(bool isTicked)> toggled_; // empty while something else sets the box
};

} // namespace host
