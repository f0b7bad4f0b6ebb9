// SPDX-License-Identifier: MIT
// Names of widgets for those who hear them instead of seeing them. [main loop]

#pragma once

#include <gtkmm.h>

namespace host {

/// Gives a widget without a text of its own a name.
inline void nameForReaders(Gtk::Widget& widget, const char* name)
{
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   name, -1);
}

} // namespace host
