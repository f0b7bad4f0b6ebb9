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

/// Gives each widget of a type below another one a name. For the parts of a toolkit's widget, which
/// it does not hand out.
inline void namePartsForReaders(Gtk::Widget& widget, GType type, const char* name)
{
    for (auto* part = widget.get_first_child(); part != nullptr; part = part->get_next_sibling()) {
        if (g_type_is_a(G_OBJECT_TYPE(part->gobj()), type) != FALSE)
            nameForReaders(*part, name);
        namePartsForReaders(*part, type, name);
    }
}

} // namespace host
