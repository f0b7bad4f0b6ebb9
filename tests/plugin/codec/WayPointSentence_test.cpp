// SPDX-License-Identifier: MIT
// Waypoint sentences in both directions: every field count, every text, and damaged lines.

#include "SentenceValues.h"

#include <gps/Error.h>
#include <plugin/codec/SentenceFields.h>
#include <plugin/codec/WayPointSentence.h>
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

constexpr char kWayPointBody[] = "PMGNWPL,4630.000,N,00730.000,E,0001529,M,HOME,our house,c";

gps::Dictionary readWayPointRecord(std::string_view body)
{
    gps::GPSPoint point;
    gps::Dictionary record;
    EXPECT_TRUE(interpretWayPointSentence(sentence(body), point, &record)) << body;
    return record;
}

gps::GPSPoint readWayPoint(std::string_view body)
{
    gps::GPSPoint point = kBefore;
    EXPECT_TRUE(interpretWayPointSentence(sentence(body), point, nullptr)) << body;
    return point;
}

TEST(ReadWayPoint, ReadsPositionAndTextsAndSetsTheTimeToZero)
{
    gps::GPSPoint point = kBefore;
    gps::Dictionary record;
    EXPECT_TRUE(interpretWayPointSentence(sentence(kWayPointBody) + "\r\n", point, &record));
    EXPECT_EQ(gps::describe(point), "(46.5, 7.5, 1529, 0, 77)");
    EXPECT_EQ(gps::describe(record),
              "{name = \"HOME\", comment = \"our house\", symbol = \"Residence\"}");
}

TEST(ReadWayPoint, SouthAndWestAreNegative)
{
    const auto point = readWayPoint(withField(withField(kWayPointBody, 2, "S"), 4, "W"));
    EXPECT_EQ(point.latitude, -46.5);
    EXPECT_EQ(point.longitude, -7.5);
}

TEST(ReadWayPoint, AnAltitudeIsNotConvertedWhateverItsUnit)
{
    for (const auto* unit : {"F", "f", "M", ""})
        EXPECT_EQ(readWayPoint(withField(kWayPointBody, 6, unit)).altitude, 1529) << unit;
}

TEST(ReadWayPoint, AnAltitudeWithoutANumberIsZero)
{
    EXPECT_EQ(readWayPoint(withField(kWayPointBody, 5, "")).altitude, 0);
    EXPECT_EQ(readWayPoint(withField(kWayPointBody, 5, "nan")).altitude, 0);
    EXPECT_EQ(readWayPoint(withField(kWayPointBody, 5, "1e999")).altitude,
              std::numeric_limits<double>::max());
}

TEST(ReadWayPoint, ABodyOfFewerThanSixFieldsThrowsWithARecordAndWithout)
{
    for (std::size_t count = 1; count < 6; ++count) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        const auto line = sentence(firstFields(kWayPointBody, count));
        EXPECT_THROW((void)interpretWayPointSentence(line, point, &record), gps::RangeError)
            << count;
        EXPECT_THROW((void)interpretWayPointSentence(line, point, nullptr), gps::RangeError)
            << count;
        EXPECT_EQ(point, kBefore) << count;
    }
}

TEST(ReadWayPoint, ABodyOfSixFieldsIsAcceptedWithoutAnyText)
{
    EXPECT_TRUE(readWayPointRecord(firstFields(kWayPointBody, 6)).empty());
}

TEST(ReadWayPoint, ABodyOfSevenOrEightFieldsThrowsIfARecordIsGiven)
{
    for (const std::size_t count : {7U, 8U}) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        const auto line = sentence(firstFields(kWayPointBody, count));
        EXPECT_THROW((void)interpretWayPointSentence(line, point, &record), gps::RangeError)
            << count;
        EXPECT_EQ(point, kBefore) << count;
        EXPECT_TRUE(record.empty()) << count;
        EXPECT_TRUE(interpretWayPointSentence(line, point, nullptr)) << count;
    }
}

std::string wayPointRangeText(std::size_t count, gps::Dictionary* record)
{
    gps::GPSPoint point;
    return support::rangeErrorOf([&] {
        (void)interpretWayPointSentence(sentence(firstFields(kWayPointBody, count)), point, record);
    });
}

TEST(ReadWayPoint, ARangeErrorNamesTheSentenceTheFirstFieldThatIsMissingAndTheCount)
{
    gps::Dictionary record;
    EXPECT_EQ(wayPointRangeText(5, nullptr), "A PMGNWPL sentence has no field 5: it has 5 fields");
    for (std::size_t count = 1; count < 6; ++count) {
        EXPECT_EQ(wayPointRangeText(count, nullptr), support::firstMissing("PMGNWPL", count));
        EXPECT_EQ(wayPointRangeText(count, &record), support::firstMissing("PMGNWPL", count));
    }
    EXPECT_EQ(wayPointRangeText(7, &record), support::firstMissing("PMGNWPL", 7));
    EXPECT_EQ(wayPointRangeText(8, &record), support::firstMissing("PMGNWPL", 8));
    EXPECT_EQ(wayPointRangeText(9, &record), "");
}

TEST(ReadWayPoint, ABodyOfExactlyNineFieldsHasNameAndCommentButNoSymbol)
{
    EXPECT_EQ(gps::describe(readWayPointRecord(firstFields(kWayPointBody, 9))),
              "{name = \"HOME\", comment = \"our house\"}");
}

TEST(ReadWayPoint, ABodyOfTenFieldsOrMoreHasASymbol)
{
    EXPECT_EQ(*readWayPointRecord(kWayPointBody).findString("symbol"), "Residence");
    EXPECT_EQ(*readWayPointRecord(std::string{kWayPointBody} + ",more").findString("symbol"),
              "Residence");
}

TEST(ReadWayPoint, AnUnknownIconIsStoredAsItsOwnCode)
{
    EXPECT_EQ(*readWayPointRecord(withField(kWayPointBody, 9, "zz")).findString("symbol"), "zz");
    EXPECT_EQ(*readWayPointRecord(withField(kWayPointBody, 9, "")).findString("symbol"), "");
}

TEST(ReadWayPoint, TextsAreStoredUnchangedAndEmptyOnesAreKept)
{
    EXPECT_EQ(gps::describe(readWayPointRecord(withField(firstFields(kWayPointBody, 9), 7, ""))),
              "{name = \"\", comment = \"our house\"}");
    EXPECT_EQ(
        *readWayPointRecord(withField(kWayPointBody, 7, " a_name? of more than 20 characters "))
             .findString("name"),
        " a_name? of more than 20 characters ");
}

TEST(ReadWayPoint, AnotherLineIsRejectedAndChangesNothing)
{
    for (const auto& line :
         {std::string{}, std::string{kWayPointBody},
          support::breakChecksum(sentence(kWayPointBody)),
          sentence(withField(kWayPointBody, 0, "PMGNTRK")),
          sentence(withField(kWayPointBody, 0, "PMGNWPLX")),
          sentence(withField(kWayPointBody, 0, "pmgnwpl")), sentence("PMGNCMD,END")}) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        EXPECT_FALSE(interpretWayPointSentence(line, point, &record)) << line;
        EXPECT_EQ(point, kBefore) << line;
        EXPECT_TRUE(record.empty()) << line;
    }
}

TEST(ReadWayPoint, ADamagedCharacterNeverGivesAnotherWaypoint)
{
    const auto wholePoint = readWayPoint(kWayPointBody);
    const auto wholeRecord = readWayPointRecord(kWayPointBody);
    support::forEachDamage(sentence(kWayPointBody), [&](const std::string& line) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary record;
        if (!interpretWayPointSentence(line, point, &record))
            return;
        EXPECT_EQ(point, wholePoint) << line;
        EXPECT_EQ(record, wholeRecord) << line;
    });
}

TEST(WayPointName, IsTheNameThatReadingStores)
{
    const std::string body = kWayPointBody;
    const auto name = wayPointName(SentenceFields{body});
    EXPECT_EQ(name, "HOME");
    EXPECT_EQ(name->data(), body.data() + body.find("HOME"));
    const auto unnamed = withField(kWayPointBody, 7, "");
    EXPECT_EQ(wayPointName(SentenceFields{unnamed}), "");
    const auto nine = firstFields(kWayPointBody, 9);
    EXPECT_EQ(wayPointName(SentenceFields{nine}), "HOME");
}

TEST(WayPointName, IsMissingIfReadingStoresNoNameAndThrowsIfReadingThrows)
{
    const auto six = firstFields(kWayPointBody, 6);
    EXPECT_EQ(wayPointName(SentenceFields{six}), std::nullopt);
    for (const std::size_t count : {1U, 5U, 7U, 8U}) {
        const auto body = firstFields(kWayPointBody, count);
        EXPECT_THROW((void)wayPointName(SentenceFields{body}), gps::RangeError) << count;
    }
}

TEST(WriteWayPoint, IsOneSentenceWithItsChecksumAndWithoutATime)
{
    EXPECT_EQ(makeWayPointSentenceWithPoint(
                  {46.5, -7.5, 1529, 1218438948, 77},
                  {{"name", "HOME"}, {"comment", "our house"}, {"symbol", "House"}}),
              sentence("PMGNWPL,4630.00000,N,00730.00000,W,0001529,M,HOME,our house,c"));
}

TEST(WriteWayPoint, ANameOf30CharactersIsCutTo20AndACommentOf30IsWrittenWhole)
{
    EXPECT_EQ(makeWayPointSentenceWithPoint({}, {{"name", kThirty}, {"comment", kThirty}}),
              sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,abcdefghijklmnopqrst,"
                       "abcdefghijklmnopqrstuvwxyz1234,a"));
}

TEST(WriteWayPoint, TextsAreFilteredBeforeTheyAreCut)
{
    EXPECT_EQ(
        makeWayPointSentenceWithPoint({}, {{"name", "a,b*c$d_e?" + std::string{kThirty}},
                                           {"comment", "Caf\xC3\xA9, hot; 5\" * |"}}),
        sentence(
            "PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,abcdeabcdefghijklmno,Caf hot 5  ,a"));
}

TEST(WriteWayPoint, ARecordWithoutASymbolHasTheIconA)
{
    EXPECT_EQ(makeWayPointSentenceWithPoint({}, {}),
              sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,,,a"));
    EXPECT_EQ(makeWayPointSentenceWithPoint({}, {{"symbol", 7}}),
              sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,,,a"));
    EXPECT_EQ(makeWayPointSentenceWithPoint({}, {{"symbol", "no such symbol"}}),
              sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,,,a"));
}

TEST(WriteWayPoint, AnIconIsNotFilteredAndWrittenEvenIfItIsEmpty)
{
    EXPECT_EQ(makeWayPointSentenceWithPoint({}, {{"symbol", "_|"}}),
              sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,,,_|"));
    EXPECT_EQ(makeWayPointSentenceWithPoint({}, {{"symbol", ""}}),
              sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M,,,"));
}

TEST(WriteWayPoint, AnAltitudeIsCutTowardZeroAndFilledUpToSevenCharacters)
{
    for (const auto& [altitude, text] : std::vector<std::pair<double, std::string>>{
             {12.9, "0000012"},
             {-5.5, "-000005"},
             {-0.5, "0000000"},
             {-999999, "-999999"},
             {-1000000, "-1000000"},
             {9999999.9, "9999999"},
             {10000000, "10000000"},
             {2147483647, "2147483647"},
             {2147483648, "2147483647"},
             {-2147483648.0, "-2147483648"},
             {-2147483649.0, "-2147483648"},
             {std::numeric_limits<double>::infinity(), "2147483647"},
             {std::numeric_limits<double>::quiet_NaN(), "0000000"},
         })
        EXPECT_EQ(makeWayPointSentenceWithPoint({0, 0, altitude, 0, 0}, {}),
                  sentence("PMGNWPL,0000.00000,N,00000.00000,E," + text + ",M,,,a"))
            << altitude;
}

TEST(WriteWayPoint, ACoordinateWithoutATextMakesNoSentence)
{
    EXPECT_EQ(makeWayPointSentenceWithPoint({90.0000001, 0, 0, 0, 0}, {}), std::nullopt);
    EXPECT_EQ(makeWayPointSentenceWithPoint({0, 180.0000001, 0, 0, 0}, {}), std::nullopt);
    EXPECT_TRUE(makeWayPointSentenceWithPoint({90, -180, 0, 0, 0}, {}));
}

TEST(WriteWayPoint, AReadSentenceIsWrittenAsTheSameOneInEachHemisphere)
{
    for (const auto* latitude : {"N", "S"}) {
        for (const auto* longitude : {"E", "W"}) {
            const auto line =
                sentence("PMGNWPL,4605.97912," + std::string{latitude} + ",12213.31578," +
                         longitude + ",-000042,M,abcdefghijklmnopqrst,hi,c");
            gps::GPSPoint point;
            gps::Dictionary record;
            ASSERT_TRUE(interpretWayPointSentence(line, point, &record));
            EXPECT_EQ(makeWayPointSentenceWithPoint(point, record), line);
        }
    }
}

gps::Dictionary waypoint(const char* name, double latitude = 0)
{
    return {{"name", name}, {"point", gps::GPSPoint{latitude, 0, 0, 0, 0}}};
}

std::string wayPointLine(const std::string& name)
{
    return sentence("PMGNWPL,0000.00000,N,00000.00000,E,0000000,M," + name + ",,a");
}

bool isWayPointBodyAsWritten(std::string_view body)
{
    return isWayPointAsWritten(SentenceFields{body});
}

TEST(WayPointAsWritten, IsReadAndWrittenAgainUnchanged)
{
    constexpr std::string_view kPosition = "PMGNWPL,4630.00000,N,00730.00000,E,0001529,M,";
    for (const std::string_view texts : {"HOME,our house,c", ",,c", "abcdefghijklmnopqrst,,c"}) {
        const auto body = std::string{kPosition} + std::string{texts};
        EXPECT_TRUE(isWayPointBodyAsWritten(body)) << body;
        gps::GPSPoint point;
        gps::Dictionary record;
        readWayPoint(SentenceFields{body}, point, &record);
        EXPECT_EQ(makeWayPointSentenceWithPoint(point, record), sentence(body));
    }
    for (const std::string_view texts :
         {"HOME,our house,??", "HOME,our house,c,", "HOME,our house", "HO_ME,our house,c",
          "HOME,our_house,c", "abcdefghijklmnopqrstu,,c"})
        EXPECT_FALSE(isWayPointBodyAsWritten(std::string{kPosition} + std::string{texts})) << texts;
    EXPECT_FALSE(isWayPointBodyAsWritten(kWayPointBody)); // three decimals
}

TEST(WriteWayPoints, AreInTheListsOrderWithTheirDuplicates)
{
    EXPECT_THAT(
        makeWayPointSentencesFromWaypointList({waypoint("B"), waypoint("A"), waypoint("B")}),
        ElementsAre(wayPointLine("B"), wayPointLine("A"), wayPointLine("B")));
    EXPECT_THAT(makeWayPointSentencesFromWaypointList({}), IsEmpty());
}

TEST(WriteWayPoints, OfThreeRecordsASecondWithoutItsPointIsSkippedWithOneLogLine)
{
    const support::LogCapture log;
    EXPECT_THAT(
        makeWayPointSentencesFromWaypointList(
            {waypoint("A"), gps::Dictionary{{"name", "B"}, {"comment", "lost"}}, waypoint("C")}),
        ElementsAre(wayPointLine("A"), wayPointLine("C")));
    EXPECT_THAT(log.lines(),
                ElementsAre("waypoint B contains no point --\n{name = \"B\", comment = \"lost\"}"));
}

TEST(WriteWayPoints, APointOrRecordOfAnotherTypeCountsAsMissing)
{
    const support::LogCapture log;
    EXPECT_THAT(makeWayPointSentencesFromWaypointList(
                    {gps::Dictionary{{"point", "46N 7E"}}, 7, waypoint("C")}),
                ElementsAre(wayPointLine("C")));
    EXPECT_THAT(log.lines(),
                ElementsAre("waypoint (null) contains no point --\n{point = \"46N 7E\"}",
                            "waypoint (null) contains no point --\n7"));
}

TEST(WriteWayPoints, ARecordOffTheGlobeIsSkippedWithOneLogLine)
{
    const support::LogCapture log;
    EXPECT_THAT(makeWayPointSentencesFromWaypointList({waypoint("A", 91), waypoint("B")}),
                ElementsAre(wayPointLine("B")));
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            "failed to create sentence for list from {name = \"A\", point = (91, 0, 0, 0, 0)}"));
}

} // namespace
} // namespace magellan
