// SPDX-License-Identifier: MIT
// Of the places around an area the largest are shown: readers are more likely to know them. Land
// comes in levels, of which the page draws the most detailed one that covers the map.

#include "host/formats/HtmlSurroundings.h"

#include "host/base/JsonText.h"
#include "host/formats/HtmlData.h"
#include "host/places/Coasts.h"
#include "host/places/Places.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>

namespace host {
namespace {

std::int64_t millionths(double degrees)
{
    return std::llround(degrees * 1e6);
}

void appendNumbers(std::string& out, std::string_view key,
                   std::initializer_list<std::int64_t> numbers)
{
    appendJsonKey(out, key);
    for (char separator = '['; const auto number : numbers) {
        out += std::exchange(separator, ',');
        gps::appendInteger(out, number);
    }
    out += ']';
}

void appendArea(std::string& out, const Area& area)
{
    const auto& [west, east, south, north] = area.bounds;
    out += '{';
    appendMember(out, "place", whereabouts(area.first));
    appendMember(out, "zone", timeZoneAt(area.first));
    appendNumbers(out, "bounds",
                  {millionths(west), millionths(south), millionths(east), millionths(north)});
    out += '}';
}

void appendPlace(std::string& out, const Place& place)
{
    out += '{';
    appendMember(out, "name", place.name);
    appendNumbers(out, "at", {millionths(place.latitude), millionths(place.longitude)});
    out += '}';
}

Bounds widened(Bounds bounds, double degrees)
{
    bounds.west -= degrees;
    bounds.east += degrees;
    bounds.south = std::max(bounds.south - degrees, -90.0);
    bounds.north = std::min(bounds.north + degrees, 90.0);
    return bounds;
}

double spanOf(const Bounds& bounds)
{
    return std::max(bounds.east - bounds.west, bounds.north - bounds.south);
}

void appendOutline(std::string& out, const Outline& outline, const Bounds& bounds, double unit)
{
    std::int64_t lastX = 0;
    std::int64_t lastY = 0;
    out += '"';
    for (const auto& point : outline) {
        const auto x = std::llround((point.longitude - bounds.west) / unit);
        const auto y = std::llround((point.latitude - bounds.south) / unit);
        appendDigits(out, x - std::exchange(lastX, x));
        appendDigits(out, y - std::exchange(lastY, y));
    }
    out += '"';
}

// Whether there is neither a coast nor the sea.
bool isInland(const std::vector<Outline>& land, const Bounds& bounds)
{
    const auto isCorner = [&bounds](const MapPoint& point) {
        return (point.longitude == bounds.west || point.longitude == bounds.east) &&
               (point.latitude == bounds.south || point.latitude == bounds.north);
    };
    return land.size() == 1 && std::all_of(land[0].begin(), land[0].end(), isCorner);
}

// Appends the land within bounds, unless it fills them.
// @param detail  how many steps of the outlines' precision the longer side of the bounds has
void appendLand(std::string& out, const Bounds& bounds, double detail, bool& isFirst)
{
    const double tolerance = spanOf(bounds) / detail;
    const auto land = landWithin(bounds, tolerance);
    if (isInland(land, bounds))
        return;
    const double unit = std::ceil(tolerance * 0.5e6) / 1e6;
    out += std::exchange(isFirst, false) ? "{" : ",\n{";
    appendNumbers(out, "bounds",
                  {millionths(bounds.west), millionths(bounds.south), millionths(bounds.east),
                   millionths(bounds.north)});
    appendMember(out, "unit", std::optional<std::int64_t>{millionths(unit)});
    appendJsonKey(out, "outlines");
    for (char separator = '['; const auto& outline : land) {
        out += std::exchange(separator, ',');
        appendOutline(out, outline, bounds, unit);
    }
    out += land.empty() ? "[]}" : "]}";
}

// The bounds of all areas: they begin behind the widest gap between them.
Bounds boundsOfAll(std::span<const Area> areas)
{
    std::vector<Bounds> sorted;
    for (const auto& area : areas)
        sorted.push_back(area.bounds);
    std::sort(sorted.begin(), sorted.end(),
              [](const Bounds& a, const Bounds& b) { return a.west < b.west; });
    std::size_t start = 0;
    double widest = sorted.front().west + 360 - sorted.back().east;
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        if (sorted[i].west - sorted[i - 1].east > widest) {
            widest = sorted[i].west - sorted[i - 1].east;
            start = i;
        }
    }
    Bounds all;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        const auto& bounds = sorted[(start + i) % sorted.size()];
        const double shift = start + i < sorted.size() ? 0 : 360;
        all.extend(bounds.west + shift, bounds.south);
        all.extend(bounds.east + shift, bounds.north);
    }
    return all;
}

// From the world to the areas, each in more detail.
void appendLandLevels(std::string& out, std::span<const Area> areas,
                      std::span<const Area> detailedAreas)
{
    constexpr Bounds kWorld{.west = -180, .east = 180, .south = -90, .north = 90};
    constexpr double kWorldDetail = 500;
    constexpr double kDetail = 600;
    constexpr double kLeastMargin = 1.5; // degrees
    constexpr double kWide = 120;        // degrees, for which the world is detailed enough
    bool isFirst = true;
    if (areas.empty())
        return;
    appendLand(out, kWorld, kWorldDetail, isFirst);
    const auto around = [&](const Bounds& bounds) {
        const auto wide = widened(bounds, std::max(spanOf(bounds), kLeastMargin));
        if (spanOf(wide) < kWide)
            appendLand(out, wide, kDetail, isFirst);
    };
    if (areas.size() > 1)
        around(boundsOfAll(areas));
    for (const auto& area : detailedAreas)
        around(area.bounds);
}

// Adds a place, in the stead of the last one if there are enough.
void includePlace(std::vector<Place>& places, const Place& place)
{
    const auto isSame = [&place](const Place& other) {
        return other.name == place.name && other.latitude == place.latitude;
    };
    if (std::any_of(places.begin(), places.end(), isSame))
        return;
    if (places.size() == kMostAreaPlaces)
        places.pop_back();
    places.push_back(place);
}

// The place that an area is named after, and the largest ones in the area and around it. The margin
// is widened until there are enough.
std::vector<Place> placesAround(const Area& area)
{
    std::vector<Place> places;
    for (const double margin : {0.1, 0.3, 1.0}) { // degrees
        places.clear();
        visitPlaces(widened(area.bounds, margin),
                    [&places](const Place& place) { places.push_back(place); });
        if (places.size() >= kMostAreaPlaces)
            break;
    }
    const auto shown = std::min(places.size(), kMostAreaPlaces);
    std::partial_sort(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(shown),
                      places.end(),
                      [](const Place& a, const Place& b) { return a.population > b.population; });
    places.resize(shown);
    if (const auto named = nearestPlace(area.first, kFarPlace))
        includePlace(places, named->place);
    return places;
}

} // namespace

void appendSurroundings(std::string& out, const std::vector<Area>& areas)
{
    const std::span detailed{areas.data(), std::min(areas.size(), kMostDetailedAreas)};
    appendJsonKey(out, "areas");
    out += '[';
    for (const auto& area : areas) {
        out += &area == areas.data() ? "" : ",\n";
        appendArea(out, area);
    }
    out += ']';
    appendJsonKey(out, "places");
    out += '[';
    // Areas that are near each other have the same places; places elsewhere can have their names.
    std::set<std::tuple<std::string_view, double, double>> written;
    for (const auto& area : detailed) {
        for (const auto& place : placesAround(area)) {
            if (!written.insert({place.name, place.latitude, place.longitude}).second)
                continue;
            out += written.size() == 1 ? "" : ",\n";
            appendPlace(out, place);
        }
    }
    out += ']';
    appendJsonKey(out, "land");
    out += '[';
    appendLandLevels(out, areas, detailed);
    out += ']';
}

} // namespace host
