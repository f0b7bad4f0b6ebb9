// SPDX-License-Identifier: MIT
// ProfileView: the height and the speed of a track along its way or over time. The pointer or the
// keys move a cursor and mark a stretch. [main loop]

#pragma once

#include "host/window/map/LineColor.h"
#include "host/window/profile/ProfileCursor.h"
#include "host/window/profile/ProfileData.h"
#include "host/words/FigureText.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtkmm.h>

namespace host {

class ProfileView : public Gtk::Box {
public:
    /// Called after the cursor or the stretch has moved.
    using Handler = std::function<void()>;

    explicit ProfileView(Handler moved);

    /// Shows another track; null: none.
    void setTrack(std::shared_ptr<const ProfileData> data, const LineColor& color);

    /// Precondition: the track has that axis, or there is none.
    void setAxis(ProfileAxis axis);
    void setUnits(UnitSystem units);

    [[nodiscard]] const ProfileCursor& cursor() const noexcept { return cursor_; }

    /// Describes the point at the cursor for those who hear it.
    void setCursorText(const std::string& text);

private:
    /// Where a plot is drawn, in pixels, and what its edges mean.
    struct Plot {
        ProfileValue value;
        double top;
        double height;
        ValueRange range;
    };
    /// What a picture of the plots depends on, beside the track and the settings.
    struct Look {
        int width = 0;
        int height = 0;
        int density = 0;
        Gdk::RGBA text{};

        [[nodiscard]] bool operator==(const Look& other) const = default;
    };
    using Context = Cairo::RefPtr<Cairo::Context>;

    void listenToPointer();
    void pointerMoved(double x);
    void listenToKeys();
    [[nodiscard]] bool keyPressed(guint key, Gdk::ModifierType modifiers);
    void changed();
    [[nodiscard]] std::size_t pointAt(double x) const;
    [[nodiscard]] double xOf(std::size_t point) const;
    [[nodiscard]] double plotWidth() const;
    [[nodiscard]] const ProfileLine& lineOf(ProfileValue value);
    [[nodiscard]] std::vector<Plot> plots(int height) const;

    void draw(const Context& cairo, int width, int height);
    [[nodiscard]] const Cairo::RefPtr<Cairo::ImageSurface>&
    pictureOf(const std::vector<Plot>& plots, int width, int height);
    void drawStretch(const Context& cairo, int height) const;
    void drawAxis(const Context& cairo, int height) const;
    void drawPlot(const Context& cairo, const Plot& plot);
    void drawScale(const Context& cairo, const Plot& plot) const;
    void drawLine(const Context& cairo, const Plot& plot);
    void drawCursor(const Context& cairo, const std::vector<Plot>& plots) const;
    void drawText(const Context& cairo, const std::string& text, double x, double y,
                  double share) const;
    void useText(const Context& cairo, double alpha) const;

    Handler moved_;
    std::shared_ptr<const ProfileData> data_;
    ProfileAxis axis_ = ProfileAxis::kDistance;
    UnitSystem units_ = UnitSystem::kMetric;
    LineColor color_{};
    ProfileCursor cursor_;
    std::optional<double> pointerX_;            // while it is over the profile
    std::size_t pressedAt_ = 0;                 // the point where a drag has begun
    std::map<ProfileValue, ProfileLine> lines_; // as wide as the view
    Look pictureLook_;
    Cairo::RefPtr<Cairo::ImageSurface> picture_; // of the plots and the axis; null: to be drawn
    Gtk::DrawingArea* area_;
};

} // namespace host
