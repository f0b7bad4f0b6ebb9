// SPDX-License-Identifier: MIT

#include "WayPointSentence.h"

#include "FieldText.h"
#include "SentenceFields.h"
#include "SentenceList.h"
#include "SymbolMap.h"

#include <platform/GPSUtilities/NMEAUtils.h>

namespace magellan {
namespace {

namespace NMEAUtils = gps::NMEAUtils;

// Field positions:
//   0       1        2 3         4 5       6 7    8       9
//   PMGNWPL,4605.979,N,00713.315,E,0001529,M,NAME,COMMENT,ICON
constexpr std::string_view kSentence = "PMGNWPL";
enum Field : std::size_t {
    kKind,
    kLatitude,
    kLatitudeLetter,
    kLongitude,
    kLongitudeLetter,
    kAltitude,
    kAltitudeUnit,
    kName,
    kComment,
    kIcon
};

constexpr int kAltitudeDigits = 7;

/// A sentence that ends right before its name or its comment is damaged. Looked at before anything
/// is taken from it, so that the caller's point and record stay as they were.
void checkTexts(const SentenceFields& fields)
{
    fields.require(kAltitude + 1);
    if (fields.count() == kName || fields.count() == kComment)
        fields.throwRangeError(fields.count());
}

} // namespace

bool interpretWayPointSentence(std::string_view sentence, gps::GPSPoint& point,
                               gps::Dictionary* record)
{
    const auto fields = SentenceFields::ofSentence(sentence, kSentence);
    if (!fields)
        return false;
    if (record != nullptr)
        checkTexts(*fields);
    readPlace(*fields, point);
    point.time = 0;
    if (record == nullptr)
        return true;
    setInDictionary(*record, "name", kName, *fields);
    setInDictionary(*record, "comment", kComment, *fields);
    if (fields->count() > kIcon)
        record->setText("symbol",
                        SymbolMap::shared().symbolStringFromMagellanIcon(fields->at(kIcon)));
    return true;
}

std::optional<std::string_view> nameInWayPointSentence(std::string_view sentence)
{
    const auto fields = SentenceFields::ofSentence(sentence, kSentence);
    if (!fields)
        return std::nullopt;
    checkTexts(*fields);
    return fields->count() > kName ? std::optional{fields->at(kName)} : std::nullopt;
}

std::optional<std::string> makeWayPointSentenceWithPoint(const gps::GPSPoint& point,
                                                         const gps::Dictionary& record)
{
    std::string body;
    if (!appendPlace(body, kSentence, point, kAltitudeDigits))
        return std::nullopt;
    body.append(magellanStringFromDictionary(record, "name", kLongestName)).append(1, ',');
    body.append(magellanStringFromDictionary(record, "comment")).append(1, ',');
    body.append(SymbolMap::shared().magellanIconFromSymbolString(record.findString("symbol")));
    return NMEAUtils::addChecksumToNMEASentence(body);
}

std::vector<std::string> makeWayPointSentencesFromWaypointList(const gps::Array& list)
{
    return *makeSentences(list, "waypoint", makeWayPointSentenceWithPoint,
                          MissingPoint::kLeavesItOut);
}

} // namespace magellan
