// SPDX-License-Identifier: MIT
// The fields that three of the four sentence kinds share, in both directions.

#include "PositionFields.h"

#include "SentenceFields.h"

#include <gps/NumberText.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

namespace magellan {
namespace {

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
        gps::NMEAUtils::convertNMEADegreesMinutes(fields.at(kLatitude), fields.at(kLatitudeLetter));
    point.longitude = gps::NMEAUtils::convertNMEADegreesMinutes(fields.at(kLongitude),
                                                                fields.at(kLongitudeLetter));
    point.altitude = gps::leadingNumber(fields.at(kAltitude)).value_or(0);
}

bool appendPosition(std::string& body, std::string_view name, const gps::GPSPoint& point,
                    int altitudeWidth)
{
    const auto latitude = gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(point.latitude, true);
    const auto longitude =
        gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(point.longitude, false);
    if (!latitude || !longitude)
        return false;
    body.append(name).append(1, ',');
    body.append(latitude->degreesMinutes).append(1, ',').append(1, latitude->direction);
    body.append(1, ',');
    body.append(longitude->degreesMinutes).append(1, ',').append(1, longitude->direction);
    body.append(1, ',');
    gps::appendPadded(body, gps::saturatedInt32(point.altitude), altitudeWidth);
    body += ",M,";
    return true;
}

} // namespace magellan
