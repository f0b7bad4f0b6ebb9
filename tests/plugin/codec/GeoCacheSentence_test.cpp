// SPDX-License-Identifier: MIT
// Geocache sentences in both directions: every field count, every text, and damaged lines.

#include "SentenceValues.h"

#include <gps/Error.h>
#include <plugin/codec/GeoCacheSentence.h>
#include <plugin/codec/SentenceFields.h>
#include <support/LogCapture.h>
#include <support/RangeErrorText.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using support::firstFields;
using support::kBefore;
using support::kThirty;
using support::sentence;
using support::withField;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr char kGeoCacheBody[] =
    "PMGNGEO,4630.000,N,00730.000,E,0001529,M,GC1ABC,Old Mill,Anna,under a "
    "stone,Multi,010208,290208,1.5,2";
constexpr char kRecord[] = "{name = \"GC1ABC\", comment = \"Old Mill\", geocacheOwner = \"Anna\", "
                           "geocacheHint = \"under a stone\", "
                           "geocacheType = \"Multi\", datePlaced = \"010208\", dateFound = "
                           "\"290208\", difficulty = \"1.5\", terrain = \"2\", "
                           "symbol = \"Geocache Found\"}";
constexpr char kNowhere[] = "PMGNGEO,0000.00000,N,00000.00000,E,0000000,M,";

gps::Dictionary readGeoCacheRecord(std::string_view body)
{
    gps::GPSPoint point;
    gps::Dictionary record;
    EXPECT_TRUE(interpretGeoCacheSentence(sentence(body), point, &record)) << body;
    return record;
}

TEST(ReadGeoCache, ReadsPositionAndTextsAndSetsTheTimeToZero)
{
    gps::GPSPoint point = kBefore;
    gps::Dictionary record;
    EXPECT_TRUE(interpretGeoCacheSentence(sentence(kGeoCacheBody) + "\r\n", point, &record));
    EXPECT_EQ(gps::describe(point), "(46.5, 7.5, 1529, 0, 77)");
    EXPECT_EQ(gps::describe(record), kRecord);
}

TEST(ReadGeoCache, SouthAndWestAreNegativeAndFeetAreNotConverted)
{
    gps::GPSPoint point;
    EXPECT_TRUE(interpretGeoCacheSentence(
        sentence(withField(withField(withField(kGeoCacheBody, 2, "S"), 4, "W"), 6, "F")), point,
        nullptr));
    EXPECT_EQ(gps::describe(point), "(-46.5, -7.5, 1529, 0, 0)");
}

TEST(ReadGeoCache, AnEmptyPlacedDateIsAGeocacheWhateverTheFoundDateSays)
{
    EXPECT_EQ(*readGeoCacheRecord(withField(kGeoCacheBody, 12, "")).findString("symbol"),
              "Geocache");
    EXPECT_EQ(*readGeoCacheRecord(withField(kGeoCacheBody, 12, "")).findString("dateFound"),
              "290208");
    EXPECT_EQ(*readGeoCacheRecord(withField(kGeoCacheBody, 13, "")).findString("symbol"),
              "Geocache Found");
    EXPECT_EQ(*readGeoCacheRecord(withField(kGeoCacheBody, 12, " ")).findString("symbol"),
              "Geocache Found");
    EXPECT_EQ(*readGeoCacheRecord(withField(withField(kGeoCacheBody, 12, ""), 13, ""))
                   .findString("symbol"),
              "Geocache");
}

TEST(ReadGeoCache, ABodyOfFewerThanSixFieldsThrowsWithARecordAndWithout)
{
    for (std::size_t count = 1; count < 6; ++count) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        const auto line = sentence(firstFields(kGeoCacheBody, count));
        EXPECT_THROW((void)interpretGeoCacheSentence(line, point, &record), gps::RangeError)
            << count;
        EXPECT_THROW((void)interpretGeoCacheSentence(line, point, nullptr), gps::RangeError)
            << count;
        EXPECT_EQ(point, kBefore) << count;
    }
}

TEST(ReadGeoCache, ABodyOfSixToFifteenFieldsThrowsOnlyIfARecordIsGiven)
{
    for (std::size_t count = 6; count < 16; ++count) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        const auto line = sentence(firstFields(kGeoCacheBody, count));
        EXPECT_THROW((void)interpretGeoCacheSentence(line, point, &record), gps::RangeError)
            << count;
        EXPECT_EQ(point, kBefore) << count;
        EXPECT_TRUE(record.empty()) << count;
        EXPECT_TRUE(interpretGeoCacheSentence(line, point, nullptr)) << count;
        EXPECT_EQ(gps::describe(point), "(46.5, 7.5, 1529, 0, 77)") << count;
    }
}

std::string geoCacheRangeText(std::size_t count)
{
    gps::GPSPoint point;
    gps::Dictionary record;
    return support::rangeErrorOf([&] {
        (void)interpretGeoCacheSentence(sentence(firstFields(kGeoCacheBody, count)), point,
                                        &record);
    });
}

TEST(ReadGeoCache, ARangeErrorNamesTheFirstMissingFieldOrWithoutTextsThePlacedDate)
{
    for (std::size_t count = 1; count < 16; ++count)
        EXPECT_EQ(geoCacheRangeText(count),
                  count == 6 ? "A PMGNGEO sentence has no field 12: it has 6 fields"
                             : support::firstMissing("PMGNGEO", count));
    EXPECT_EQ(geoCacheRangeText(16), "");
}

TEST(ReadGeoCache, ABodyOfSixteenFieldsOrMoreIsAccepted)
{
    EXPECT_EQ(gps::describe(readGeoCacheRecord(kGeoCacheBody)), kRecord);
    EXPECT_EQ(gps::describe(readGeoCacheRecord(std::string{kGeoCacheBody} + ",more")), kRecord);
}

TEST(ReadGeoCache, TextsAreStoredUnchangedAndEmptyOnesAreKept)
{
    EXPECT_EQ(gps::describe(
                  readGeoCacheRecord("PMGNGEO,4630.000,N,00730.000,E,0001529,M,a_b;?, x ,,,,,,,")),
              "{name = \"a_b;?\", comment = \" x \", geocacheOwner = \"\", geocacheHint = \"\", "
              "geocacheType = \"\", datePlaced "
              "= \"\", "
              "dateFound = \"\", difficulty = \"\", terrain = \"\", symbol = \"Geocache\"}");
}

TEST(ReadGeoCache, AnotherLineIsRejectedAndChangesNothing)
{
    for (const auto& line :
         {std::string{}, std::string{kGeoCacheBody},
          support::breakChecksum(sentence(kGeoCacheBody)),
          sentence(withField(kGeoCacheBody, 0, "PMGNWPL")),
          sentence(withField(kGeoCacheBody, 0, "PMGNGEOX")),
          sentence(withField(kGeoCacheBody, 0, "pmgngeo")), sentence("PMGNCMD,END")}) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        EXPECT_FALSE(interpretGeoCacheSentence(line, point, &record)) << line;
        EXPECT_EQ(point, kBefore) << line;
        EXPECT_TRUE(record.empty()) << line;
    }
}

TEST(ReadGeoCache, ADamagedCharacterNeverGivesAnotherGeocache)
{
    support::forEachDamage(sentence(kGeoCacheBody), [](const std::string& line) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        if (!interpretGeoCacheSentence(line, point, &record))
            return;
        EXPECT_EQ(gps::describe(point), "(46.5, 7.5, 1529, 0, 77)") << line;
        EXPECT_EQ(gps::describe(record), kRecord) << line;
    });
}

TEST(GeoCacheName, IsTheNameThatReadingStores)
{
    const std::string body = kGeoCacheBody;
    const auto name = geoCacheName(SentenceFields{body});
    EXPECT_EQ(name, "GC1ABC");
    EXPECT_EQ(name->data(), body.data() + body.find("GC1ABC"));
    const auto unnamed = withField(kGeoCacheBody, 7, "");
    EXPECT_EQ(geoCacheName(SentenceFields{unnamed}), "");
}

TEST(GeoCacheName, ThrowsForABodyOfFewerThanSixteenFields)
{
    for (std::size_t count = 1; count < 16; ++count) {
        const auto body = firstFields(kGeoCacheBody, count);
        EXPECT_THROW((void)geoCacheName(SentenceFields{body}), gps::RangeError) << count;
    }
}

TEST(WriteGeoCache, IsOneSentenceWithItsChecksum)
{
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({-46.5, 7.5, 1529, 1218438948, 77},
                                            readGeoCacheRecord(kGeoCacheBody)),
              sentence("PMGNGEO,4630.00000,S,00730.00000,E,0001529,M,GC1ABC,Old Mill,Anna,under a "
                       "stone,Multi,010208,290208,1.5,2"));
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, {}), sentence(kNowhere + std::string{",,,,,,,,"}));
}

TEST(WriteGeoCache, ANameOf30CharactersIsWrittenWhole)
{
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, {{"name", kThirty}}),
              sentence(kNowhere + std::string{kThirty} + ",,,,,,,,"));
}

TEST(WriteGeoCache, ATypeWithAPrefixLosesOnlyTheBar)
{
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, {{"geocacheType", "Geocache|Multi"}}),
              sentence(kNowhere + std::string{",,,,GeocacheMulti,,,,"}));
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, {{"geocacheType", "Geocache|"}}),
              sentence(kNowhere + std::string{",,,,Geocache,,,,"}));
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, {{"geocacheType", "Multi"}}),
              sentence(kNowhere + std::string{",,,,Multi,,,,"}));
}

TEST(WriteGeoCache, EveryTextIsFiltered)
{
    gps::Dictionary record;
    for (const auto* key : {"name", "comment", "geocacheOwner", "geocacheHint", "geocacheType",
                            "datePlaced", "dateFound", "difficulty", "terrain"})
        record.set(key, "a,b*\xC3\xA9_c");
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, record),
              sentence(kNowhere + std::string{"abc,abc,abc,abc,abc,abc,abc,abc,abc"}));
}

TEST(WriteGeoCache, AValueThatIsNotATextCountsAsMissing)
{
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({}, {{"difficulty", 1.5}, {"name", gps::Array{"x"}}}),
              sentence(kNowhere + std::string{",,,,,,,,"}));
}

TEST(WriteGeoCache, DifficultyTerrainAndDatesSurviveAReadAndAWriteAsTheSameText)
{
    for (const auto* text : {"1.50", "05", "010208", "2008-02-01", "three"}) {
        const auto line = sentence(kNowhere + std::string{"N,,,,,"} + text + "," + text + "," +
                                   text + "," + text);
        gps::GPSPoint point;
        gps::Dictionary record;
        ASSERT_TRUE(interpretGeoCacheSentence(line, point, &record));
        for (const auto* key : {"datePlaced", "dateFound", "difficulty", "terrain"})
            EXPECT_EQ(*record.findString(key), text) << key;
        EXPECT_EQ(makeGeoCacheSentenceWithPoint(point, record), line);
    }
}

TEST(WriteGeoCache, AnAltitudeIsFilledUpToSevenCharactersAndSaturates)
{
    for (const auto& [altitude, text] : std::vector<std::pair<double, std::string>>{
             {12.9, "0000012"},
             {-5.5, "-000005"},
             {9999999, "9999999"},
             {10000000, "10000000"},
             {2147483648, "2147483647"},
             {-2147483649.0, "-2147483648"},
             {std::numeric_limits<double>::quiet_NaN(), "0000000"},
         })
        EXPECT_EQ(makeGeoCacheSentenceWithPoint({0, 0, altitude, 0, 0}, {}),
                  sentence("PMGNGEO,0000.00000,N,00000.00000,E," + text + ",M,,,,,,,,,"))
            << altitude;
}

TEST(WriteGeoCache, ACoordinateWithoutATextMakesNoSentence)
{
    EXPECT_EQ(makeGeoCacheSentenceWithPoint({-90.0000001, 0, 0, 0, 0}, {}), std::nullopt);
    EXPECT_EQ(
        makeGeoCacheSentenceWithPoint({0, std::numeric_limits<double>::infinity(), 0, 0, 0}, {}),
        std::nullopt);
    EXPECT_TRUE(makeGeoCacheSentenceWithPoint({-90, 180, 0, 0, 0}, {}));
}

TEST(WriteGeoCache, AReadSentenceIsWrittenAsTheSameOneInEachHemisphere)
{
    for (const auto* latitude : {"N", "S"}) {
        for (const auto* longitude : {"E", "W"}) {
            const auto line = sentence(
                "PMGNGEO,4605.97912," + std::string{latitude} + ",12213.31578," + longitude +
                ",-000042,M,a name of more than 20 characters,c,o,h,t,p,f,1,2");
            gps::GPSPoint point;
            gps::Dictionary record;
            ASSERT_TRUE(interpretGeoCacheSentence(line, point, &record));
            EXPECT_EQ(makeGeoCacheSentenceWithPoint(point, record), line);
        }
    }
}

TEST(GeoCacheAsWritten, IsReadAndWrittenAgainUnchanged)
{
    const std::string body = "PMGNGEO,4630.00000,S,00730.00000,W,0001529,M,a name of more than 20 "
                             "characters,c,o,h,t,p,f,"
                             "1,2";
    ASSERT_TRUE(isGeoCacheAsWritten(SentenceFields{body}));
    gps::GPSPoint point;
    gps::Dictionary record;
    readGeoCache(SentenceFields{body}, point, &record);
    EXPECT_EQ(makeGeoCacheSentenceWithPoint(point, record), sentence(body));
    for (const auto& other : {body + ",", body + "_", body.substr(0, body.size() - 2),
                              std::string{kGeoCacheBody}}) // the last has three decimals
        EXPECT_FALSE(isGeoCacheAsWritten(SentenceFields{other})) << other;
}

gps::Dictionary geocache(const char* name, double latitude = 0)
{
    return {{"name", name}, {"point", gps::GPSPoint{latitude, 0, 0, 0, 0}}};
}

std::string geoCacheLine(const std::string& name)
{
    return sentence(kNowhere + name + ",,,,,,,,");
}

TEST(WriteGeoCaches, AreInTheListsOrderWithTheirDuplicates)
{
    EXPECT_THAT(
        makeGeocacheSentencesFromGeocacheList({geocache("B"), geocache("A"), geocache("B")}),
        Optional(ElementsAre(geoCacheLine("B"), geoCacheLine("A"), geoCacheLine("B"))));
    EXPECT_THAT(makeGeocacheSentencesFromGeocacheList({}), Optional(IsEmpty()));
}

TEST(WriteGeoCaches, AListWhoseLastRecordLacksItsPointYieldsNoSentencesAtAll)
{
    const support::LogCapture log;
    EXPECT_EQ(
        makeGeocacheSentencesFromGeocacheList({geocache("A"), gps::Dictionary{{"name", "B"}}}),
        std::nullopt);
    EXPECT_THAT(log.lines(), ElementsAre("geocache B contains no point --\n{name = \"B\"}"));
}

TEST(WriteGeoCaches, AnElementThatIsNotARecordCountsAsOneWithoutAPoint)
{
    const support::LogCapture log;
    EXPECT_EQ(makeGeocacheSentencesFromGeocacheList({7, geocache("A")}), std::nullopt);
    EXPECT_THAT(log.lines(), ElementsAre("geocache (null) contains no point --\n7"));
}

TEST(WriteGeoCaches, ARecordOffTheGlobeIsSkippedWithOneLogLine)
{
    const support::LogCapture log;
    EXPECT_THAT(makeGeocacheSentencesFromGeocacheList({geocache("A", 91), geocache("B")}),
                Optional(ElementsAre(geoCacheLine("B"))));
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            "failed to create sentence for list from {name = \"A\", point = (91, 0, 0, 0, 0)}"));
}

} // namespace
} // namespace magellan
