// SPDX-License-Identifier: MIT
// The library's map does the moving and zooming; the records are one layer above it.

#include "host/window/TrackMap.h"

#include "host/points/Points.h"
#include "host/window/Accessible.h"

#include <gps/Value.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace host {
namespace {

DrawnPath drawn(const KeptTrack& track, std::size_t color)
{
    DrawnPath drawn;
    drawn.color = color;
    auto segment = track.segments.begin();
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (segment != track.segments.end() && *segment == i) {
            drawn.path.breakHere();
            ++segment;
        }
        drawn.path.add(track.points[i]);
    }
    return drawn;
}

DrawnPath drawn(const KeptRoute& route, std::size_t color)
{
    DrawnPath drawn;
    drawn.color = color;
    drawn.isDashed = true;
    for (const auto& point : route.points)
        drawn.path.add(point.point);
    return drawn;
}

Extent extentOf(const MapContents& contents)
{
    Extent extent;
    for (const auto& path : contents.paths)
        extent.include(path.path);
    for (const auto& point : contents.points)
        extent.include(point.position);
    return extent;
}

// The inverse of mapPositionOf().
double latitudeAt(double y)
{
    return std::atan(std::sinh((0.5 - y) * 2 * std::numbers::pi)) * (180 / std::numbers::pi);
}

} // namespace

void Extent::include(const MapPosition& position) noexcept
{
    left = std::min(left, position.x);
    right = std::max(right, position.x);
    top = std::min(top, position.y);
    bottom = std::max(bottom, position.y);
}

void Extent::include(const MapPath& path) noexcept
{
    for (const auto& line : path.lines()) {
        for (const auto& position : line)
            include(position);
    }
}

TrackMap::TrackMap(Handlers handlers)
    : handlers_(std::move(handlers)), map_(shumate_simple_map_new())
{
    auto* const viewport = shumate_simple_map_get_viewport(map_);
    // Says how the map is projected. Its tiles are not shown, and nothing is loaded.
    ShumateMapSourceRegistry* const sources = shumate_map_source_registry_new_with_defaults();
    shumate_viewport_set_reference_map_source(
        viewport, shumate_map_source_registry_get_by_id(sources, SHUMATE_MAP_SOURCE_OSM_MAPNIK));
    g_object_unref(sources);
    layer_ = newPathLayer(viewport, contents_);
    shumate_simple_map_add_overlay_layer(map_, layer_);
    auto* const widget = Glib::wrap(GTK_WIDGET(map_));
    widget->set_expand(true);
    nameForReaders(*widget, "Map");
    append(*widget);
}

void TrackMap::setRecords(std::shared_ptr<const RecordSet> records)
{
    contents_ = {};
    std::size_t color = 0;
    for (const auto& track : records->tracks)
        contents_.paths.push_back(drawn(track, color++));
    for (const auto& route : records->routes)
        contents_.paths.push_back(drawn(route, color++));
    for (std::size_t i = 0; i < records->points.size(); ++i) {
        if (isOnGlobe(records->points[i].point))
            contents_.points.push_back({mapPositionOf(records->points[i].point), i});
    }
    tracks_ = records->tracks.size();
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
    moveTo(extentOf(contents_));
}

void TrackMap::setTicked(const TickedRecords& ticked)
{
    std::size_t path = 0;
    for (const auto* const kind : {&ticked.tracks, &ticked.routes}) {
        for (const bool isTicked : *kind)
            contents_.paths[path++].isShown = isTicked;
    }
    for (auto& point : contents_.points)
        point.isShown = ticked.points[point.record];
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
}

std::size_t TrackMap::pathOf(RecordKind kind, std::size_t index) const
{
    return kind == RecordKind::kRoute ? tracks_ + index : index;
}

void TrackMap::select(RecordKind kind, std::size_t index)
{
    contents_.selected = {.isPoint = kind == RecordKind::kPoint, .index = pathOf(kind, index)};
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
}

void TrackMap::clearSelection()
{
    contents_.selected.reset();
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
}

void TrackMap::show(RecordKind kind, std::size_t index)
{
    Extent extent;
    if (kind != RecordKind::kPoint)
        extent.include(contents_.paths[pathOf(kind, index)].path);
    for (const auto& point : contents_.points) {
        if (kind == RecordKind::kPoint && point.record == index)
            extent.include(point.position);
    }
    moveTo(extent);
}

void TrackMap::setMarker(const std::optional<gps::GPSPoint>& position)
{
    contents_.marker.reset();
    if (position && isOnGlobe(*position))
        contents_.marker = mapPositionOf(*position);
    gtk_widget_queue_draw(GTK_WIDGET(layer_));
}

void TrackMap::moveTo(const Extent& extent)
{
    if (extent.left > extent.right)
        return;
    auto* const viewport = shumate_simple_map_get_viewport(map_);
    shumate_location_set_location(SHUMATE_LOCATION(viewport),
                                  latitudeAt((extent.top + extent.bottom) / 2),
                                  ((extent.left + extent.right) / 2 - 0.5) * 360);
    constexpr double kMostZoom = 16;   // a single point needs no more
    constexpr double kUsualSide = 400; // pixels, before the window has a size
    const double width = get_width() > 0 ? get_width() : kUsualSide;
    const double height = get_height() > 0 ? get_height() : kUsualSide;
    const double world = std::min(0.9 * width / (extent.right - extent.left),
                                  0.9 * height / (extent.bottom - extent.top));
    shumate_viewport_set_zoom_level(
        viewport, std::clamp(std::log2(world / MapPath::kTileSize), 1.0, kMostZoom));
}

} // namespace host
