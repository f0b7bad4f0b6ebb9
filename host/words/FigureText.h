// SPDX-License-Identifier: MIT
// Lengths, heights, speeds, durations and coordinates in words, in the units that a user has
// chosen. The HTML page shows the same texts: host/page/model/format.js. Stateless. [any]

#pragma once

#include <string>

namespace host {

enum class UnitSystem {
    kMetric,   ///< km, m, km/h
    kImperial, ///< mi, ft, mph
    kNautical, ///< NM, m, kn
};

struct LengthUnit {
    const char* name;
    double metres;
};

/// The units of one system.
struct Units {
    LengthUnit length;
    LengthUnit small; ///< for lengths below one of `length`
    LengthUnit height;
    const char* speed; ///< one of `length` per hour
};

[[nodiscard]] const Units& unitsOf(UnitSystem system) noexcept;

/// Shown for a value that is not known, which these functions take as NaN.
inline constexpr char kUnknownText[] = "–";

/// With commas between groups of three digits, whatever the locale: "1,234.50".
[[nodiscard]] std::string numberText(double number, int decimals);

[[nodiscard]] std::string lengthText(double metres, UnitSystem system);
[[nodiscard]] std::string heightText(double metres, UnitSystem system);
[[nodiscard]] std::string speedText(double metresPerSecond, UnitSystem system);

/// In percent, with its sign: "+12.5 %".
/// @param slope  metres of height per metre of way
[[nodiscard]] std::string slopeText(double slope);

/// "45 s", "12 min", "3 h 05 min" or "2 d 3 h".
[[nodiscard]] std::string durationText(double seconds);

/// "44.70000° S, 169.10000° E". Precondition: the coordinates are valid.
[[nodiscard]] std::string coordinateText(double latitude, double longitude);

} // namespace host
