// SPDX-License-Identifier: MIT
// NMEAUtils: what every NMEA 0183 sentence shares - frame, checksum, coordinates, dates. Stateless:
// [any] thread. Source of the forms: NMEA 0183 (sentence frame, "DDMM.mmm" coordinates, "HHMMSS"
// times, "DDMMYY" dates).

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gps::NMEAUtils {

/// A coordinate as a sentence writes it.
struct CoordinateText {
    std::string degreesMinutes; ///< "DDMM.mmmmm" or "DDDMM.mmmmm"
    char direction = 'N';       ///< 'N', 'S', 'E' or 'W'
};

/// A moment as a sentence writes it.
struct DateTimeText {
    std::string date; ///< "DDMMYY", or empty
    std::string time; ///< "HHMMSS.00", or empty
};

/// `checkAndTrimNMEASentence:`: the body of a valid sentence: "$", one or more printable ASCII
/// characters without "$" and "*",
/// "*", two hexadecimal digits of either case that match, then nothing but an optional line end (CR
/// LF, CR or LF).
/// @param line  one line as read
/// @return      a view into the line; none for anything else
[[nodiscard]] std::optional<std::string_view>
checkAndTrimNMEASentence(std::string_view line) noexcept;

/// `checksumFromSentence:`: the exclusive-or of all bytes of a body.
[[nodiscard]] std::uint8_t checksumFromSentence(std::string_view body) noexcept;

/// `addChecksumToNMEASentence:`: "$", the body, "*" and two upper-case hexadecimal digits; no line
/// end.
[[nodiscard]] std::string addChecksumToNMEASentence(std::string_view body);

/// `convertNMEADegreesMinutes:direction:`: degrees, negative for exactly "S" and "W". The leading
/// number's whole part divided by 100 is degrees, the rest minutes; a field without a number reads
/// as 0.
[[nodiscard]] double convertNMEADegreesMinutes(std::string_view degreesMinutes,
                                               std::string_view direction) noexcept;

/// `convertDegreesToNMEADegreesMinutes:asLatitude:direction:`: rounded to the nearest 0.00001
/// minute; what rounds to zero is 'N' and 'E'.
/// @return  none when the value is not finite or outside 90 (latitude) or 180 degrees
[[nodiscard]] std::optional<CoordinateText> convertDegreesToNMEADegreesMinutes(double degrees,
                                                                               bool asLatitude);

/// `convertNMEADate:andTime:`: seconds since 1970-01-01 00:00 UTC, fractions dropped. Years 80-99
/// are 1980-1999, 00-79 are 2000-2079.
/// @return  0 when either text is empty or malformed
[[nodiscard]] std::int64_t convertNMEADate(std::string_view date, std::string_view time) noexcept;

/// `updateNMEADate:withTime:`: the day of the previous value (also day 0) with a new time of day.
/// @return  the previous value when the time is malformed, or when 64 bits cannot hold that time of
/// that day
[[nodiscard]] std::int64_t updateNMEADate(std::int64_t previous, std::string_view time) noexcept;

/// `makeNMEADateFrom:withTime:`: "110808" and "071548.00".
/// @return  two empty texts for 0 and for every time before 1980 or after 2079, which two digits of
/// a year cannot tell
[[nodiscard]] DateTimeText makeNMEADateFrom(std::int64_t time);

} // namespace gps::NMEAUtils
