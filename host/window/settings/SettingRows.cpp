// SPDX-License-Identifier: MIT
// The C++ binding has no classes for this library's rows.

#include "host/window/settings/SettingRows.h"

#include <memory>
#include <utility>

namespace host {
namespace {

using Chosen = std::function<void(unsigned chosen)>;

// The row's title is the name of its control for those who hear it.
void addControl(AdwActionRow* row, Gtk::Widget& control)
{
    control.set_valign(Gtk::Align::CENTER);
    adw_action_row_add_suffix(row, control.gobj());
    adw_action_row_set_activatable_widget(row, control.gobj());
}

} // namespace

AdwActionRow* newActionRow(const char* title, const char* subtitle)
{
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title);
    if (subtitle != nullptr)
        adw_action_row_set_subtitle(row, subtitle);
    return row;
}

SwitchRow newSwitchRow(const char* title, const char* subtitle, bool isOn,
                       std::function<void(bool isOn)> toggled)
{
    auto* const row = newActionRow(title, subtitle);
    auto* const control = Gtk::make_managed<Gtk::Switch>();
    control->set_active(isOn);
    control->property_active().signal_changed().connect(
        [control, toggled = std::move(toggled)] { toggled(control->get_active()); });
    addControl(row, *control);
    return {row, control};
}

AdwActionRow* newNumberRow(const char* title, const char* subtitle, double number, double most,
                           std::function<void(double number)> changed)
{
    auto* const row = newActionRow(title, subtitle);
    auto* const control = Gtk::make_managed<Gtk::SpinButton>();
    control->set_range(1, most);
    control->set_increments(1, 10);
    control->set_value(number);
    control->signal_value_changed().connect(
        [control, changed = std::move(changed)] { changed(control->get_value()); });
    addControl(row, *control);
    return row;
}

AdwComboRow* newChoiceRow(const char* title, std::initializer_list<const char*> texts,
                          unsigned chosen, Chosen changed)
{
    auto* const row = ADW_COMBO_ROW(adw_combo_row_new());
    adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title);
    auto* const list = gtk_string_list_new(nullptr);
    for (const auto* const text : texts)
        gtk_string_list_append(list, text);
    adw_combo_row_set_model(row, G_LIST_MODEL(list));
    g_object_unref(list);
    adw_combo_row_set_selected(row, chosen);
    g_signal_connect_data(
        row, "notify::selected", G_CALLBACK(+[](AdwComboRow* self, GParamSpec*, Chosen* call) {
            (*call)(adw_combo_row_get_selected(self));
        }),
        std::make_unique<Chosen>(std::move(changed)).release(),
        [](gpointer call, GClosure*) { delete static_cast<Chosen*>(call); }, GConnectFlags{});
    return row;
}

} // namespace host
