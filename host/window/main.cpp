// SPDX-License-Identifier: MIT
// The entry point of magellangps-desktop. A second start opens its files in the window of the
// first.

#include "host/base/FrontEnd.h"
#include "host/operations/Operation.h"
#include "host/window/About.h"
#include "host/window/MainWindow.h"
#include "host/window/Shortcuts.h"
#include "host/window/base/Translation.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <adwaita.h>

namespace {

constexpr int kUsageError = 2; // as on the command line

// Before the toolkit looks for a display.
// @return  the exit status if the program ends here
std::optional<int> readOptions(int& argc, char**& argv)
{
    gboolean isVersion = FALSE;
    const std::array entries{
        GOptionEntry{"version", 'V', 0, G_OPTION_ARG_NONE, &isVersion,
                     host::tr("Print the version"), nullptr},
        GOptionEntry{nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
    const std::unique_ptr<GOptionContext, decltype(&g_option_context_free)> context{
        g_option_context_new(host::tr("[FILE | FOLDER...]")), &g_option_context_free};
    g_option_context_set_summary(
        context.get(),
        host::tr("Shows the receivers that are connected. Imports the files, and opens the folders "
                 "as copies of receivers."));
    g_option_context_add_main_entries(context.get(), entries.data(), nullptr);
    GError* failure = nullptr;
    if (g_option_context_parse(context.get(), &argc, &argv, &failure) == FALSE) {
        std::fprintf(stderr, "magellangps-desktop: %s\n", failure->message);
        g_error_free(failure);
        return kUsageError;
    }
    if (isVersion == FALSE)
        return std::nullopt;
    std::printf("magellangps-desktop %s\n", host::kWindowVersion);
    return EXIT_SUCCESS;
}

class Program {
public:
    explicit Program(Gtk::Application& application) : application_(application)
    {
        application_.signal_startup().connect([this] {
            adw_init();
            host::addShortcuts(application_);
            application_.add_action("quit", [this] {
                if (window_)
                    window_->close();
            });
        });
        application_.signal_activate().connect([this] { show({}); });
        application_.signal_open().connect(
            [this](const Gio::Application::type_vec_files& files, const Glib::ustring&) {
                std::vector<std::string> paths;
                for (const auto& file : files)
                    paths.push_back(file->get_path());
                show(paths);
            });
    }

private:
    void show(const std::vector<std::string>& paths)
    {
        if (window_)
            window_->open(paths);
        else
            window_ = std::make_unique<host::MainWindow>(application_, std::nullopt, paths);
        window_->present();
    }

    Gtk::Application& application_;
    std::unique_ptr<host::MainWindow> window_; // its end waits for the end of what is running
};

int run(int argc, char** argv)
{
    const auto application =
        Gtk::Application::create(host::kApplicationId, Gio::Application::Flags::HANDLES_OPEN);
    const Program program{*application.get()};
    return application->run(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    host::setFrontEnd(host::FrontEnd::kWindow);
    host::openTranslations();
    if (const auto ended = readOptions(argc, argv))
        return *ended;
    const int status = run(argc, argv);
    if (host::hasAbandonedOperation()) // its thread must not meet destroyed objects
        std::_Exit(status);
    return status;
}
