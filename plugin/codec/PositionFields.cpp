// SPDX-License-Identifier: MIT
// The fields that three of the four sentence kinds share, in both directions.

#include "PositionFields.h"

#include "SentenceFields.h"

#include <gps/NumberText.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <algorithm>
#include <array>

namespace magellan {
namespace {

namespace NMEAUtils = gps::NMEAUtils;

// Field indices:
//   0    1        2 3         4 5       6
//   NAME,4605.979,N,00713.315,E,0001529,M
enum Field : std::size_t {
    kLatitude = 1,
    kLatitudeLetter,
    kLongitude,
    kLongitudeLetter,
    kAltitude,
};

static_assert(kAltitude + 1 == kPositionFields);

bool areDigits(std::string_view text) noexcept
{
    return std::all_of(text.begin(), text.end(), gps::isDigit);
}

/// Whether a coordinate is "DDMM.mmmmm", or with one more digit of degrees, is less than `bound`
/// degrees and is not 0.
bool isCoordinateAsWritten(std::string_view text, std::string_view bound) noexcept
{
    const auto point = bound.size() + 2;
    return text.size() == point + 6 && text[point] == '.' && areDigits(text.substr(0, point)) &&
           areDigits(text.substr(point + 1)) && text.substr(0, bound.size()) < bound &&
           text[bound.size()] < '6' && text.find_first_not_of("0.") != std::string_view::npos;
}

bool isEither(std::string_view letter, std::string_view letters) noexcept
{
    return letter.size() == 1 && letters.find(letter) != std::string_view::npos;
}

} // namespace

bool isPositionAsWritten(const SentenceFields& fields, std::size_t altitudeWidth)
{
    const auto altitude = fields.at(kAltitude);
    return isCoordinateAsWritten(fields.at(kLatitude), "90") &&
           isEither(fields.at(kLatitudeLetter), "NS") &&
           isCoordinateAsWritten(fields.at(kLongitude), "180") &&
           isEither(fields.at(kLongitudeLetter), "EW") && altitude.size() == altitudeWidth &&
           areDigits(altitude) && fields.at(kPositionFields) == "M";
}

void readPosition(const SentenceFields& fields, gps::GPSPoint& point)
{
    fields.require(kPositionFields);
    point.latitude =
        NMEAUtils::convertNMEADegreesMinutes(fields.at(kLatitude), fields.at(kLatitudeLetter));
    point.longitude =
        NMEAUtils::convertNMEADegreesMinutes(fields.at(kLongitude), fields.at(kLongitudeLetter));
    point.altitude = gps::leadingNumber(fields.at(kAltitude)).value_or(0);
}

bool appendPosition(std::string& body, std::string_view name, const gps::GPSPoint& point,
                    int altitudeWidth)
{
    if (!NMEAUtils::hasNMEACoordinate(point.latitude, true) ||
        !NMEAUtils::hasNMEACoordinate(point.longitude, false))
        return false;
    constexpr std::size_t kSeparators = 6; // ",", ",", "," and ",M,"
    std::array<char, 2 * NMEAUtils::kLongestNMEACoordinate + gps::kMostOfInteger + kSeparators>
        text;
    char* at = text.data();
    *at++ = ',';
    at = NMEAUtils::putNMEACoordinate(at, point.latitude, true);
    *at++ = ',';
    at = NMEAUtils::putNMEACoordinate(at, point.longitude, false);
    *at++ = ',';
    at = gps::putPadded(at, gps::saturatedInt32(point.altitude), altitudeWidth);
    *at++ = ',';
    *at++ = 'M';
    *at++ = ',';
    body.append(name).append(text.data(), at);
    return true;
}

} // namespace magellan
