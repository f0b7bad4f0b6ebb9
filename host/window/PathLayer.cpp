// SPDX-License-Identifier: MIT
// A class of GObject's, because the map takes layers of such a class only. Everything else is in
// Painter.

#include "host/window/PathLayer.h"

#include "host/window/LineColor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr double kLineWidth = 3;
constexpr double kPointRadius = 5;

/// Draws the contents of one layer at one moment.
class Painter {
public:
    Painter(cairo_t* cairo, GtkWidget* widget, ShumateViewport* viewport)
        : cairo_(cairo), zoom_(shumate_viewport_get_zoom_level(viewport)),
          scale_(host::MapPath::kTileSize * std::exp2(zoom_)),
          center_(host::mapPositionOf(
              {.latitude = shumate_location_get_latitude(SHUMATE_LOCATION(viewport)),
               .longitude = shumate_location_get_longitude(SHUMATE_LOCATION(viewport))}))
    {
        cairo_translate(cairo_, gtk_widget_get_width(widget) / 2.0,
                        gtk_widget_get_height(widget) / 2.0);
        cairo_rotate(cairo_, shumate_viewport_get_rotation(viewport));
        cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(cairo_, CAIRO_LINE_CAP_ROUND);
    }

    void draw(host::DrawnPath& path, double width = kLineWidth)
    {
        for (const auto& line : path.path.linesAt(static_cast<int>(std::floor(zoom_)))) {
            for (const auto& position : line)
                cairo_line_to(cairo_, x(position), y(position));
            cairo_new_sub_path(cairo_);
        }
        stroke(host::lineColor(path.color), path.isDashed, width);
    }

    void draw(const host::MapPosition& position, double radius)
    {
        cairo_new_path(cairo_);
        cairo_arc(cairo_, x(position), y(position), radius, 0, 2 * std::numbers::pi);
        cairo_set_source_rgb(cairo_, 1, 1, 1);
        cairo_fill_preserve(cairo_);
        cairo_set_source_rgb(cairo_, 0, 0, 0);
        cairo_set_line_width(cairo_, 2);
        cairo_stroke(cairo_);
    }

private:
    [[nodiscard]] double x(const host::MapPosition& position) const
    {
        return (position.x - center_.x) * scale_;
    }
    [[nodiscard]] double y(const host::MapPosition& position) const
    {
        return (position.y - center_.y) * scale_;
    }

    // On a white line that is wider, so that it is seen on any map.
    void stroke(const host::LineColor& color, bool isDashed, double width)
    {
        cairo_set_source_rgba(cairo_, 1, 1, 1, 0.8);
        cairo_set_line_width(cairo_, width + 2);
        cairo_stroke_preserve(cairo_);
        cairo_set_source_rgb(cairo_, color.red, color.green, color.blue);
        cairo_set_line_width(cairo_, width);
        constexpr std::array kDashes{8.0, 6.0};
        cairo_set_dash(cairo_, kDashes.data(), isDashed ? int{kDashes.size()} : 0, 0);
        cairo_stroke(cairo_);
        cairo_set_dash(cairo_, nullptr, 0, 0);
    }

    cairo_t* cairo_;
    double zoom_;
    double scale_; // pixels of the world's width
    host::MapPosition center_;
};

// Instances and class of the layer, as GObject lays them out.
struct LayerInstance {
    ShumateLayer parent;
    host::MapContents* contents;
};
struct LayerClass {
    ShumateLayerClass parent;
};

void drawMarks(Painter& painter, host::MapContents& contents)
{
    if (contents.selected && !contents.selected->isPoint)
        painter.draw(contents.paths[contents.selected->index], kLineWidth + 3);
    for (const auto& point : contents.points) {
        if (contents.selected && contents.selected->isPoint &&
            contents.selected->index == point.record)
            painter.draw(point.position, kPointRadius + 3);
    }
    if (contents.marker)
        painter.draw(*contents.marker, kPointRadius);
}

void snapshot(GtkWidget* widget, GtkSnapshot* snapshot)
{
    auto* const layer = reinterpret_cast<LayerInstance*>(widget);
    graphene_rect_t area;
    graphene_rect_init(&area, 0, 0, static_cast<float>(gtk_widget_get_width(widget)),
                       static_cast<float>(gtk_widget_get_height(widget)));
    cairo_t* const cairo = gtk_snapshot_append_cairo(snapshot, &area);
    Painter painter{cairo, widget, shumate_layer_get_viewport(&layer->parent)};
    for (auto& path : layer->contents->paths) {
        if (path.isShown)
            painter.draw(path);
    }
    for (const auto& point : layer->contents->points) {
        if (point.isShown)
            painter.draw(point.position, kPointRadius);
    }
    drawMarks(painter, *layer->contents);
    cairo_destroy(cairo);
}

void initializeClass(gpointer layerClass, gpointer)
{
    GTK_WIDGET_CLASS(layerClass)->snapshot = snapshot;
}

GType layerType()
{
    static const GType type = g_type_register_static_simple(
        SHUMATE_TYPE_LAYER, "HostPathLayer", sizeof(LayerClass), initializeClass,
        sizeof(LayerInstance), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

} // namespace

namespace host {

// The viewport tells about each move and each zoom as a change of a property.
ShumateLayer* newPathLayer(ShumateViewport* viewport, MapContents& contents)
{
    auto* const layer =
        static_cast<LayerInstance*>(g_object_new(layerType(), "viewport", viewport, nullptr));
    layer->contents = &contents;
    gtk_widget_set_overflow(GTK_WIDGET(layer), GTK_OVERFLOW_HIDDEN);
    g_signal_connect_object(viewport, "notify", G_CALLBACK(gtk_widget_queue_draw), layer,
                            G_CONNECT_SWAPPED);
    return &layer->parent;
}

} // namespace host
