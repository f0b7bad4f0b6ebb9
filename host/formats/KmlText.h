// SPDX-License-Identifier: MIT
// Pieces of KML text that KmlWriter and KmlLine share. Stateless. [any]

#pragma once

#include "host/points/Points.h"

#include <gps/GPSPoint.h>
#include <gps/NumberText.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

inline constexpr std::size_t kMostOfKmlPosition = 2 * kMostOfDegrees + 2 + gps::kMostOfDecimal;
inline constexpr std::size_t kMostOfKmlWhen = TimestampText::kSize + 14;

/// Writes longitude and latitude in degrees and, if it has one to state, altitude in metres, in the
/// order that KML requires.
/// @param at  has room for kMostOfKmlPosition characters
/// @return    the end of what was written
[[nodiscard]] char* putKmlPosition(char* at, const gps::GPSPoint& point, char separator) noexcept;

/// Writes the point's timestamp as a `when` element. Precondition: it has one.
/// @param at  has room for kMostOfKmlWhen characters
/// @return    the end of what was written
[[nodiscard]] char* putKmlWhen(char* at, const gps::GPSPoint& point, TimestampText& times) noexcept;

/// Appends a `name` element if the record has a name.
void appendKmlName(std::string& out, const gps::Dictionary& record);

/// Appends the start of a placemark, up to its extended data: name, description, timestamp, style.
///
/// @param style  the identifier of one of the document's styles
/// @param timed  the point whose timestamp the placemark gets; may be null
void appendKmlHead(std::string& out, const gps::Dictionary& record, std::string_view style,
                   const gps::GPSPoint* timed = nullptr);

/// Appends all other fields of a record as what extended data hold.
void appendKmlData(std::string& out, const gps::Dictionary& record);

/// Appends the extended data of a placemark, if there are any.
/// @param data  what appendKmlData() has made, and elements of this program
void appendExtendedData(std::string& out, std::string_view data);

/// Elements of this program in the extended data of a placemark, with which it reads its own files
/// exactly. Viewers do not show them, since they are in a namespace of their own.
inline constexpr char kKmlOwnNamespace[] = "urn:magellangps:kml";
inline constexpr char kKmlTrackRuns[] = "trackRuns"; ///< of a track; see KmlRuns.h
inline constexpr char kKmlRouteLine[] = "routeLine"; ///< the line of a route, behind its points

} // namespace host
