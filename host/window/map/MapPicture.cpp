// SPDX-License-Identifier: MIT
// Only what is seen is in a picture, so looking at each piece of it takes no time.

#include "host/window/map/MapPicture.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr double kReach = 6; // pixels: nobody hits a thin line exactly

double square(double value)
{
    return value * value;
}

double squaredDistance(const PicturePoint& a, const PicturePoint& b)
{
    return square(a.x - b.x) + square(a.y - b.y);
}

double squaredDistance(const PicturePoint& point, const PicturePoint& from, const PicturePoint& to)
{
    const double length = squaredDistance(from, to);
    const double along =
        length > 0
            ? ((point.x - from.x) * (to.x - from.x) + (point.y - from.y) * (to.y - from.y)) / length
            : 0;
    const double part = std::clamp(along, 0.0, 1.0);
    return squaredDistance(point,
                           {from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)});
}

} // namespace

std::optional<MapHit> MapPicture::hitAt(const PicturePoint& position) const
{
    const auto spot = std::find_if(spots.rbegin(), spots.rend(), [&](const Spot& one) {
        return squaredDistance(position, one.center) <= square(one.radius + 2);
    });
    if (spot != spots.rend())
        return spot->hit;
    std::optional<MapHit> found;
    double nearest = square(kReach);
    for (const auto& trace : traces) {
        for (std::size_t i = 1; i < trace.points.size(); ++i) {
            const double distance = squaredDistance(position, trace.points[i - 1], trace.points[i]);
            if (distance <= nearest) {
                nearest = distance;
                found = MapHit{.record = trace.record};
            }
        }
    }
    return found;
}

MapPicture newPicture(const MapView& view)
{
    MapPicture picture{.view = view};
    picture.surface = {
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                   static_cast<int>(std::ceil(view.width)) * view.density,
                                   static_cast<int>(std::ceil(view.height)) * view.density),
        cairo_surface_destroy};
    cairo_surface_set_device_scale(picture.surface.get(), view.density, view.density);
    return picture;
}

std::shared_ptr<cairo_t> drawingOn(const MapPicture& picture)
{
    return {cairo_create(picture.surface.get()), cairo_destroy};
}

} // namespace host
