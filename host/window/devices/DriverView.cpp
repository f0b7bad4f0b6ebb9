// SPDX-License-Identifier: MIT
// The driver decides what is shown: after each action it is asked again.

#include "host/window/devices/DriverView.h"

#include "host/base/Text.h"
#include "host/window/base/Accessible.h"

#include <utility>

namespace host {

DriverView::DriverView(Handlers handlers)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 6), handlers_(std::move(handlers))
{}

void DriverView::setControls(const std::vector<ControlState>& controls)
{
    if (controls == controls_)
        return;
    controls_ = controls;
    while (auto* const child = get_first_child())
        remove(*child);
    for (const auto& control : controls_) {
        if (control.kind == ControlState::Kind::kMenu)
            addMenu(control);
        else
            addButton(control);
    }
}

void DriverView::addMenu(const ControlState& control)
{
    std::vector<Glib::ustring> items;
    for (const auto& item : control.items)
        items.emplace_back(displayText(item));
    auto* const menu = Gtk::make_managed<Gtk::DropDown>(items);
    menu->set_selected(control.selected ? static_cast<guint>(*control.selected)
                                        : GTK_INVALID_LIST_POSITION);
    nameForReaders(*menu, control.title.c_str());
    menu->property_selected().signal_changed().connect(
        [this, menu, identifier = control.identifier] {
            if (menu->get_selected() != GTK_INVALID_LIST_POSITION)
                handlers_.picked(identifier, menu->get_selected());
        });
    append(*menu);
}

void DriverView::addButton(const ControlState& control)
{
    auto* const button = Gtk::make_managed<Gtk::Button>(displayText(control.title));
    button->signal_clicked().connect(
        [this, identifier = control.identifier] { handlers_.pressed(identifier); });
    append(*button);
}

} // namespace host
