// SPDX-License-Identifier: MIT

#include "GeoCacheSentence.h"

#include "FieldText.h"
#include "SentenceFields.h"
#include "SentenceList.h"

#include <gps/Geocache.h>
#include <platform/GPSUtilities/NMEAUtils.h>

namespace magellan {
namespace {

namespace NMEAUtils = gps::NMEAUtils;

// Field positions:
//   0       1        2 3         4 5       6 7    8       9     10   11   12     13    14 15
//   PMGNGEO,4605.979,N,00713.315,E,0001529,M,NAME,COMMENT,OWNER,HINT,TYPE,PLACED,FOUND,DIFFICULTY,TERRAIN
constexpr std::string_view kSentence = "PMGNGEO";
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
    kOwner,
    kHint,
    kType,
    kDatePlaced,
    kDateFound,
    kDifficulty,
    kTerrain,
    kFieldCount
};

constexpr int kAltitudeDigits = 7;

/// The keys' values are the text fields, from kName to kTerrain.
static_assert(gps::kGeocacheKeys.size() == kFieldCount - kName);

/// A sentence that stops early is damaged. What it misses first is where it would have gone on, or
/// the placed date where it stops right before its texts. Looked at before anything is taken from
/// it, so that the caller's point and record stay as they were.
void checkTexts(const SentenceFields& fields)
{
    if (fields.count() == kAltitudeUnit)
        fields.throwRangeError(kDatePlaced);
    fields.require(kFieldCount);
}

} // namespace

bool interpretGeoCacheSentence(std::string_view sentence, gps::GPSPoint& point,
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
    for (std::size_t i = 0; i < gps::kGeocacheKeys.size(); ++i)
        setInDictionary(*record, gps::kGeocacheKeys[i], kName + i, *fields);
    record->setText("symbol", fields->at(kDatePlaced).empty() ? gps::kGeocacheSymbol
                                                              : gps::kFoundGeocacheSymbol);
    return true;
}

std::optional<std::string_view> nameInGeoCacheSentence(std::string_view sentence)
{
    const auto fields = SentenceFields::ofSentence(sentence, kSentence);
    if (!fields)
        return std::nullopt;
    checkTexts(*fields);
    return fields->at(kName);
}

std::optional<std::string> makeGeoCacheSentenceWithPoint(const gps::GPSPoint& point,
                                                         const gps::Dictionary& record)
{
    std::string body;
    if (!appendPlace(body, kSentence, point, kAltitudeDigits))
        return std::nullopt;
    for (const auto key : gps::kGeocacheKeys) {
        // A type given as "Geocache|Multi" goes out as "GeocacheMulti": the filter takes the "|",
        // and nothing else is dropped.
        body.append(magellanStringFromDictionary(record, key)).append(1, ',');
    }
    body.pop_back();
    return NMEAUtils::addChecksumToNMEASentence(body);
}

std::optional<std::vector<std::string>>
makeGeocacheSentencesFromGeocacheList(const gps::Array& list)
{
    return makeSentences(list, "geocache", makeGeoCacheSentenceWithPoint,
                         MissingPoint::kEndsTheList);
}

} // namespace magellan
