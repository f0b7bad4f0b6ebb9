// SPDX-License-Identifier: MIT
// The pictures are paths of SVG, which the SVG library draws.

#include "host/window/map/PointIcons.h"

#include "host/window/map/MapText.h"

#include <fmt/format.h>

#include <cmath>
#include <numbers>
#include <string>

#include <librsvg/rsvg.h>

namespace host {
namespace {

constexpr double kPictureSize = 13; // pixels
constexpr double kNumberSize = 11;

std::string colorText(const MapColor& color)
{
    const auto byte = [](double part) { return static_cast<int>(std::lround(part * 255)); };
    return fmt::format("#{:02x}{:02x}{:02x}", byte(color.red), byte(color.green), byte(color.blue));
}

void drawSvg(cairo_t* cairo, std::string_view path, const MapColor& color)
{
    const auto text =
        fmt::format(R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {0} {0}">)"
                    R"(<path fill="{1}" fill-rule="evenodd" d="{2}"/></svg>)",
                    kSymbolPictureSize, colorText(color), path);
    const std::shared_ptr<RsvgHandle> handle{
        rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(text.data()), text.size(),
                                  nullptr),
        [](RsvgHandle* owned) { g_clear_object(&owned); }};
    const RsvgRectangle area{0, 0, kPictureSize, kPictureSize};
    if (handle)
        rsvg_handle_render_document(handle.get(), cairo, &area, nullptr);
}

void traceDisc(cairo_t* cairo, const PicturePoint& center, double radius)
{
    cairo_new_path(cairo);
    cairo_arc(cairo, center.x, center.y, radius, 0, 2 * std::numbers::pi);
}

void traceDiamond(cairo_t* cairo, const PicturePoint& center, double radius)
{
    cairo_new_path(cairo);
    cairo_move_to(cairo, center.x, center.y - radius);
    cairo_line_to(cairo, center.x + radius, center.y);
    cairo_line_to(cairo, center.x, center.y + radius);
    cairo_line_to(cairo, center.x - radius, center.y);
    cairo_close_path(cairo);
}

void fillWithEdge(cairo_t* cairo, const MapColor& color, const MapColor& edge)
{
    setColor(cairo, color);
    cairo_fill_preserve(cairo);
    setColor(cairo, edge);
    cairo_set_line_width(cairo, 1.5);
    cairo_stroke(cairo);
}

void drawTick(cairo_t* cairo, const PicturePoint& center, const MapColor& color)
{
    cairo_new_path(cairo);
    cairo_move_to(cairo, center.x - 3.5, center.y);
    cairo_line_to(cairo, center.x - 1, center.y + 2.5);
    cairo_line_to(cairo, center.x + 3.5, center.y - 2.5);
    setColor(cairo, color);
    cairo_set_line_width(cairo, 2);
    cairo_stroke(cairo);
}

} // namespace

double PointIcons::radiusOf(std::size_t count)
{
    return kRadius + (count > 99 ? 3 : 0) + (count > 999 ? 3 : 0) + (count > 9999 ? 4 : 0);
}

void PointIcons::draw(cairo_t* cairo, const MapView& view, const MapRecords::Point& point,
                      const PicturePoint& center, bool isSelected)
{
    const auto& colors = MapColors::of(view.isDark);
    if (isSelected) {
        traceDisc(cairo, center, kRadius + 5);
        fillWithEdge(cairo, lineColor(0), colors.paper);
    }
    if (point.isGeocache) {
        traceDiamond(cairo, center, kRadius);
        fillWithEdge(cairo, colors.geocache, colors.paper);
        if (point.isFound)
            drawTick(cairo, center, colors.paper);
        return;
    }
    const bool hasPicture = point.picture != nullptr;
    traceDisc(cairo, center, hasPicture ? kRadius : kRadius / 2);
    fillWithEdge(cairo, colors.ink, colors.paper);
    if (!hasPicture)
        return;
    cairo_set_source_surface(cairo, pictureOf(point.picture->path, view).get(),
                             center.x - kPictureSize / 2, center.y - kPictureSize / 2);
    cairo_paint(cairo);
}

void PointIcons::drawGroup(cairo_t* cairo, const MapView& view, std::size_t count,
                           const PicturePoint& center) const
{
    const auto& colors = MapColors::of(view.isDark);
    traceDisc(cairo, center, radiusOf(count));
    fillWithEdge(cairo, colors.paper, colors.ink);
    const MapText number{cairo, fmt::format("{}", count), kNumberSize, true};
    number.draw({center.x - number.width() / 2, center.y - number.height() / 2}, colors.ink);
}

const PointIcons::Picture& PointIcons::pictureOf(std::string_view path, const MapView& view)
{
    auto& picture = pictures_[Key{path, view.density, view.isDark}];
    if (!picture) {
        const auto drawn =
            newPicture({.width = kPictureSize, .height = kPictureSize, .density = view.density});
        drawSvg(drawingOn(drawn).get(), path, MapColors::of(view.isDark).paper);
        picture = drawn.surface;
    }
    return picture;
}

} // namespace host
