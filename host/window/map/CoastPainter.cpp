// SPDX-License-Identifier: MIT
// The larger a place, the sooner its name is seen.

#include "host/window/map/CoastPainter.h"

#include "host/places/Coasts.h"
#include "host/places/Places.h"
#include "host/window/map/LabelRoom.h"
#include "host/window/map/MapColors.h"
#include "host/window/map/MapText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr double kPlaceNameSize = 11; // pixels
constexpr double kDotRadius = 2;
constexpr std::size_t kMostPlaces = 600; // looked at for room

/// A place where it is seen.
struct SeenPlace {
    std::string name{};
    std::int64_t population = 0;
    PicturePoint center{};
};

// Mercator positions of outlines that end at a pole are at the edge of the map.
MapPosition positionOf(double latitude, double longitude)
{
    return mapPositionOf(
        {.latitude = std::clamp(latitude, -kMostLatitude, kMostLatitude), .longitude = longitude});
}

// The part of one world that is seen.
Bounds boundsSeen(const MapView& view, double world)
{
    const auto seen = view.extent(2);
    Bounds bounds{.west = (std::max(seen.left - world, 0.0) - 0.5) * 360,
                  .east = (std::min(seen.right - world, 1.0) - 0.5) * 360,
                  .south = -90,
                  .north = 90};
    if (seen.bottom < 1)
        bounds.south = latitudeOf({0, seen.bottom});
    if (seen.top > 0)
        bounds.north = latitudeOf({0, seen.top});
    return bounds;
}

template <typename Visit> void visitWorlds(const MapView& view, const Visit& visit)
{
    visitShifts({0, 1, 0, 1}, view.extent(2), visit);
}

// The fewest inhabitants of places whose names are shown.
std::int64_t leastPopulation(const MapView& view)
{
    constexpr double kWorld = 2e7; // where all of the world is seen
    const double zoom = std::log2(view.scale / MapPath::kTileSize);
    return std::llround(kWorld / std::pow(2.6, zoom));
}

/// Paints one picture.
class CoastPainting {
public:
    explicit CoastPainting(const MapView& view)
        : colors_(MapColors::of(view.isDark)), picture_(newPicture(view)),
          cairo_(drawingOn(picture_))
    {}

    MapPicture paint()
    {
        paintSea();
        visitWorlds(picture_.view, [this](double world) { paintLand(world); });
        paintPlaces();
        cairo_surface_flush(picture_.surface.get());
        return std::move(picture_);
    }

private:
    [[nodiscard]] bool hasCoasts() const { return picture_.view.zoom() <= kMostCoastZoom; }

    // Neither sea nor land is beyond the edges of the map.
    void paintSea()
    {
        const double top = std::max(picture_.view.y({0, 0}), 0.0);
        const double bottom = std::min(picture_.view.y({0, 1}), picture_.view.height);
        cairo_rectangle(cairo_.get(), 0, top, picture_.view.width, bottom - top);
        setColor(cairo_.get(), hasCoasts() ? colors_.sea : colors_.paper);
        cairo_fill(cairo_.get());
    }

    void paintLand(double world)
    {
        if (!hasCoasts())
            return;
        constexpr double kPixels = 0.7; // how far an outline may be from the coast
        const auto bounds = boundsSeen(picture_.view, world);
        const double middle = (bounds.north + bounds.south) / 2 * (std::numbers::pi / 180);
        const double tolerance = 360 / picture_.view.scale * kPixels * std::cos(middle);
        for (const auto& outline : landWithin(bounds, tolerance)) {
            cairo_new_sub_path(cairo_.get());
            for (const auto& point : outline) {
                auto position = positionOf(point.latitude, point.longitude);
                position.x += world;
                cairo_line_to(cairo_.get(), picture_.view.x(position), picture_.view.y(position));
            }
            cairo_close_path(cairo_.get());
        }
        cairo_set_fill_rule(cairo_.get(), CAIRO_FILL_RULE_EVEN_ODD);
        setColor(cairo_.get(), colors_.paper);
        cairo_fill(cairo_.get());
    }

    void paintPlaces()
    {
        LabelRoom room{picture_.view.width, picture_.view.height};
        for (const auto& place : placesSeen()) {
            const MapText text{cairo_.get(), place.name, kPlaceNameSize};
            const auto corner = room.place(place.center, kDotRadius, text.width(), text.height());
            if (!corner)
                continue;
            cairo_arc(cairo_.get(), place.center.x, place.center.y, kDotRadius, 0,
                      2 * std::numbers::pi);
            setColor(cairo_.get(), colors_.soft);
            cairo_fill(cairo_.get());
            text.drawWithEdge(*corner, colors_.soft, colors_.paper);
        }
    }

    // The largest ones first.
    [[nodiscard]] std::vector<SeenPlace> placesSeen() const
    {
        std::vector<SeenPlace> found;
        const auto least = leastPopulation(picture_.view);
        visitWorlds(picture_.view, [&](double world) {
            visitPlaces(boundsSeen(picture_.view, world), [&](const Place& place) {
                if (place.population < least)
                    return;
                auto position = positionOf(place.latitude, place.longitude);
                position.x += world;
                found.push_back({std::string{place.name},
                                 place.population,
                                 {picture_.view.x(position), picture_.view.y(position)}});
            });
        });
        const auto shown = std::min(found.size(), kMostPlaces);
        std::partial_sort(
            found.begin(), found.begin() + static_cast<std::ptrdiff_t>(shown), found.end(),
            [](const SeenPlace& a, const SeenPlace& b) { return a.population > b.population; });
        found.resize(shown);
        return found;
    }

    const MapColors& colors_;
    MapPicture picture_;
    std::shared_ptr<cairo_t> cairo_;
};

} // namespace

MapPicture paintCoasts(const MapView& view)
{
    return CoastPainting{view}.paint();
}

} // namespace host
