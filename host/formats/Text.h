// SPDX-License-Identifier: MIT
// Texts and moments as outputs show them. Stateless: [any] thread.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gps/GPSPoint.h>

namespace host {

/// Takes the first character off a text. Precondition: the text is not empty.
/// @return  the character; U+FFFD for each byte that is no UTF-8
/// Source of the form: RFC 3629.
[[nodiscard]] char32_t takeCharacter(std::string_view& text) noexcept;

/// Appends a character as UTF-8.
void appendCharacter(std::string& out, char32_t character);

/// Appends a text as XML 1.0 content or attribute value: escaped, what XML forbids dropped, bytes that are no UTF-8 replaced.
void appendXml(std::string& out, std::string_view text);

/// A text as one line of a terminal or a table can show it: control characters replaced, at most `most` characters, with an
/// ellipsis as the last one where it was cut.
[[nodiscard]] std::string displayText(std::string_view text, std::size_t most = std::string::npos);

/// Texts in a row with something between each two.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view between);

/// How many characters a text has.
[[nodiscard]] std::size_t characterCount(std::string_view text) noexcept;

/// Whether a point's time is a moment. Without a date a receiver's time of day stands in 1970, long before any satellite
/// time: before 1980 there is no moment. Neither is there one past the year 9999.
[[nodiscard]] bool hasMoment(const gps::GPSPoint& point) noexcept;

/// Appends a latitude or a longitude to a billionth of a degree, which is 0.1 mm: what receivers tell is a hundred times coarser,
/// so that it comes back as the same sentence.
/// Precondition: it lies on the globe.
void appendDegrees(std::string& out, double degrees);

/// Appends "YYYY-MM-DD", `separator` and "HH:MM:SS", in UTC.
/// Precondition: the time is a moment.
void appendMoment(std::string& out, std::int64_t time, char separator);

/// Whether a point lies on the globe: finite, latitude within 90 and longitude within 180 degrees.
[[nodiscard]] bool isOnGlobe(const gps::GPSPoint& point) noexcept;

} // namespace host
