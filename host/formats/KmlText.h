// SPDX-License-Identifier: MIT
// Pieces of KML text. Stateless: [any] thread.

#pragma once

#include <gps/GPSPoint.h>

#include <string>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

/// Appends longitude, latitude and, if it is finite, altitude in metres: the order that KML has
/// them in.
void appendKmlPlace(std::string& out, const gps::GPSPoint& point, char separator);

/// Appends the moment as a `when` element. Precondition: the point has a moment.
void appendKmlWhen(std::string& out, const gps::GPSPoint& point);

/// Appends `name`, if the record has one.
void appendKmlName(std::string& out, const gps::Dictionary& record);

/// Appends how a placemark begins, up to its geometry: name, description, moment, style, and the
/// record's every other field.
///
/// @param style   the identifier of a style of the document
/// @param moment  a point whose moment is the placemark's; may be null
void appendKmlHead(std::string& out, const gps::Dictionary& record, std::string_view style,
                   const gps::GPSPoint* moment = nullptr);

} // namespace host
