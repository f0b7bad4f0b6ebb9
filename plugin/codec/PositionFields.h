// SPDX-License-Identifier: MIT
// Position fields: how track point, waypoint and geocache sentences begin. Used by the code of
// these three kinds. Stateless. [any]

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace gps {
struct GPSPoint;
} // namespace gps

namespace magellan {

class SentenceFields;

/// How many fields these are: the sentence name, latitude, its letter, longitude, its letter, and
/// the altitude. The altitude's unit follows them in all three kinds.
inline constexpr std::size_t kPositionFields = 6;

/// Reads latitude, longitude and altitude. The altitude's unit is not considered.
/// @throws gps::RangeError  there are fewer than kPositionFields fields. `point` is unchanged
void readPosition(const SentenceFields& fields, gps::GPSPoint& point);

/// Whether these fields and the altitude's unit are as appendPosition() would write what
/// readPosition() reads. For rare forms, such as a coordinate of 0, it does not say so.
/// Precondition: there are more than kPositionFields fields.
[[nodiscard]] bool isPositionAsWritten(const SentenceFields& fields, std::size_t altitudeWidth);

/// Appends "NAME,latitude,letter,longitude,letter,altitude,M," to a body. The altitude is truncated
/// toward zero, saturated at 32 bits and padded with zeros to `altitudeWidth` characters, its sign
/// included.
/// @return  whether both coordinates can be written. If not, `body` is unchanged
[[nodiscard]] bool appendPosition(std::string& body, std::string_view name,
                                  const gps::GPSPoint& point, int altitudeWidth);

} // namespace magellan
