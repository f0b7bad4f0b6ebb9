// SPDX-License-Identifier: MIT
// One element of a GPX document as a record. For the reader, which walks the document. Stateless:
// [any] thread.

#pragma once

#include <gps/Value.h>

#include <string_view>

namespace pugi {
class xml_node;
}

namespace host {

/// An element's name without its namespace's prefix. A view into the document.
[[nodiscard]] std::string_view localName(const pugi::xml_node& element);

/// Whether an element has this name in its parent's namespace. Makers put elements of their own
/// between those of the form.
[[nodiscard]] bool isOwn(const pugi::xml_node& element, std::string_view local);

/// Reads a point's place and moment. A malformed elevation or time is 0.
/// @return  whether the place is possible: both coordinates are numbers, and on the globe
[[nodiscard]] bool readPoint(const pugi::xml_node& element, gps::GPSPoint& point);

/// A <wpt>: a waypoint, or a geocache by its type, its symbol or its cache extension.
[[nodiscard]] gps::Dictionary waypointRecord(const pugi::xml_node& element,
                                             const gps::GPSPoint& point);

/// A <rtept>: always a plain waypoint.
[[nodiscard]] gps::Dictionary routePointRecord(const pugi::xml_node& element,
                                               const gps::GPSPoint& point);

/// What a <rte> tells of itself, and a <trk>: without their points.
[[nodiscard]] gps::Dictionary routeRecord(const pugi::xml_node& element);
[[nodiscard]] gps::Dictionary trackRecord(const pugi::xml_node& element);

} // namespace host
