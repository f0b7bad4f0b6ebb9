// SPDX-License-Identifier: MIT
// The row's title is the name of its button for those who hear it.

#include "host/window/settings/PathRow.h"

#include "host/base/Text.h"
#include "host/window/base/Translation.h"
#include "host/window/settings/SettingRows.h"

#include <utility>

namespace host {

PathRow::PathRow(const char* title, const char* unset, Gtk::FileChooser::Action action,
                 std::function<void(const std::string& path)> changed)
    : title_(title), unset_(unset), action_(action), changed_(std::move(changed)),
      row_(newActionRow(title))
{
    auto* const button = Gtk::make_managed<Gtk::Button>(tr("Choose…"));
    button->set_valign(Gtk::Align::CENTER);
    button->signal_clicked().connect([this] { choose(); });
    adw_action_row_add_suffix(row_, GTK_WIDGET(button->gobj()));
    adw_action_row_set_activatable_widget(row_, GTK_WIDGET(button->gobj()));
    setPath({});
}

void PathRow::setPath(const std::string& path)
{
    path_ = path;
    adw_action_row_set_subtitle(row_, path.empty() ? unset_ : displayText(path).c_str());
}

void PathRow::choose()
{
    auto* const window =
        dynamic_cast<Gtk::Window*>(Glib::wrap(GTK_WIDGET(gtk_widget_get_root(GTK_WIDGET(row_)))));
    if (window == nullptr)
        return;
    auto& dialog = chooser_.make(title_, *window, action_, [this](const auto& paths) {
        setPath(paths.front());
        changed_(paths.front());
    });
    if (action_ == Gtk::FileChooser::Action::SELECT_FOLDER && !path_.empty())
        dialog.set_current_folder(Gio::File::create_for_path(path_));
    dialog.show();
}

} // namespace host
