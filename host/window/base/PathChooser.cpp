// SPDX-License-Identifier: MIT
// The dialog is destroyed before anything else happens: a screen reader that asks for one that is
// only hidden ends the program, because of a fault of the toolkit.

#include "host/window/base/PathChooser.h"

#include "host/window/base/MainLoop.h"

#include <utility>

namespace host {
namespace {

// The C++ binding has no class for the items of the list.
std::vector<std::string> pathsOf(Gtk::FileChooser& chooser)
{
    std::vector<std::string> paths;
    const auto files = chooser.get_files();
    for (guint i = 0; i < files->get_n_items(); ++i) {
        auto* const item = g_list_model_get_item(files->gobj(), i);
        paths.push_back(Glib::wrap(G_FILE(item))->get_path());
    }
    return paths;
}

} // namespace

Gtk::FileChooserNative& PathChooser::make(const char* title, Gtk::Window& window,
                                          Gtk::FileChooser::Action action, Chosen chosen)
{
    dialog_ = Gtk::FileChooserNative::create(title, window, action);
    dialog_->signal_response().connect([this, chosen = std::move(chosen)](int response) {
        const auto paths = pathsOf(*dialog_.get());
        onMainLoop([this, chosen, response, paths] {
            const auto call = chosen; // it may be the last owner of what is called
            dialog_.reset();
            if (response == Gtk::ResponseType::ACCEPT && !paths.empty())
                call(paths);
        });
    });
    return *dialog_.get();
}

} // namespace host
