// SPDX-License-Identifier: MIT
// Which of the world's places are near a point. For people, who know where Wanaka is but not where
// 44.7 degrees south is; and for the time zone in which they were there. Stateless. [any]
//
// The data is that of GeoNames, under Creative Commons Attribution 4.0: whoever shows it names the
// source.

#pragma once

#include "host/base/Translation.h"
#include "host/points/Bounds.h"

#include <gps/GPSPoint.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// A place with at least 1,000 inhabitants.
struct Place {
    std::string_view name;
    std::string_view country; ///< two letters, ISO 3166
    std::string_view zone;    ///< of the time zone database, such as "Pacific/Auckland"
    double latitude = 0;      ///< degrees, known to a thousandth
    double longitude = 0;
    std::int64_t population = 0; ///< known to two digits
};

struct NearbyPlace {
    Place place;
    double kilometres = 0;
};

/// The place that is nearest to a point.
/// @param most  its largest distance, in kilometres
/// Precondition: the point has valid coordinates.
[[nodiscard]] std::optional<NearbyPlace> nearestPlace(const gps::GPSPoint& point, double most);

/// Visits the places within bounds.
void visitPlaces(const Bounds& bounds, const std::function<void(const Place& place)>& visit);

/// The distance up to which whereabouts() names a place, in kilometres.
inline constexpr double kFarPlace = 300;

/// Where a point is, in words: "near Wanaka", or "140 km south-west of Wanaka". Empty if nobody
/// lives within kFarPlace.
/// @param textOf  gets the text in the user's language. Files are English
[[nodiscard]] std::string whereabouts(const gps::GPSPoint& point, TextOf textOf = englishText);

/// The time zone of a point: that of the nearest place. Empty, which stands for UTC, if nobody
/// lives within 500 km.
[[nodiscard]] std::string_view timeZoneAt(const gps::GPSPoint& point);

} // namespace host
