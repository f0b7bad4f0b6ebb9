// SPDX-License-Identifier: MIT
// The edge is the outline of the letters, drawn first.

#include "host/window/map/MapText.h"

namespace host {

MapText::MapText(cairo_t* cairo, const std::string& text, double size, bool isBold)
    : cairo_(cairo), layout_(pango_cairo_create_layout(cairo), g_object_unref)
{
    const std::shared_ptr<PangoFontDescription> font{
        pango_font_description_from_string(isBold ? "Sans Bold" : "Sans"),
        pango_font_description_free};
    pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
    pango_layout_set_font_description(layout_.get(), font.get());
    pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
    pango_layout_set_text(layout_.get(), text.data(), static_cast<int>(text.size()));
    pango_layout_get_pixel_size(layout_.get(), &width_, &height_);
}

void MapText::draw(const PicturePoint& corner, const MapColor& color) const
{
    cairo_move_to(cairo_, corner.x, corner.y);
    setColor(cairo_, color);
    pango_cairo_show_layout(cairo_, layout_.get());
    cairo_new_path(cairo_);
}

void MapText::drawWithEdge(const PicturePoint& corner, const MapColor& color,
                           const MapColor& edge) const
{
    constexpr double kEdge = 3; // pixels
    cairo_move_to(cairo_, corner.x, corner.y);
    pango_cairo_layout_path(cairo_, layout_.get());
    setColor(cairo_, edge, 0.85);
    cairo_set_line_width(cairo_, kEdge);
    cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(cairo_);
    draw(corner, color);
}

} // namespace host
