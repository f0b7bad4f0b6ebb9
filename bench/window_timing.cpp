// SPDX-License-Identifier: MIT
// Opens the window with files, moves the map, and prints how long frames took and for how long the
// main loop did nothing else. Run by scripts/window-timing.
//
// window_timing BUNDLE [FOLDER] FILE...: the folder is a copy of a receiver, to send to

#include "ThreadTime.h"
#include "host/base/FrontEnd.h"
#include "host/window/MainWindow.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <adwaita.h>
#include <gtkmm.h>
#include <shumate/shumate.h>

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>{Clock::now() - start}.count();
}

GtkWidget* find(GtkWidget* widget, GType type)
{
    if (G_TYPE_CHECK_INSTANCE_TYPE(widget, type))
        return widget;
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto* const found = find(child, type))
            return found;
    }
    return nullptr;
}

/// What is done, frame by frame, and how long that took.
class Timing {
public:
    /// @param receive  makes the window show its records anew
    Timing(GtkWidget* window, std::function<void()> receive, std::function<void()> ended)
        : pages_(ADW_VIEW_STACK(find(window, ADW_TYPE_VIEW_STACK))),
          viewport_(shumate_map_get_viewport(SHUMATE_MAP(find(window, SHUMATE_TYPE_MAP)))),
          receive_(std::move(receive)), ended_(std::move(ended))
    {
        beat();
        gtk_widget_add_tick_callback(
            window,
            [](GtkWidget*, GdkFrameClock*, gpointer timing) -> gboolean {
                return static_cast<Timing*>(timing)->tick();
            },
            this, nullptr);
    }

private:
    static constexpr double kLoading = 12'000; // milliseconds, at least: no file takes longer
    static constexpr double kMoving = 5'000;

    // A timer that is always due soon shows when the loop does something else for longer.
    void beat()
    {
        last_ = Clock::now();
        lastTime_ = bench::threadSeconds();
        g_timeout_add_full(
            G_PRIORITY_HIGH, 1,
            [](gpointer timing) -> gboolean {
                auto& self = *static_cast<Timing*>(timing);
                self.longest_ = std::max(self.longest_, millisecondsSince(self.last_));
                self.most_ = std::max(self.most_, (bench::threadSeconds() - self.lastTime_) * 1000);
                self.last_ = Clock::now();
                self.lastTime_ = bench::threadSeconds();
                return G_SOURCE_CONTINUE;
            },
            this, nullptr);
    }

    gboolean tick()
    {
        const double now = millisecondsSince(start_);
        frames_.push_back(millisecondsSince(frame_));
        frame_ = Clock::now();
        auto* const location = SHUMATE_LOCATION(viewport_);
        switch (phase_) {
        case 0:
            if (now > kLoading)
                next("loading");
            return G_SOURCE_CONTINUE;
        case 1:
        case 3: {
            const double pixel =
                360 / (256 * std::exp2(shumate_viewport_get_zoom_level(viewport_)));
            shumate_location_set_location(location, shumate_location_get_latitude(location),
                                          shumate_location_get_longitude(location) +
                                              (frames_.size() % 80 < 40 ? 8 : -8) * pixel);
            if (now > kMoving)
                next(phase_ == 1 ? "moving" : "moving, zoomed in");
            return G_SOURCE_CONTINUE;
        }
        case 2:
            shumate_viewport_set_zoom_level(viewport_,
                                            shumate_viewport_get_zoom_level(viewport_) + 0.05);
            if (now > kMoving)
                next("zooming");
            return G_SOURCE_CONTINUE;
        case 4:
        case 6:
            adw_view_stack_set_visible_child_name(pages_, "send");
            if (now > kMoving)
                next(phase_ == 4 ? "to send" : "other ones to send");
            return G_SOURCE_CONTINUE;
        case 5:
            if (const auto receive = std::exchange(receive_, nullptr))
                receive();
            if (now > kLoading)
                next("loading again");
            return G_SOURCE_CONTINUE;
        default:
            ended_();
            return G_SOURCE_REMOVE;
        }
    }

    void next(const char* what)
    {
        std::sort(frames_.begin(), frames_.end());
        const auto at = [this](double part) {
            return frames_[static_cast<std::size_t>(part *
                                                    static_cast<double>(frames_.size() - 1))];
        };
        std::printf("%-20s %5.0f frames a second, median %5.1f ms, 95 %% %5.1f ms, longest %6.1f "
                    "ms; longest stall %6.1f ms, %6.1f ms of a processor at most\n",
                    what, static_cast<double>(frames_.size()) / millisecondsSince(start_) * 1000,
                    at(0.5), at(0.95), at(1), longest_, most_);
        std::fflush(stdout);
        ++phase_;
        frames_.clear();
        longest_ = most_ = 0;
        start_ = frame_ = last_ = Clock::now();
        lastTime_ = bench::threadSeconds();
    }

    AdwViewStack* pages_;
    ShumateViewport* viewport_;
    std::function<void()> receive_;
    std::function<void()> ended_;
    int phase_ = 0;
    double longest_ = 0;
    double most_ = 0;     // milliseconds of a processor between two beats, whatever else is running
    double lastTime_ = 0; // seconds
    std::vector<double> frames_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point frame_ = start_;
    Clock::time_point last_ = start_;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return EXIT_FAILURE;
    const std::vector<std::string> files{argv + 2, argv + argc};
    const auto application =
        Gtk::Application::create("com.Orvane.WindowTiming", Gio::Application::Flags::NON_UNIQUE);
    adw_init();
    host::setFrontEnd(host::FrontEnd::kWindow);
    std::unique_ptr<host::MainWindow> window;
    std::unique_ptr<Timing> timing;
    application->signal_activate().connect([&] {
        window =
            std::make_unique<host::MainWindow>(*application.get(), std::string{argv[1]}, files);
        window->present();
        auto* const shown = gtk_application_get_active_window(application->gobj());
        timing = std::make_unique<Timing>(
            GTK_WIDGET(shown), [&] { window->open({files.back()}); }, [&] { application->quit(); });
    });
    const int status = application->run();
    window.reset();
    std::_Exit(status); // the timing's timer still runs
}
