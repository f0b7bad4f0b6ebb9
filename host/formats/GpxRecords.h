// SPDX-License-Identifier: MIT
// Turns one element of a GPX document into a record. Used by GpxReader, which walks the document.
// Stateless. [any]

#pragma once

#include "host/formats/PointValues.h"

#include <gps/Value.h>

#include <string_view>

namespace pugi {
class xml_node;
}

namespace host {

/// Whether an element has this local name and its parent's namespace. Makers put elements of their
/// own, with the same local names, between those of GPX.
[[nodiscard]] bool isOwn(const pugi::xml_node& element, std::string_view local);

/// The texts of a point's coordinates, elevation and time. A missing one is empty.
struct PointTexts {
    std::string_view latitude;
    std::string_view longitude;
    std::string_view elevation;
    std::string_view time;
};

/// Makes a point of its texts. An elevation that is missing or malformed is a NaN, and such a time
/// is 0.
/// @param unread  gets those that are malformed
/// @return        whether both coordinates are valid
[[nodiscard]] bool makePoint(const PointTexts& texts, gps::GPSPoint& point, UnreadTexts& unread);

/// The same for an element.
[[nodiscard]] bool readPoint(const pugi::xml_node& element, gps::GPSPoint& point,
                             UnreadTexts& unread);

/// The record of a <trkpt>.
[[nodiscard]] gps::Dictionary trackPointRecord(const gps::GPSPoint& point);

/// The record of a <wpt>: a geocache if its type, symbol or cache extension says so. A geocache is
/// found, and has a found date, only if its symbol is the found one.
[[nodiscard]] gps::Dictionary waypointRecord(const pugi::xml_node& element,
                                             const gps::GPSPoint& point);

/// The record of a <rtept>, which is always a plain waypoint.
[[nodiscard]] gps::Dictionary routePointRecord(const pugi::xml_node& element,
                                               const gps::GPSPoint& point);

/// The record of a <rte>, without its points.
[[nodiscard]] gps::Dictionary routeRecord(const pugi::xml_node& element);

/// The record of a <trk>, without its points.
[[nodiscard]] gps::Dictionary trackRecord(const pugi::xml_node& element);

} // namespace host
