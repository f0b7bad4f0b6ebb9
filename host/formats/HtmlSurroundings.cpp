// SPDX-License-Identifier: MIT
// Of the places around an area the largest are shown: readers are more likely to know them.

#include "host/formats/HtmlSurroundings.h"

#include "host/base/JsonText.h"
#include "host/formats/HtmlData.h"
#include "host/places/Places.h"

#include <gps/NumberText.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <set>
#include <span>
#include <string_view>
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
    bounds.south -= degrees;
    bounds.north += degrees;
    return bounds;
}

// The largest places in an area and around it. The margin is widened until there are enough.
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
    return places;
}

} // namespace

void appendSurroundings(std::string& out, const std::vector<Area>& areas)
{
    const std::span shown{areas.data(), std::min(areas.size(), kMostPageAreas)};
    appendJsonKey(out, "areas");
    out += '[';
    for (const auto& area : shown) {
        out += &area == shown.data() ? "" : ",\n";
        appendArea(out, area);
    }
    out += ']';
    appendJsonKey(out, "places");
    out += '[';
    std::set<std::string_view> written; // areas that are near each other have the same places
    for (const auto& area : shown) {
        for (const auto& place : placesAround(area)) {
            if (!written.insert(place.name).second)
                continue;
            out += written.size() == 1 ? "" : ",\n";
            appendPlace(out, place);
        }
    }
    out += ']';
}

} // namespace host
