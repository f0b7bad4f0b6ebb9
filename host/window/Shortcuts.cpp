// SPDX-License-Identifier: MIT
// One table for the keys and for the window that lists them.

#include "host/window/Shortcuts.h"

#include "host/window/base/Translation.h"

#include <array>
#include <string>
#include <string_view>

namespace host {
namespace {

struct Shortcut {
    const char* keys;
    const char* action; ///< with its group
    const char* title;
};

constexpr std::array kShortcuts{
    Shortcut{"<Control>d", "win.download", marked("Download")},
    Shortcut{"<Control>o", "win.import", marked("Import files")},
    Shortcut{"<Control><Shift>o", "win.open-folder", marked("Open a copy of a receiver")},
    Shortcut{"<Control>s", "win.export", marked("Export the ticked records")},
    Shortcut{"<Control>f", "win.search", marked("Search the records")},
    Shortcut{"<Control>1", "win.page::records", marked("Show the records")},
    Shortcut{"<Control>2", "win.page::send", marked("Show what would be sent")},
    Shortcut{"<Control>3", "win.page::backups", marked("Show the backups")},
    Shortcut{"<Control>4", "win.page::saving", marked("Show what is saved")},
    Shortcut{"<Control>comma", "win.preferences", marked("Preferences")},
    Shortcut{"<Control>question", "win.shortcuts", marked("Show keyboard shortcuts")},
    Shortcut{"F10", "", marked("Open the menu")},
    Shortcut{"<Control>q", "app.quit", marked("Quit")},
};

std::string escaped(const char* text)
{
    const Glib::ustring escaped = Glib::Markup::escape_text(text);
    return escaped.raw();
}

std::string shortcutMarkup(const Shortcut& shortcut)
{
    return "<child><object class='GtkShortcutsShortcut'><property name='accelerator'>" +
           escaped(shortcut.keys) + "</property><property name='title'>" +
           escaped(tr(shortcut.title)) + "</property></object></child>";
}

} // namespace

void addShortcuts(Gtk::Application& application)
{
    for (const auto& shortcut : kShortcuts) {
        if (!std::string_view{shortcut.action}.empty())
            application.set_accel_for_action(shortcut.action, shortcut.keys);
    }
}

// This version of the toolkit has no functions to fill such a window. It is made when it is needed:
// a screen reader that looks into a hidden one ends the program, because of a fault of the toolkit.
void showShortcuts(Gtk::Window& window)
{
    std::string markup = "<interface><object class='GtkShortcutsWindow' id='shortcuts'>"
                         "<property name='modal'>1</property>"
                         "<child><object class='GtkShortcutsSection'>"
                         "<child><object class='GtkShortcutsGroup'>";
    for (const auto& shortcut : kShortcuts)
        markup += shortcutMarkup(shortcut);
    markup += "</object></child></object></child></object></interface>";
    const auto builder = Gtk::Builder::create_from_string(markup);
    auto* const shortcuts = builder->get_widget<Gtk::ShortcutsWindow>("shortcuts");
    shortcuts->set_transient_for(window);
    shortcuts->present();
}

} // namespace host
