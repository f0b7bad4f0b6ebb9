// SPDX-License-Identifier: MIT
// A class of GObject's, because the map takes layers of such a class only. A picture is larger than
// what is seen, and the next one is requested before its edge is.

#include "host/window/map/PictureLayer.h"

#include "host/window/base/MainLoop.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include <adwaita.h>

namespace {

// Instances and class of the layer, as GObject lays them out.
struct LayerInstance {
    ShumateLayer parent;
    host::PictureLayer* owner; // null after its end
};
struct LayerClass {
    ShumateLayerClass parent;
};

host::PictureLayer* ownerOf(GtkWidget* widget)
{
    return reinterpret_cast<LayerInstance*>(widget)->owner;
}

void snapshotLayer(GtkWidget* widget, GtkSnapshot* snapshot)
{
    if (auto* const owner = ownerOf(widget))
        owner->draw(snapshot);
}

void allocateLayer(GtkWidget* widget, int, int, int)
{
    if (auto* const owner = ownerOf(widget))
        owner->resize();
}

void initializeClass(gpointer layerClass, gpointer)
{
    GTK_WIDGET_CLASS(layerClass)->snapshot = snapshotLayer;
    GTK_WIDGET_CLASS(layerClass)->size_allocate = allocateLayer;
}

GType layerType()
{
    static const GType type = g_type_register_static_simple(
        SHUMATE_TYPE_LAYER, "HostPictureLayer", sizeof(LayerClass), initializeClass,
        sizeof(LayerInstance), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

GdkTexture* textureOf(const host::MapPicture& picture)
{
    auto* const surface = picture.surface.get();
    const auto stride = static_cast<gsize>(cairo_image_surface_get_stride(surface));
    const int height = cairo_image_surface_get_height(surface);
    auto* const bytes = g_bytes_new_with_free_func(
        cairo_image_surface_get_data(surface), stride * static_cast<gsize>(height),
        [](gpointer owned) { cairo_surface_destroy(static_cast<cairo_surface_t*>(owned)); },
        cairo_surface_reference(surface));
    auto* const texture = gdk_memory_texture_new(cairo_image_surface_get_width(surface), height,
                                                 GDK_MEMORY_DEFAULT, bytes, stride);
    g_bytes_unref(bytes);
    return texture;
}

} // namespace

namespace host {
namespace {

constexpr double kMarginShare = 0.25; // of the size that is seen, on each side
constexpr double kMostMargin = 300;
constexpr double kMostPictureZoom = 16; // of a picture until the next one is there, either way

double marginOf(double size)
{
    return std::ceil(std::min(size * kMarginShare, kMostMargin));
}

bool haveEqualLooks(const MapView& a, const MapView& b)
{
    return a.density == b.density && a.isDark == b.isDark;
}

} // namespace

PictureLayer::PictureLayer(ShumateViewport* viewport, Resized resized)
    : resized_(std::move(resized)), viewport_(viewport),
      layer_(static_cast<ShumateLayer*>(g_object_new(layerType(), "viewport", viewport, nullptr)))
{
    g_object_ref_sink(layer_);
    reinterpret_cast<LayerInstance*>(layer_)->owner = this;
    gtk_widget_set_overflow(GTK_WIDGET(layer_), GTK_OVERFLOW_HIDDEN);
    gtk_widget_set_can_target(GTK_WIDGET(layer_), FALSE);
    const auto changed = +[](PictureLayer* owner) { owner->update(); };
    // The viewport tells about each move and each zoom as a change of a property.
    viewChanged_ = g_signal_connect_swapped(viewport, "notify", G_CALLBACK(changed), this);
    darkChanged_ = g_signal_connect_swapped(adw_style_manager_get_default(), "notify::dark",
                                            G_CALLBACK(changed), this);
    g_signal_connect_swapped(layer_, "notify::scale-factor", G_CALLBACK(changed), this);
    g_object_ref(viewport_);
}

PictureLayer::~PictureLayer()
{
    *isAlive_ = false;
    reinterpret_cast<LayerInstance*>(layer_)->owner = nullptr;
    g_signal_handler_disconnect(viewport_, viewChanged_);
    g_signal_handler_disconnect(adw_style_manager_get_default(), darkChanged_);
    g_signal_handlers_disconnect_by_data(layer_, this);
    g_object_unref(viewport_);
    g_object_unref(layer_);
}

void PictureLayer::setPaint(Paint paint)
{
    paint_ = std::move(paint);
    isStale_ = true;
    update();
}

void PictureLayer::clear()
{
    paint_ = {};
    picture_ = {};
    texture_.reset();
    requested_.reset();
    ++clears_; // what is being painted is not shown any more
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
}

MapView PictureLayer::view() const
{
    auto* const widget = GTK_WIDGET(layer_);
    auto* const location = SHUMATE_LOCATION(viewport_);
    return {.center = mapPositionOf({.latitude = shumate_location_get_latitude(location),
                                     .longitude = shumate_location_get_longitude(location)}),
            .scale = MapPath::kTileSize * std::exp2(shumate_viewport_get_zoom_level(viewport_)),
            .width = static_cast<double>(gtk_widget_get_width(widget)),
            .height = static_cast<double>(gtk_widget_get_height(widget)),
            .density = gtk_widget_get_scale_factor(widget),
            .isDark = adw_style_manager_get_dark(adw_style_manager_get_default()) != FALSE};
}

void PictureLayer::resize()
{
    update();
    if (resized_)
        resized_();
}

void PictureLayer::update()
{
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
    if (paint_ && (isStale_ || !isPictureEnough()))
        request();
}

// Whether the picture shows what is seen in its own scale, and something beyond it on each side.
bool PictureLayer::isPictureEnough() const
{
    const auto seen = view();
    const auto& shown = requested_ ? *requested_ : picture_.view;
    if (!haveEqualLooks(seen, shown) || std::abs(seen.scale / shown.scale - 1) > 1e-6)
        return false;
    const auto reach = seen.extent(0);
    const auto all = shown.extent(-marginOf(std::min(seen.width, seen.height)) / 2);
    const double shift = std::round(shown.center.x - seen.center.x);
    const bool isWithin = reach.left + shift >= all.left && reach.right + shift <= all.right;
    const bool isHighEnough =
        shown.height >= seen.height && reach.top >= all.top && reach.bottom <= all.bottom;
    return isWithin && isHighEnough && shumate_viewport_get_rotation(viewport_) == 0;
}

void PictureLayer::request()
{
    auto wanted = view();
    if (wanted.width <= 0 || wanted.height <= 0)
        return;
    if (shumate_viewport_get_rotation(viewport_) != 0)
        wanted.width = wanted.height = std::ceil(std::hypot(wanted.width, wanted.height));
    wanted.width += 2 * marginOf(wanted.width);
    wanted.height += 2 * marginOf(wanted.height);
    requested_ = wanted;
    isStale_ = false;
    painter_.start([this, wanted, paint = paint_, alive = isAlive_, clears = clears_] {
        auto picture = std::make_shared<MapPicture>(paint(wanted));
        auto* const texture = textureOf(*picture);
        beforeNextFrame([this, alive, picture, texture, clears] {
            if (*alive)
                show(std::move(*picture), texture, clears);
            else
                g_object_unref(texture);
        });
    });
}

void PictureLayer::show(MapPicture picture, GdkTexture* texture, unsigned long clears)
{
    const std::shared_ptr<GdkTexture> owned{texture, g_object_unref};
    if (clears != clears_)
        return;
    picture_ = std::move(picture);
    texture_ = owned;
    const auto& shown = picture_.view;
    if (requested_ && requested_->center.x == shown.center.x &&
        requested_->center.y == shown.center.y && requested_->scale == shown.scale)
        requested_.reset();
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
}

// From the middle of the widget to that of the picture, in pixels.
PicturePoint PictureLayer::offsetOfPicture() const
{
    const auto seen = view();
    double x = picture_.view.center.x - seen.center.x;
    x -= std::round(x); // the nearest of all worlds
    return {x * seen.scale, (picture_.view.center.y - seen.center.y) * seen.scale};
}

void PictureLayer::draw(GtkSnapshot* snapshot)
{
    if (!texture_)
        return;
    const auto seen = view();
    const double zoom = seen.scale / picture_.view.scale;
    if (zoom > kMostPictureZoom || zoom < 1 / kMostPictureZoom)
        return; // a spot or a blur, which the renderer may have no memory for
    const auto offset = offsetOfPicture();
    const auto width = static_cast<float>(std::ceil(picture_.view.width) * zoom);
    const auto height = static_cast<float>(std::ceil(picture_.view.height) * zoom);
    const graphene_point_t middle{static_cast<float>(seen.width / 2),
                                  static_cast<float>(seen.height / 2)};
    gtk_snapshot_save(snapshot);
    gtk_snapshot_translate(snapshot, &middle);
    gtk_snapshot_rotate(snapshot, static_cast<float>(shumate_viewport_get_rotation(viewport_) *
                                                     (180 / std::numbers::pi)));
    // Between the dots of the screen, names would be blurred.
    double left = offset.x - picture_.view.width * zoom / 2 + seen.width / 2;
    double top = offset.y - picture_.view.height * zoom / 2 + seen.height / 2;
    left = std::round(left * seen.density) / seen.density - seen.width / 2;
    top = std::round(top * seen.density) / seen.density - seen.height / 2;
    const graphene_rect_t area{{static_cast<float>(left), static_cast<float>(top)},
                               {width, height}};
    gtk_snapshot_append_texture(snapshot, texture_.get(), &area);
    gtk_snapshot_restore(snapshot);
}

std::optional<MapHit> PictureLayer::hitAt(const PicturePoint& position) const
{
    if (!texture_)
        return std::nullopt;
    const auto seen = view();
    const double zoom = seen.scale / picture_.view.scale;
    const auto offset = offsetOfPicture();
    const double angle = -shumate_viewport_get_rotation(viewport_);
    const double x = position.x - seen.width / 2;
    const double y = position.y - seen.height / 2;
    const double turnedX = x * std::cos(angle) - y * std::sin(angle);
    const double turnedY = x * std::sin(angle) + y * std::cos(angle);
    return picture_.hitAt({(turnedX - offset.x) / zoom + picture_.view.width / 2,
                           (turnedY - offset.y) / zoom + picture_.view.height / 2});
}

} // namespace host
