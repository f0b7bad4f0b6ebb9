// SPDX-License-Identifier: MIT
// Looks through bands of latitude, and in each through the longitudes that are near enough.

#include "host/places/Places.h"

#include "host/base/TranslatedFormat.h"
#include "host/places/PlaceTable.h"
#include "host/points/TrackFigures.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

namespace host {
namespace {

constexpr double kKilometresPerDegree = 111; // of latitude; no degree is shorter
constexpr double kNearPlace = 25;            // kilometres: a place that one would name
constexpr double kFarthestZone = 500;

double degrees(std::int32_t thousandths)
{
    return thousandths / 1000.0;
}

gps::GPSPoint pointOf(const PlaceRecord& record)
{
    return {.latitude = degrees(record.latitude), .longitude = degrees(record.longitude)};
}

Place placeOf(const PlaceRecord& record)
{
    const auto& table = PlaceTable::shared();
    const auto text = table.text(record.text);
    return {.name = text.substr(2),
            .country = text.substr(0, 2),
            .zone = table.zone(record.zone),
            .latitude = degrees(record.latitude),
            .longitude = degrees(record.longitude),
            .population = record.hundreds * std::int64_t{100}};
}

int bandOf(double latitude)
{
    return std::clamp(static_cast<int>(std::floor(latitude)) + 90, 0, PlaceTable::kBands - 1);
}

// The records of a band from one longitude to another one, both within the usual range.
std::span<const PlaceRecord> recordsBetween(int band, double west, double east)
{
    const auto records = PlaceTable::shared().band(band);
    const auto first = std::lower_bound(records.begin(), records.end(), west,
                                        [](const PlaceRecord& record, double longitude) {
                                            return degrees(record.longitude) < longitude;
                                        });
    const auto last = std::upper_bound(first, records.end(), east,
                                       [](double longitude, const PlaceRecord& record) {
                                           return longitude < degrees(record.longitude);
                                       });
    return {first, last};
}

// Visits the records within bounds, which may cross the 180th meridian on either side.
template <typename Visit> void visitRecords(Bounds bounds, const Visit& visit)
{
    if (bounds.east - bounds.west >= 360) { // around the world: each record once
        bounds.west = -180;
        bounds.east = 180;
    }
    for (int band = bandOf(bounds.south); band <= bandOf(bounds.north); ++band) {
        for (const double shift : {-360, 0, 360}) {
            for (const auto& record :
                 recordsBetween(band, bounds.west + shift, bounds.east + shift)) {
                const double latitude = degrees(record.latitude);
                if (latitude >= bounds.south && latitude <= bounds.north)
                    visit(record);
            }
        }
    }
}

// Bounds that contain all points within a distance.
Bounds boundsAround(const gps::GPSPoint& point, double kilometres)
{
    const double down = kilometres / kKilometresPerDegree;
    const double northernmost = std::abs(point.latitude) + down;
    const double across =
        northernmost < 90 ? down / std::cos(northernmost * (std::numbers::pi / 180)) : 360;
    Bounds bounds;
    bounds.extend(point.longitude - std::min(across, 180.0), point.latitude - down);
    bounds.extend(point.longitude + std::min(across, 180.0), point.latitude + down);
    return bounds;
}

// A place nearer than `most`, if there is one, found among those that may be.
std::optional<NearbyPlace> nearestWithin(const gps::GPSPoint& point, double most)
{
    const PlaceOnSphere here{point};
    const PlaceRecord* nearest = nullptr;
    visitRecords(boundsAround(point, most), [&](const PlaceRecord& record) {
        const double kilometres = kilometresBetween(here, PlaceOnSphere{pointOf(record)});
        if (kilometres > most)
            return;
        most = kilometres;
        nearest = &record;
    });
    return nearest != nullptr ? std::optional{NearbyPlace{placeOf(*nearest), most}} : std::nullopt;
}

constexpr auto* kNearText = marked("near {}");

// The direction from a place to a point: the initial course of the great circle.
// Source: R. W. Sinnott, "Virtues of the Haversine", Sky & Telescope 68, 1984; the spherical law of
// sines and cosines.
const char* directionTo(const gps::GPSPoint& point, const Place& place)
{
    static constexpr std::array kTexts{
        marked("{:.0f} km north of {}"), marked("{:.0f} km north-east of {}"),
        marked("{:.0f} km east of {}"),  marked("{:.0f} km south-east of {}"),
        marked("{:.0f} km south of {}"), marked("{:.0f} km south-west of {}"),
        marked("{:.0f} km west of {}"),  marked("{:.0f} km north-west of {}")};
    constexpr double kRadians = std::numbers::pi / 180;
    const double from = place.latitude * kRadians;
    const double to = point.latitude * kRadians;
    const double east = (point.longitude - place.longitude) * kRadians;
    const double course =
        std::atan2(std::sin(east) * std::cos(to),
                   std::cos(from) * std::sin(to) - std::sin(from) * std::cos(to) * std::cos(east));
    const auto eighths = std::lround(course / (std::numbers::pi / 4)); // -4 to 4
    return kTexts[static_cast<std::size_t>(eighths + 8) % 8];
}

} // namespace

std::optional<NearbyPlace> nearestPlace(const gps::GPSPoint& point, double most)
{
    // Most points have a place within a few kilometres.
    for (const double limit : {10.0, 40.0, 160.0}) {
        if (limit >= most)
            break;
        if (auto found = nearestWithin(point, limit))
            return found;
    }
    return nearestWithin(point, most);
}

void visitPlaces(const Bounds& bounds, const std::function<void(const Place& place)>& visit)
{
    visitRecords(bounds, [&](const PlaceRecord& record) { visit(placeOf(record)); });
}

std::string whereabouts(const gps::GPSPoint& point, TextOf textOf)
{
    const auto found = nearestPlace(point, kFarPlace);
    if (!found)
        return {};
    if (found->kilometres <= kNearPlace)
        return formatEither(textOf(kNearText), kNearText, fmt::make_format_args(found->place.name));
    const auto* const text = directionTo(point, found->place);
    return formatEither(textOf(text), text,
                        fmt::make_format_args(found->kilometres, found->place.name));
}

std::string_view timeZoneAt(const gps::GPSPoint& point)
{
    const auto found = nearestPlace(point, kFarthestZone);
    return found ? found->place.zone : std::string_view{};
}

} // namespace host
