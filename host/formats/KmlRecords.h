// SPDX-License-Identifier: MIT
// Turns pieces of a KML placemark into records. Used by KmlReader, which walks the document.
// Stateless. [any]

#pragma once

#include "host/formats/PointValues.h"

#include <gps/Value.h>

#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace host {

/// Reads the numbers of a position: longitude, latitude and, if it has one, altitude in metres; it
/// is a NaN otherwise.
/// @param separator  between the numbers: "," in coordinates, " " in a gx:coord
/// @param unread     gets an altitude that is malformed
/// @return           whether the coordinates are valid
[[nodiscard]] bool readKmlPosition(std::string_view text, char separator, gps::GPSPoint& point,
                                   UnreadTexts& unread);

/// The record of a Point in a placemark, which becomes a waypoint or a geocache.
/// @param unread  gets a time that is malformed
[[nodiscard]] gps::Dictionary kmlWaypoint(const pugi::xml_node& placemark, gps::GPSPoint point,
                                          UnreadTexts& unread);

/// The record of a line in a placemark, without its points.
[[nodiscard]] gps::Dictionary kmlTrack(const pugi::xml_node& placemark);

/// A description without the tags and the character references of HTML.
[[nodiscard]] std::string plainDescription(std::string_view text);

} // namespace host
