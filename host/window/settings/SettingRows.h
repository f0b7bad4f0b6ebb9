// SPDX-License-Identifier: MIT
// Rows of settings, for the preferences and for pages that have some of their own. Their texts are
// text, never markup. [main loop]

#pragma once

#include <functional>
#include <initializer_list>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

/// @param subtitle  may be null
[[nodiscard]] AdwActionRow* newActionRow(const char* title, const char* subtitle = nullptr);

/// A row with a switch.
struct SwitchRow {
    AdwActionRow* row;
    Gtk::Switch* control;
};

/// @param toggled  gets whether the switch is on, after it has changed
[[nodiscard]] SwitchRow newSwitchRow(const char* title, const char* subtitle, bool isOn,
                                     std::function<void(bool isOn)> toggled);

/// A row with a number.
/// @param changed  gets the number after the user has changed it
[[nodiscard]] AdwActionRow* newNumberRow(const char* title, const char* subtitle, double number,
                                         double most, std::function<void(double number)> changed);

/// A row with a choice.
/// @param changed  gets the index of the text that the user has chosen
[[nodiscard]] AdwComboRow* newChoiceRow(const char* title, std::initializer_list<const char*> texts,
                                        unsigned chosen,
                                        std::function<void(unsigned chosen)> changed);

} // namespace host
