// SPDX-License-Identifier: MIT
// NMEAUtils: the parts that all NMEA 0183 sentences share: frame, checksum, coordinates and dates.
// The sentence codec and the serial link use them. Stateless. [any]
// Source of the forms: NMEA 0183 (sentence frame, "DDMM.mmm" coordinates, "HHMMSS" times, "DDMMYY"
// dates).

#pragma once

#include <cstddef>
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

/// A time as a sentence writes it.
struct DateTimeText {
    std::string date; ///< "DDMMYY", or empty
    std::string time; ///< "HHMMSS.00", or empty
};

/// A line without its line end: CR LF, CR or LF. [any]
[[nodiscard]] constexpr std::string_view withoutLineEnd(std::string_view line) noexcept
{
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

/// Whether a line has the frame of a sentence, whatever its checksum and its characters: "$", at
/// least one character, "*", two hexadecimal digits and an optional line end. [any]
[[nodiscard]] bool isFramedNMEASentence(std::string_view line) noexcept;

/// `checkAndTrimNMEASentence:`: checks a sentence and returns its body. A valid sentence is "$", a
/// body of one or more printable ASCII characters other than "$" and "*", "*", the checksum as two
/// hexadecimal digits of either case, and an optional line end (CR LF, CR or LF). [any]
/// @param line  one line as read
/// @return      a view into the line; nullopt if the sentence is not valid
[[nodiscard]] std::optional<std::string_view>
checkAndTrimNMEASentence(std::string_view line) noexcept;

/// `checksumFromSentence:`: the exclusive-or of all bytes of a body. [any]
[[nodiscard]] std::uint8_t checksumFromSentence(std::string_view body) noexcept;

/// `addChecksumToNMEASentence:`: "$", the body, "*" and the checksum as two upper-case hexadecimal
/// digits, without a line end. [any]
[[nodiscard]] std::string addChecksumToNMEASentence(std::string_view body);

/// Appends "*" and the checksum of a body that is the end of a text, as
/// addChecksumToNMEASentence() does. [any]
/// @param body  the index of the body's first character, which follows the "$"
void appendNMEAChecksum(std::string& text, std::size_t body);

/// `convertNMEADegreesMinutes:direction:`: reads "DDMM.mmm" as degrees, negative if the direction
/// is exactly "S" or "W". A field that does not begin with a number is 0. [any]
[[nodiscard]] double convertNMEADegreesMinutes(std::string_view degreesMinutes,
                                               std::string_view direction) noexcept;

/// `convertDegreesToNMEADegreesMinutes:asLatitude:direction:`: rounds to 0.00001 minute; a value
/// that rounds to zero is 'N' or 'E'. [any]
/// @return  nullopt if the value is not finite or exceeds 90 (latitude) or 180 degrees
[[nodiscard]] std::optional<CoordinateText> convertDegreesToNMEADegreesMinutes(double degrees,
                                                                               bool asLatitude);

/// Whether convertDegreesToNMEADegreesMinutes() has a text for a value. [any]
[[nodiscard]] constexpr bool hasNMEACoordinate(double degrees, bool asLatitude) noexcept
{
    const double most = asLatitude ? 90 : 180;
    return degrees >= -most && degrees <= most; // false for a NaN
}

inline constexpr std::size_t kLongestNMEACoordinate = 13; ///< "18000.00000,W"

/// Writes what convertDegreesToNMEADegreesMinutes() returns, with "," before the direction. [any]
///
/// Precondition: hasNMEACoordinate() returns true, and `at` has room for kLongestNMEACoordinate
/// characters.
/// @return  the end of what was written
[[nodiscard]] char* putNMEACoordinate(char* at, double degrees, bool asLatitude) noexcept;

/// `convertNMEADate:andTime:`: reads "DDMMYY" and "HHMMSS" as seconds since 1970-01-01 00:00 UTC,
/// without fractions. The years 80-99 are 1980-1999, and 00-79 are 2000-2079. [any]
/// @return  0 if either text is empty or not valid
[[nodiscard]] std::int64_t convertNMEADate(std::string_view date, std::string_view time) noexcept;

/// `updateNMEADate:withTime:`: the day of the previous value, which may be day 0, with a new time
/// of day. [any]
/// @return  the previous value if the time is not valid or the result exceeds 64 bits
[[nodiscard]] std::int64_t updateNMEADate(std::int64_t previous, std::string_view time) noexcept;

inline constexpr std::size_t kNMEADateSize = 6; ///< "110808"
inline constexpr std::size_t kNMEATimeSize = 9; ///< "071548.00"

/// The times that a year of two digits can carry: 1980-01-01 00:00:00 to 2079-12-31 23:59:59.
inline constexpr std::int64_t kFirstNMEATime = 315532800;
inline constexpr std::int64_t kLastNMEATime = 3471292799;

/// Whether makeNMEADateFrom() returns a date and a time. [any]
[[nodiscard]] constexpr bool hasNMEADate(std::int64_t time) noexcept
{
    return time >= kFirstNMEATime && time <= kLastNMEATime;
}

/// Writes what makeNMEADateFrom() returns. [any]
///
/// Precondition: `date` and `time` have room for kNMEADateSize and kNMEATimeSize characters.
/// @return  whether that is not empty. If not, nothing was written
[[nodiscard]] bool putNMEADate(char* date, char* time, std::int64_t timestamp) noexcept;

/// `makeNMEADateFrom:withTime:`: such as "110808" and "071548.00". [any]
/// @return  two empty texts for 0 and any other time before 1980 or after 2079, which a year of two
///          digits cannot express
[[nodiscard]] DateTimeText makeNMEADateFrom(std::int64_t time);

} // namespace gps::NMEAUtils
