// SPDX-License-Identifier: MIT
// Numbers are rounded once, to the decimals that are shown.

#include "host/words/FigureText.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"

#include <gps/NumberText.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace host {
namespace {

constexpr LengthUnit kMetre{"m", 1};
constexpr LengthUnit kFoot{"ft", 0.3048};

constexpr std::array kUnits{
    Units{{"km", 1000}, kMetre, kMetre, "km/h"},
    Units{{"mi", 1609.344}, kFoot, kFoot, "mph"},
    Units{{"NM", 1852}, kMetre, kMetre, "kn"},
};

// Half a unit rounds up, as in the page.
std::int64_t rounded(double number) noexcept
{
    return static_cast<std::int64_t>(std::floor(number + 0.5));
}

std::string degreeText(double degrees, char positive, char negative)
{
    constexpr int kDecimals = 5; // about a metre
    std::string text;
    gps::appendFixed(text, std::abs(degrees), kDecimals);
    const bool isZero = text.find_first_not_of("0.") == std::string::npos;
    return isZero ? text + "°" : fmt::format("{}° {}", text, degrees < 0 ? negative : positive);
}

} // namespace

const Units& unitsOf(UnitSystem system) noexcept
{
    return kUnits[static_cast<std::size_t>(system)];
}

std::string numberText(double number, int decimals)
{
    std::string text;
    gps::appendFixed(text, std::abs(number), decimals);
    groupDigits(text, std::min(text.find('.'), text.size()));
    const bool isZero = text.find_first_not_of("0.,") == std::string::npos;
    return number < 0 && !isZero ? "−" + text : text;
}

std::string lengthText(double metres, UnitSystem system)
{
    const auto& unit = unitsOf(system).length;
    return std::isnan(metres) ? kUnknownText
                              : numberText(metres / unit.metres, 2) + " " + unit.name;
}

std::string heightText(double metres, UnitSystem system)
{
    const auto& unit = unitsOf(system).height;
    return std::isnan(metres) ? kUnknownText
                              : numberText(static_cast<double>(rounded(metres / unit.metres)), 0) +
                                    " " + unit.name;
}

std::string speedText(double metresPerSecond, UnitSystem system)
{
    const auto& units = unitsOf(system);
    constexpr double kHour = 3600; // seconds
    return std::isnan(metresPerSecond)
               ? kUnknownText
               : numberText(metresPerSecond * kHour / units.length.metres, 1) + " " + units.speed;
}

std::string slopeText(double slope)
{
    if (std::isnan(slope))
        return kUnknownText;
    const auto text = numberText(std::abs(slope) * 100, 1);
    const char* const sign = text == "0.0" ? "" : slope > 0 ? "+" : "−";
    return sign + text + " %";
}

std::string durationText(double seconds)
{
    constexpr std::int64_t kHour = 60; // minutes
    constexpr std::int64_t kDay = 24;  // hours
    if (std::isnan(seconds))
        return kUnknownText;
    if (seconds < 60)
        return trFormat("{} s", numberText(seconds, 0));
    const auto minutes = rounded(seconds / 60);
    const auto hours = minutes / kHour;
    if (hours == 0)
        return trFormat("{} min", minutes);
    if (hours < 2 * kDay)
        return trFormat("{} h {:02} min", hours, minutes % kHour);
    const auto days = hours / kDay;
    return trFormat("{} d {} h", numberText(static_cast<double>(days), 0), hours % kDay);
}

std::string coordinateText(double latitude, double longitude)
{
    return degreeText(latitude, 'N', 'S') + ", " + degreeText(longitude, 'E', 'W');
}

} // namespace host
