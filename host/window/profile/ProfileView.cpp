// SPDX-License-Identifier: MIT
// Time goes from left to right in every language, as distances on a map do.

#include "host/window/profile/ProfileView.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Translation.h"
#include "host/words/ScaleTicks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr double kScaleWidth = 52;   // pixels, for the texts of the scales
constexpr double kEnd = 10;          // pixels right of the plots
constexpr double kHeading = 18;      // pixels above each plot
constexpr double kAxisHeight = 20;   // pixels, for the texts of the axis
constexpr double kDragStart = 5;     // pixels
constexpr double kHeightShare = 0.6; // of the plot of heights
constexpr int kLeastHeight = 150;    // pixels
constexpr double kTextSize = 8;      // points

double unitOf(ProfileValue value, UnitSystem system)
{
    const auto& units = unitsOf(system);
    constexpr double kHour = 3600; // seconds
    return value == ProfileValue::kElevation ? units.height.metres : units.length.metres / kHour;
}

Glib::ustring headingOf(ProfileValue value, UnitSystem system)
{
    const auto& units = unitsOf(system);
    return value == ProfileValue::kElevation
               ? Glib::ustring::compose(tr("Height (%1)"), units.height.name)
               : Glib::ustring::compose(tr("Speed (%1)"), units.speed);
}

Gtk::DrawingArea* newSlider()
{
    return Glib::wrap(GTK_DRAWING_AREA(g_object_new(GTK_TYPE_DRAWING_AREA, "accessible-role",
                                                    GTK_ACCESSIBLE_ROLE_SLIDER, nullptr)));
}

std::optional<ProfileCursor::Step> stepOf(guint key)
{
    using Step = ProfileCursor::Step;
    switch (key) {
    case GDK_KEY_Left:
    case GDK_KEY_KP_Left:
        return Step::kBack;
    case GDK_KEY_Right:
    case GDK_KEY_KP_Right:
        return Step::kForward;
    case GDK_KEY_Page_Down:
        return Step::kPageBack;
    case GDK_KEY_Page_Up:
        return Step::kPageForward;
    case GDK_KEY_Home:
        return Step::kFirst;
    case GDK_KEY_End:
        return Step::kLast;
    default:
        return std::nullopt;
    }
}

bool has(Gdk::ModifierType modifiers, Gdk::ModifierType wanted)
{
    return (modifiers & wanted) != Gdk::ModifierType{};
}

} // namespace

ProfileView::ProfileView(Handler moved) : moved_(std::move(moved)), area_(newSlider())
{
    area_->set_focusable(true);
    area_->set_expand(true);
    area_->set_content_height(kLeastHeight);
    nameForReaders(*area_, tr("Profile. Arrows move along it, with Shift they mark a stretch."));
    area_->set_draw_func(
        [this](const Context& cairo, int width, int height) { draw(cairo, width, height); });
    listenToPointer();
    listenToKeys();
    append(*area_);
}

void ProfileView::setTrack(std::shared_ptr<const ProfileData> data, const LineColor& color)
{
    data_ = std::move(data);
    color_ = color;
    cursor_ = ProfileCursor{data_ ? data_->track().size() : 0};
    lines_.clear();
    picture_ = {};
    setCursorText("");
    area_->queue_draw();
}

void ProfileView::setAxis(ProfileAxis axis)
{
    axis_ = axis;
    lines_.clear();
    picture_ = {};
    area_->queue_draw();
}

void ProfileView::setUnits(UnitSystem units)
{
    units_ = units;
    picture_ = {};
    area_->queue_draw();
}

void ProfileView::setCursorText(const std::string& text)
{
    const auto last = data_ && data_->track().size() > 0 ? data_->track().size() - 1 : 0;
    gtk_accessible_update_property(GTK_ACCESSIBLE(area_->gobj()), GTK_ACCESSIBLE_PROPERTY_VALUE_MIN,
                                   0.0, GTK_ACCESSIBLE_PROPERTY_VALUE_MAX,
                                   static_cast<double>(last), GTK_ACCESSIBLE_PROPERTY_VALUE_NOW,
                                   static_cast<double>(cursor_.point().value_or(0)),
                                   GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT, text.c_str(), -1);
}

// Pointing moves the cursor, a click keeps it, and dragging marks a stretch.
void ProfileView::listenToPointer()
{
    const auto motion = Gtk::EventControllerMotion::create();
    motion->signal_motion().connect([this](double x, double) { pointerMoved(x); });
    motion->signal_leave().connect([this] {
        pointerX_.reset();
        cursor_.pointAt(std::nullopt);
        changed();
    });
    area_->add_controller(motion);
    const auto drag = Gtk::GestureDrag::create();
    drag->signal_drag_begin().connect([this](double x, double) {
        area_->grab_focus();
        if (!data_ || !data_->hasAxis(axis_))
            return;
        pressedAt_ = pointAt(x);
        cursor_.pin(pressedAt_);
        changed();
    });
    drag->signal_drag_update().connect([this, drag = drag.get()](double offset, double) {
        double x = 0;
        double y = 0;
        if (!data_ || !data_->hasAxis(axis_) || !drag->get_start_point(x, y))
            return;
        if (std::abs(offset) < kDragStart && !cursor_.stretch())
            return;
        const auto point = pointAt(x + offset);
        cursor_.pointAt(point);
        cursor_.drag(pressedAt_, point);
        changed();
    });
    area_->add_controller(drag);
}

// The toolkit reports a move of a pointer that rests whenever something is laid out anew. It must
// not undo what a key has done.
void ProfileView::pointerMoved(double x)
{
    constexpr double kLeastMove = 0.5; // pixels
    if (!data_ || !data_->hasAxis(axis_) || (pointerX_ && std::abs(x - *pointerX_) < kLeastMove))
        return;
    pointerX_ = x;
    cursor_.pointAt(pointAt(x));
    changed();
}

void ProfileView::listenToKeys()
{
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            return keyPressed(key, modifiers);
        },
        false);
    area_->add_controller(keys);
}

bool ProfileView::keyPressed(guint key, Gdk::ModifierType modifiers)
{
    using enum Gdk::ModifierType;
    if (!data_ || !data_->hasAxis(axis_) || has(modifiers, ALT_MASK))
        return false;
    bool isOurs = true;
    if (const auto step = stepOf(key))
        cursor_.step(*step, has(modifiers, CONTROL_MASK), has(modifiers, SHIFT_MASK));
    else
        isOurs = key == GDK_KEY_Escape && cursor_.clear();
    if (isOurs)
        changed();
    return isOurs;
}

void ProfileView::changed()
{
    area_->queue_draw();
    moved_();
}

double ProfileView::plotWidth() const
{
    return std::max(1.0, area_->get_width() - kScaleWidth - kEnd);
}

std::size_t ProfileView::pointAt(double x) const
{
    return indexNearest(data_->positions(axis_),
                        (x - kScaleWidth) / plotWidth() * data_->length(axis_));
}

double ProfileView::xOf(std::size_t point) const
{
    return kScaleWidth + data_->positions(axis_)[point] / data_->length(axis_) * plotWidth();
}

// The line for the present width is made once.
const ProfileLine& ProfileView::lineOf(ProfileValue value)
{
    const auto width = std::min(static_cast<std::size_t>(plotWidth()), ProfileData::kColumns);
    auto& line = lines_[value];
    if (line.columns != width)
        line = narrowed(data_->line(value, axis_), width);
    return line;
}

std::vector<ProfileView::Plot> ProfileView::plots(int height) const
{
    std::vector<Plot> plots;
    for (const auto value : {ProfileValue::kElevation, ProfileValue::kSpeed}) {
        const auto& line = data_->line(value, axis_);
        if (line.canBeDrawn())
            plots.push_back({value, 0, 0, rangeOf(line, value)});
    }
    const double room =
        std::max(1.0, height - kAxisHeight - kHeading * static_cast<double>(plots.size()));
    double top = 0;
    for (auto& plot : plots) {
        const bool isHigh = plot.value == ProfileValue::kElevation;
        plot.height = plots.size() == 1 ? room : room * (isHigh ? kHeightShare : 1 - kHeightShare);
        plot.top = top + kHeading;
        top = plot.top + plot.height;
    }
    return plots;
}

void ProfileView::draw(const Context& cairo, int width, int height)
{
    if (!data_ || !data_->hasAxis(axis_))
        return;
    const auto drawn = plots(height);
    drawStretch(cairo, height);
    cairo->set_source(pictureOf(drawn, width, height), 0, 0);
    cairo->paint();
    drawCursor(cairo, drawn);
}

// All but what the pointer changes, so that it moves quickly over the lines of a million points.
const Cairo::RefPtr<Cairo::ImageSurface>& ProfileView::pictureOf(const std::vector<Plot>& plots,
                                                                 int width, int height)
{
    const Look look{.width = width,
                    .height = height,
                    .density = area_->get_scale_factor(),
                    .text = area_->get_style_context()->get_color()};
    if (picture_ && pictureLook_ == look)
        return picture_;
    pictureLook_ = look;
    picture_ = Cairo::ImageSurface::create(Cairo::Surface::Format::ARGB32, width * look.density,
                                           height * look.density);
    cairo_surface_set_device_scale(picture_->cobj(), look.density, look.density);
    const auto cairo = Cairo::Context::create(picture_);
    for (const auto& plot : plots)
        drawPlot(cairo, plot);
    drawAxis(cairo, height);
    return picture_;
}

void ProfileView::drawStretch(const Context& cairo, int height) const
{
    const auto stretch = cursor_.stretch();
    if (!stretch)
        return;
    constexpr double kShade = 0.12;
    useText(cairo, kShade);
    const double from = xOf(stretch->from);
    cairo->rectangle(from, 0, std::max(1.0, xOf(stretch->to) - from), height - kAxisHeight);
    cairo->fill();
}

void ProfileView::drawAxis(const Context& cairo, int height) const
{
    constexpr double kTickWidth = 60; // pixels, so that texts do not touch
    const double length = data_->length(axis_);
    const int most = std::max(1, static_cast<int>(plotWidth() / kTickWidth));
    const auto ticks =
        axis_ == ProfileAxis::kTime ? timeTicks(length, most) : distanceTicks(length, most, units_);
    for (const auto& tick : ticks)
        drawText(cairo, tick.text, kScaleWidth + tick.position / length * plotWidth(),
                 height - kAxisHeight / 2, tick.position > 0 ? 0.5 : 0);
}

void ProfileView::drawPlot(const Context& cairo, const Plot& plot)
{
    drawText(cairo, headingOf(plot.value, units_), kScaleWidth, plot.top - kHeading / 2, 0);
    drawScale(cairo, plot);
    drawLine(cairo, plot);
}

void ProfileView::drawScale(const Context& cairo, const Plot& plot) const
{
    constexpr double kTickHeight = 18; // pixels
    constexpr double kTickGap = 6;
    constexpr double kFaint = 0.15;
    const int most = std::max(1, static_cast<int>(plot.height / kTickHeight));
    const auto [low, high] = plot.range;
    cairo->set_line_width(1);
    for (const auto& tick : valueTicks(low, high, unitOf(plot.value, units_), most)) {
        const double y = plot.top + plot.height * (1 - (tick.position - low) / (high - low));
        useText(cairo, kFaint);
        cairo->move_to(kScaleWidth, std::floor(y) + 0.5);
        cairo->line_to(kScaleWidth + plotWidth(), std::floor(y) + 0.5);
        cairo->stroke();
        drawText(cairo, tick.text, kScaleWidth - kTickGap, y, 1);
    }
}

void ProfileView::drawLine(const Context& cairo, const Plot& plot)
{
    const auto& line = lineOf(plot.value);
    const auto [low, high] = plot.range;
    const double scale = plot.height / (high - low);
    const double bottom = plot.top + plot.height;
    const auto yOf = [&, low = low](float value) { return bottom - (value - low) * scale; };
    const double columnWidth = plotWidth() / static_cast<double>(line.columns);
    const auto xOfPiece = [&](const ProfilePiece& piece) {
        return kScaleWidth + (static_cast<double>(piece.column) + 0.5) * columnWidth;
    };
    constexpr double kAreaShade = 0.18;
    cairo->set_source_rgba(color_.red, color_.green, color_.blue, kAreaShade);
    for (std::size_t i = 0; i < line.pieces.size(); ++i) {
        const auto& piece = line.pieces[i];
        if (!piece.isJoined)
            cairo->move_to(xOfPiece(piece), bottom);
        cairo->line_to(xOfPiece(piece), yOf(piece.highest));
        if (i + 1 == line.pieces.size() || !line.pieces[i + 1].isJoined) {
            cairo->line_to(xOfPiece(piece), bottom);
            cairo->close_path();
        }
    }
    cairo->fill();
    cairo->set_line_width(1.5);
    cairo->set_line_join(Cairo::Context::LineJoin::ROUND);
    cairo->set_line_cap(Cairo::Context::LineCap::ROUND);
    cairo->set_source_rgb(color_.red, color_.green, color_.blue);
    // One stroke for each piece: in a long one, cairo looks for each crossing of a dense line with
    // itself, which takes 80 ms for 600 columns instead of 5 ms.
    const ProfilePiece* before = nullptr;
    for (const auto& piece : line.pieces) {
        if (piece.isJoined && before != nullptr)
            cairo->move_to(xOfPiece(*before), yOf(before->last));
        for (const float value : {piece.first, piece.lowest, piece.highest, piece.last})
            cairo->line_to(xOfPiece(piece), yOf(value));
        cairo->stroke();
        before = &piece;
    }
}

void ProfileView::drawCursor(const Context& cairo, const std::vector<Plot>& plots) const
{
    const auto point = cursor_.point();
    if (!point || plots.empty())
        return;
    constexpr double kRadius = 4;
    const double x = xOf(*point);
    useText(cairo, 0.6);
    cairo->set_line_width(1);
    cairo->move_to(std::floor(x) + 0.5, 0);
    cairo->line_to(std::floor(x) + 0.5, plots.back().top + plots.back().height);
    cairo->stroke();
    for (const auto& plot : plots) {
        const double value = plot.value == ProfileValue::kElevation
                                 ? data_->track().elevation(*point)
                                 : data_->track().speed(*point);
        if (std::isnan(value))
            continue;
        const auto [low, high] = plot.range;
        useText(cairo, 1);
        cairo->arc(x, plot.top + plot.height * (1 - (value - low) / (high - low)), kRadius, 0,
                   2 * G_PI);
        cairo->fill();
    }
}

// `share`: which part of the text is before x.
void ProfileView::drawText(const Context& cairo, const std::string& text, double x, double y,
                           double share) const
{
    auto layout = area_->create_pango_layout(text);
    auto font = area_->get_pango_context()->get_font_description();
    font.set_size(static_cast<int>(kTextSize * PANGO_SCALE));
    layout->set_font_description(font);
    int width = 0;
    int height = 0;
    layout->get_pixel_size(width, height);
    useText(cairo, 0.8);
    cairo->move_to(x - share * width, y - height / 2.0);
    layout->show_in_cairo_context(cairo);
}

void ProfileView::useText(const Context& cairo, double alpha) const
{
    const auto color = area_->get_style_context()->get_color();
    cairo->set_source_rgba(color.get_red(), color.get_green(), color.get_blue(), alpha);
}

} // namespace host
