// SPDX-License-Identifier: MIT
// Waypoints. Unlike a track point's, the altitude is in metres whatever its unit field says.

#include "WayPointSentence.h"

#include "../common/Lines.h"
#include "FieldText.h"
#include "PositionFields.h"
#include "SentenceFields.h"
#include "SentenceList.h"
#include "SentenceText.h"
#include "SymbolMap.h"

namespace magellan {
namespace {

// Field indices:
//   0       1        2 3         4 5       6 7    8       9
//   PMGNWPL,4605.979,N,00713.315,E,0001529,M,NAME,COMMENT,ICON
enum Field : std::size_t {
    kAltitudeUnit = kPositionFields,
    kName,
    kComment,
    kIcon,
    kFieldCount,
};

constexpr int kAltitudeWidth = 7;

bool appendWayPointSentence(std::string& text, const gps::GPSPoint& point,
                            const gps::Dictionary& record)
{
    return appendSentence(text, [&] {
        if (!appendPosition(text, kWayPointSentence, point, kAltitudeWidth))
            return false;
        appendDeviceText(text, record, "name", kLongestName);
        text += ',';
        appendDeviceText(text, record, "comment");
        text += ',';
        text += SymbolMap::shared().magellanIconFromSymbolString(record.findString("symbol"));
        return true;
    });
}

constexpr SentenceListKind kWayPointList{"waypoint", appendWayPointSentence,
                                         MissingPoint::kSkipRecord};

/// Validates the field count up front, so that a truncated sentence leaves the caller's point and
/// record untouched. A sentence may end after the altitude, but not right before its name or
/// comment.
void requireTexts(const SentenceFields& fields)
{
    fields.require(kPositionFields);
    if (fields.count() == kName || fields.count() == kComment)
        fields.throwRangeError(fields.count());
}

} // namespace

bool interpretWayPointSentence(std::string_view sentence, gps::GPSPoint& point,
                               gps::Dictionary* record)
{
    const auto fields = SentenceFields::ofSentence(sentence, kWayPointSentence);
    if (fields)
        readWayPoint(*fields, point, record);
    return fields.has_value();
}

void readWayPoint(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* record)
{
    if (record != nullptr)
        requireTexts(fields);
    readPosition(fields, point);
    point.time = 0;
    if (record == nullptr)
        return;
    setInDictionary(*record, "name", kName, fields);
    setInDictionary(*record, "comment", kComment, fields);
    if (fields.count() > kIcon)
        record->setText("symbol",
                        SymbolMap::shared().symbolStringFromMagellanIcon(fields.at(kIcon)));
}

std::optional<std::string_view> wayPointName(const SentenceFields& fields)
{
    requireTexts(fields);
    return fields.count() > kName ? std::optional{fields.at(kName)} : std::nullopt;
}

bool isWayPointAsWritten(const SentenceFields& fields)
{
    return fields.count() == kFieldCount && isPositionAsWritten(fields, kAltitudeWidth) &&
           fields.at(kName).size() <= kLongestName &&
           deviceCharacterSet().containsAll(fields.at(kName)) &&
           deviceCharacterSet().containsAll(fields.at(kComment)) &&
           SymbolMap::shared().containsIcon(fields.at(kIcon));
}

std::optional<std::string> makeWayPointSentenceWithPoint(const gps::GPSPoint& point,
                                                         const gps::Dictionary& record)
{
    return appended([&](std::string& text) { return appendWayPointSentence(text, point, record); });
}

std::vector<std::string> makeWayPointSentencesFromWaypointList(const gps::Array& list)
{
    return *makeSentences(list, kWayPointList); // no list is rejected
}

bool appendWayPointLine(const gps::Value& element, std::string& text)
{
    return appendSentenceOf(element, kWayPointList, kFileLineEnd, text);
}

} // namespace magellan
