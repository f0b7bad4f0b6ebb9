// SPDX-License-Identifier: MIT
// Pieces of KML text that KmlWriter and KmlLine share. Stateless. [any]

#pragma once

#include <gps/GPSPoint.h>

#include <string>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

/// Appends longitude and latitude in degrees and, if it is finite, altitude in metres, in the order
/// that KML requires.
void appendKmlPosition(std::string& out, const gps::GPSPoint& point, char separator);

/// Appends the point's timestamp as a `when` element. Precondition: it has one.
void appendKmlWhen(std::string& out, const gps::GPSPoint& point);

/// Appends a `name` element if the record has a name.
void appendKmlName(std::string& out, const gps::Dictionary& record);

/// Appends the start of a placemark, up to its geometry: name, description, timestamp, style, and
/// all other fields of the record as extended data.
///
/// @param style  the identifier of one of the document's styles
/// @param timed  the point whose timestamp the placemark gets; may be null
void appendKmlHead(std::string& out, const gps::Dictionary& record, std::string_view style,
                   const gps::GPSPoint* timed = nullptr);

} // namespace host
