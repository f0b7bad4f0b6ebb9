// SPDX-License-Identifier: MIT

#include "TrackPointSentence.h"

#include "FieldText.h"
#include "SentenceFields.h"

#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

namespace magellan {
namespace {

namespace NMEAUtils = gps::NMEAUtils;

// Field positions:
//   0       1        2 3         4 5     6 7         8 9    10
//   PMGNTRK,4605.979,N,00713.315,E,01529,M,071548.24,A,NAME,110808
constexpr std::string_view kSentence = "PMGNTRK";
enum Field : std::size_t {
    kName,
    kLatitude,
    kLatitudeLetter,
    kLongitude,
    kLongitudeLetter,
    kAltitude,
    kAltitudeUnit,
    kTimeOfDay,
    kStatus,
    kTrackName,
    kDate
};

constexpr int kAltitudeDigits = 5;
constexpr double kFeetPerMetre = 3.2808399;

} // namespace

bool interpretTrackPointSentence(std::string_view sentence, gps::GPSPoint& point,
                                 gps::Dictionary* extras)
{
    const auto fields = SentenceFields::ofSentence(sentence, kSentence);
    if (!fields)
        return false;

    // Before anything is taken, so that a short sentence leaves the caller's point as it was.
    fields->require(kTimeOfDay + 1);
    readPlace(*fields, point);
    if (fields->at(kAltitudeUnit) == "F")
        point.altitude /= kFeetPerMetre;
    if (extras != nullptr && fields->count() > kTrackName && !fields->at(kTrackName).empty())
        extras->setText("trackName", fields->at(kTrackName));
    const auto timeOfDay = fields->at(kTimeOfDay);
    point.time = fields->count() > kDate ? NMEAUtils::convertNMEADate(fields->at(kDate), timeOfDay)
                                         : NMEAUtils::updateNMEADate(point.time, timeOfDay);
    return true;
}

std::optional<std::string> makeTrackPointSentenceWithPoint(const gps::GPSPoint& point)
{
    std::string body;
    if (!appendPlace(body, kSentence, point, kAltitudeDigits))
        return std::nullopt;
    const auto [date, time] = NMEAUtils::makeNMEADateFrom(point.time);
    body.append(time).append(",A,,").append(date);
    return NMEAUtils::addChecksumToNMEASentence(body);
}

} // namespace magellan
