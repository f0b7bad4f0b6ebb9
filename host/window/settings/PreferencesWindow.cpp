// SPDX-License-Identifier: MIT
// The window is made when it is needed, and everything that belongs to it goes with it.

#include "host/window/settings/PreferencesWindow.h"

#include "host/window/base/Translation.h"
#include "host/window/settings/PathRow.h"
#include "host/window/settings/SettingRows.h"

#include <memory>
#include <utility>

#include <adwaita.h>

namespace host {
namespace {

constexpr double kMostChosenBackups = 1000; // that somebody would choose here

// Owned by the toolkit's window.
class Preferences {
public:
    Preferences(WindowSettings settings, SettingsChanged changed);

    [[nodiscard]] AdwPreferencesPage* page() const { return page_; }

private:
    void addDisplay();
    void addMap();
    void addFiles();
    [[nodiscard]] AdwPreferencesGroup* addGroup(const char* title);
    void showTileFile();

    // Changes one setting.
    template <typename Value> auto setter(Value WindowSettings::*member)
    {
        return [this, member](const auto& value) {
            settings_.*member = static_cast<Value>(value);
            changed_(settings_);
        };
    }

    WindowSettings settings_;
    SettingsChanged changed_;
    AdwPreferencesPage* page_;
    PathRow tileFile_;
    PathRow folder_;
};

template <typename Widget> GtkWidget* widgetOf(Widget* widget)
{
    return GTK_WIDGET(widget);
}

Preferences::Preferences(WindowSettings settings, SettingsChanged changed)
    : settings_(std::move(settings)), changed_(std::move(changed)),
      page_(ADW_PREFERENCES_PAGE(adw_preferences_page_new())),
      tileFile_(tr("File of Map Tiles"), tr("None chosen; the name ends in .mbtiles"),
                Gtk::FileChooser::Action::OPEN, setter(&WindowSettings::tileFile)),
      folder_(tr("Folder for Downloads"), tr("The desktop's own choice"),
              Gtk::FileChooser::Action::SELECT_FOLDER, setter(&WindowSettings::downloadFolder))
{
    tileFile_.setPath(settings_.tileFile);
    folder_.setPath(settings_.downloadFolder);
    addDisplay();
    addMap();
    addFiles();
}

AdwPreferencesGroup* Preferences::addGroup(const char* title)
{
    auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    adw_preferences_group_set_title(group, title);
    adw_preferences_page_add(page_, group);
    return group;
}

void Preferences::addDisplay()
{
    auto* const group = addGroup(tr("Display"));
    adw_preferences_group_add(
        group,
        widgetOf(newChoiceRow(
            tr("Units"),
            {tr("Kilometres and metres"), tr("Miles and feet"), tr("Nautical miles and metres")},
            static_cast<unsigned>(settings_.units), setter(&WindowSettings::units))));
    adw_preferences_group_add(
        group, widgetOf(newSwitchRow(tr("Times in UTC"),
                                     tr("Otherwise, times are by the clocks of the place"),
                                     settings_.isUtc, setter(&WindowSettings::isUtc))
                            .row));
}

void Preferences::addMap()
{
    auto* const group = addGroup(tr("Map"));
    adw_preferences_group_add(
        group, widgetOf(newChoiceRow(
                   tr("Background"),
                   {tr("Coasts and places"), tr("OpenStreetMap"), tr("File of map tiles")},
                   static_cast<unsigned>(settings_.tiles), [this](unsigned chosen) {
                       setter (&WindowSettings::tiles)(chosen);
                       showTileFile();
                   })));
    adw_preferences_group_add(group, widgetOf(tileFile_.row()));
    showTileFile();
}

void Preferences::showTileFile()
{
    gtk_widget_set_sensitive(widgetOf(tileFile_.row()),
                             settings_.tiles == WindowSettings::Tiles::kFile);
}

void Preferences::addFiles()
{
    auto* const group = addGroup(tr("Files"));
    adw_preferences_group_add(group, widgetOf(folder_.row()));
    adw_preferences_group_add(
        group, widgetOf(newNumberRow(tr("Backups"), tr("How many are kept of each receiver"),
                                     static_cast<double>(settings_.mostBackups), kMostChosenBackups,
                                     setter(&WindowSettings::mostBackups))));
}

} // namespace

void showPreferences(Gtk::Window& window, const WindowSettings& settings, SettingsChanged changed)
{
    auto preferences = std::make_unique<Preferences>(settings, std::move(changed));
    auto* const shown = ADW_PREFERENCES_WINDOW(adw_preferences_window_new());
    adw_preferences_window_add(shown, preferences->page());
    adw_preferences_window_set_search_enabled(shown, FALSE); // there is one page
    gtk_window_set_transient_for(GTK_WINDOW(shown), window.gobj());
    gtk_window_set_modal(GTK_WINDOW(shown), TRUE);
    g_object_set_data_full(G_OBJECT(shown), "preferences", preferences.release(),
                           [](gpointer owned) { delete static_cast<Preferences*>(owned); });
    gtk_window_present(GTK_WINDOW(shown));
}

} // namespace host
