// SPDX-License-Identifier: MIT
// The C++ binding has no class for the list of files.

#include "host/window/base/FileDrop.h"

#include <utility>

namespace host {
namespace {

using Dropped = std::function<void(const std::vector<std::string>& paths)>;

std::vector<std::string> pathsIn(const GValue* value)
{
    std::vector<std::string> paths;
    auto* const files =
        gdk_file_list_get_files(static_cast<GdkFileList*>(g_value_get_boxed(value)));
    for (auto* file = files; file != nullptr; file = file->next) {
        const Glib::RefPtr<Gio::File> wrapped = Glib::wrap(G_FILE(file->data), true);
        paths.push_back(wrapped->get_path());
    }
    g_slist_free(files);
    return paths;
}

gboolean onDrop(GtkDropTarget* /*target*/, const GValue* value, double /*x*/, double /*y*/,
                Dropped* dropped)
{
    (*dropped)(pathsIn(value));
    return TRUE;
}

} // namespace

void acceptFiles(Gtk::Widget& widget, Dropped dropped)
{
    auto* const target = gtk_drop_target_new(GDK_TYPE_FILE_LIST, GDK_ACTION_COPY);
    g_signal_connect_data(
        target, "drop", G_CALLBACK(onDrop), new Dropped{std::move(dropped)},
        [](gpointer data, GClosure*) { delete static_cast<Dropped*>(data); }, GConnectFlags{});
    gtk_widget_add_controller(widget.gobj(), GTK_EVENT_CONTROLLER(target));
}

} // namespace host
