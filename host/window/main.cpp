// SPDX-License-Identifier: MIT
// The entry point of magellangps-desktop.

#include "host/base/FrontEnd.h"
#include "host/operations/Operation.h"
#include "host/window/About.h"
#include "host/window/MainWindow.h"
#include "host/window/Shortcuts.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <adwaita.h>

int main(int argc, char** argv)
{
    const auto application =
        Gtk::Application::create(host::kApplicationId, Gio::Application::Flags::HANDLES_OPEN);
    adw_init();
    host::setFrontEnd(host::FrontEnd::kWindow);
    host::addShortcuts(*application.get());
    std::unique_ptr<host::MainWindow> window;
    const auto show = [&](const std::vector<std::string>& paths) {
        if (window)
            window->open(paths);
        else
            window = std::make_unique<host::MainWindow>(*application.get(), std::nullopt, paths);
        window->present();
    };
    application->signal_activate().connect([&] { show({}); });
    application->signal_open().connect(
        [&](const Gio::Application::type_vec_files& files, const Glib::ustring&) {
            std::vector<std::string> paths;
            for (const auto& file : files)
                paths.push_back(file->get_path());
            show(paths);
        });
    const int status = application->run(argc, argv);
    window.reset();                    // waits for the end of what is running
    if (host::hasAbandonedOperation()) // its thread must not meet destroyed objects
        std::_Exit(status);
    return status;
}
