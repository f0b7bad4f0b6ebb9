// SPDX-License-Identifier: MIT
// The fields that three of the four sentence kinds share, in both directions.

#include "PositionFields.h"

#include "SentenceFields.h"

#include <gps/NumberText.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

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

} // namespace

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
    std::array<char, 2 * NMEAUtils::kLongestNMEACoordinate + 3> text;
    char* at = text.data();
    *at++ = ',';
    at = NMEAUtils::putNMEACoordinate(at, point.latitude, true);
    *at++ = ',';
    at = NMEAUtils::putNMEACoordinate(at, point.longitude, false);
    *at++ = ',';
    body.append(name).append(text.data(), at);
    gps::appendPadded(body, gps::saturatedInt32(point.altitude), altitudeWidth);
    body += ",M,";
    return true;
}

} // namespace magellan
