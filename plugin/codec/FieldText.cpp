// SPDX-License-Identifier: MIT

#include "FieldText.h"

#include "SentenceFields.h"

#include <gps/NumberText.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

namespace magellan {

const gps::CharacterSet& deviceCharacterSet()
{
    // Never destroyed: a worker may still read it while the process ends.
    static const auto* const set = new gps::CharacterSet{kDeviceCharacters};
    return *set;
}

std::string magellanStringFromDictionary(const gps::Dictionary& record, std::string_view key,
                                         int /*length*/)
{
    std::string text = magellanStringFromDictionary(record, key);
    if (text.size() > kLongestName)
        text.resize(kLongestName);
    return text;
}

std::string magellanStringFromDictionary(const gps::Dictionary& record, std::string_view key)
{
    const auto* text = record.findString(key);
    return text != nullptr ? gps::stringByRemovingCharactersNotInSet(*text, deviceCharacterSet())
                           : std::string{};
}

void setInDictionary(gps::Dictionary& record, std::string_view key, std::size_t index,
                     const SentenceFields& fields)
{
    if (fields.count() >= index)
        record.setText(key, fields.at(index));
}

void readPlace(const SentenceFields& fields, gps::GPSPoint& point)
{
    fields.require(6);
    point.latitude = gps::NMEAUtils::convertNMEADegreesMinutes(fields.at(1), fields.at(2));
    point.longitude = gps::NMEAUtils::convertNMEADegreesMinutes(fields.at(3), fields.at(4));
    point.altitude = gps::leadingNumber(fields.at(5)).value_or(0);
}

bool appendPlace(std::string& body, std::string_view name, const gps::GPSPoint& point,
                 int altitudeDigits)
{
    const auto latitude = gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(point.latitude, true);
    const auto longitude =
        gps::NMEAUtils::convertDegreesToNMEADegreesMinutes(point.longitude, false);
    if (!latitude || !longitude)
        return false;
    body.append(name)
        .append(1, ',')
        .append(latitude->degreesMinutes)
        .append(1, ',')
        .append(1, latitude->direction);
    body.append(1, ',')
        .append(longitude->degreesMinutes)
        .append(1, ',')
        .append(1, longitude->direction)
        .append(1, ',');
    gps::appendPadded(body, gps::saturatedInt32(point.altitude), altitudeDigits);
    body += ",M,";
    return true;
}

} // namespace magellan
