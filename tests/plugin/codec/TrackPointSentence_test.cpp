// SPDX-License-Identifier: MIT
// Track point sentences in both directions: feet, dates, names and field counts.

#include "SentenceValues.h"

#include <gps/Error.h>
#include <gps/Value.h>
#include <plugin/codec/TrackPointSentence.h>
#include <support/RangeErrorText.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
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
using support::sentence;
using support::withField;

constexpr char kTrackPointBody[] = "PMGNTRK,4630.000,N,00730.000,E,01529,M,071548.24,A,NAME,110808";
constexpr std::int64_t kTime = 1218438948;     // the time in the body
constexpr std::int64_t kOtherDay = 1204243200; // 2008-02-29
constexpr std::int64_t kTimeOfDay = 7 * 3600 + 15 * 60 + 48;

gps::GPSPoint readTrackPoint(std::string_view body)
{
    gps::GPSPoint point = kBefore;
    EXPECT_TRUE(interpretTrackPointSentence(sentence(body), point, nullptr)) << body;
    return point;
}

TEST(ReadTrackPoint, ReadsPositionTimeAndName)
{
    gps::GPSPoint point = kBefore;
    gps::Dictionary extras;
    EXPECT_TRUE(interpretTrackPointSentence(sentence(kTrackPointBody) + "\r\n", point, &extras));
    EXPECT_EQ(gps::describe(point), "(46.5, 7.5, 1529, 1218438948, 77)");
    EXPECT_EQ(gps::describe(extras), "{trackName = \"NAME\"}");
}

TEST(ReadTrackPoint, SouthAndWestAreNegative)
{
    const auto point = readTrackPoint(withField(withField(kTrackPointBody, 2, "S"), 4, "W"));
    EXPECT_EQ(point.latitude, -46.5);
    EXPECT_EQ(point.longitude, -7.5);
}

TEST(ReadTrackPoint, ABodyOfFewerThanEightFieldsThrowsAndChangesNothing)
{
    for (std::size_t count = 1; count < 8; ++count) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary extras{{"trackName", "OLD"}};
        EXPECT_THROW((void)interpretTrackPointSentence(
                         sentence(firstFields(kTrackPointBody, count)), point, &extras),
                     gps::RangeError)
            << count;
        EXPECT_EQ(point, kBefore) << count;
        EXPECT_EQ(gps::describe(extras), "{trackName = \"OLD\"}") << count;
    }
}

std::string trackPointRangeText(std::size_t count)
{
    gps::GPSPoint point;
    return support::rangeErrorOf([&] {
        (void)interpretTrackPointSentence(sentence(firstFields(kTrackPointBody, count)), point,
                                          nullptr);
    });
}

TEST(ReadTrackPoint, ARangeErrorNamesTheSentenceTheFirstFieldThatIsMissingAndTheCount)
{
    EXPECT_EQ(trackPointRangeText(7), "A PMGNTRK sentence has no field 7: it has 7 fields");
    for (std::size_t count = 1; count < 8; ++count)
        EXPECT_EQ(trackPointRangeText(count), support::firstMissing("PMGNTRK", count));
    EXPECT_EQ(trackPointRangeText(8), "");
}

TEST(ReadTrackPoint, ABodyOfTenFieldsOrMoreMayHaveAName)
{
    for (const auto& [count, name] :
         std::vector<std::pair<std::size_t, std::string>>{{8, "{}"},
                                                          {9, "{}"},
                                                          {10, "{trackName = \"NAME\"}"},
                                                          {11, "{trackName = \"NAME\"}"}}) {
        gps::GPSPoint point;
        gps::Dictionary extras;
        EXPECT_TRUE(interpretTrackPointSentence(sentence(firstFields(kTrackPointBody, count)),
                                                point, &extras))
            << count;
        EXPECT_EQ(gps::describe(extras), name) << count;
    }
}

TEST(ReadTrackPoint, ABodyOfTenFieldsKeepsThePreviousPointsDateAndOneOfElevenSetsBoth)
{
    EXPECT_EQ(readTrackPoint(firstFields(kTrackPointBody, 8)).time, kOtherDay + kTimeOfDay);
    EXPECT_EQ(readTrackPoint(firstFields(kTrackPointBody, 10)).time, kOtherDay + kTimeOfDay);
    EXPECT_EQ(readTrackPoint(kTrackPointBody).time, kTime);
    EXPECT_EQ(readTrackPoint(std::string{kTrackPointBody} + ",more,and more").time, kTime);
}

TEST(ReadTrackPoint, AMalformedDateOrTimeReadsAsNoTime)
{
    EXPECT_EQ(readTrackPoint(withField(kTrackPointBody, 10, "")).time, 0);
    EXPECT_EQ(readTrackPoint(withField(kTrackPointBody, 10, "300208")).time, 0);
    EXPECT_EQ(readTrackPoint(withField(kTrackPointBody, 7, "")).time, 0);
    EXPECT_EQ(readTrackPoint(withField(kTrackPointBody, 7, "240000")).time, 0);
}

TEST(ReadTrackPoint, AMalformedTimeWithoutADateLeavesThePreviousTime)
{
    EXPECT_EQ(readTrackPoint(withField(firstFields(kTrackPointBody, 10), 7, "")).time,
              kBefore.time);
    EXPECT_EQ(readTrackPoint(withField(firstFields(kTrackPointBody, 10), 7, "000060")).time,
              kBefore.time);
}

TEST(ReadTrackPoint, ASmallLetterFIsMetresAndOnlyExactlyFIsFeet)
{
    for (const auto* unit : {"f", "M", "m", "", "FT", " F", "F ", "X"})
        EXPECT_EQ(readTrackPoint(withField(kTrackPointBody, 6, unit)).altitude, 1529) << unit;
    EXPECT_DOUBLE_EQ(readTrackPoint(withField(kTrackPointBody, 6, "F")).altitude, 1529 / 3.2808399);
}

TEST(ReadTrackPoint, AHundredFeetAre30Point48MetresAndAreWrittenBackAs00030)
{
    const auto point = readTrackPoint(withField(withField(kTrackPointBody, 5, "100"), 6, "F"));
    EXPECT_DOUBLE_EQ(point.altitude, 100 / 3.2808399);
    EXPECT_NEAR(point.altitude, 30.48, 0.0001);
    EXPECT_THAT(makeTrackPointSentenceWithPoint(point),
                testing::Optional(testing::HasSubstr(",E,00030,M,")));
}

TEST(ReadTrackPoint, AnAltitudeIsTheLeadingNumberOfItsField)
{
    for (const auto& [text, altitude] : std::vector<std::pair<std::string_view, double>>{
             {"", 0},
             {"abc", 0},
             {"inf", 0},
             {"nan", 0},
             {"0x10", 0},
             {"-00012", -12},
             {"12.75abc", 12.75},
             {" 7", 7},
             {"1e3", 1000},
             {"1e999", std::numeric_limits<double>::max()},
             {"-1e999", std::numeric_limits<double>::lowest()},
         })
        EXPECT_EQ(readTrackPoint(withField(kTrackPointBody, 5, text)).altitude, altitude) << text;
}

TEST(ReadTrackPoint, AnEmptyNameLeavesAnOlderOneInTheExtras)
{
    gps::GPSPoint point;
    gps::Dictionary extras{{"trackName", "OLD"}};
    EXPECT_TRUE(
        interpretTrackPointSentence(sentence(withField(kTrackPointBody, 9, "")), point, &extras));
    EXPECT_EQ(gps::describe(extras), "{trackName = \"OLD\"}");
}

TEST(ReadTrackPoint, ANameIsStoredUnchanged)
{
    gps::GPSPoint point;
    gps::Dictionary extras;
    EXPECT_TRUE(interpretTrackPointSentence(
        sentence(withField(kTrackPointBody, 9, " a name_of more than 20 characters? ")), point,
        &extras));
    EXPECT_EQ(gps::describe(extras), "{trackName = \" a name_of more than 20 characters? \"}");
}

TEST(ReadTrackPoint, AnotherLineIsRejectedAndChangesNothing)
{
    for (const auto& line : {std::string{}, std::string{kTrackPointBody},
                             support::breakChecksum(sentence(kTrackPointBody)),
                             sentence(withField(kTrackPointBody, 0, "PMGNWPL")),
                             sentence(withField(kTrackPointBody, 0, "pmgntrk")),
                             sentence(withField(kTrackPointBody, 0, "PMGNTRKX")),
                             sentence(withField(kTrackPointBody, 0, "PMGNTR")),
                             sentence(withField(kTrackPointBody, 0, " PMGNTRK")),
                             sentence("PMGNCMD,END"), sentence(kTrackPointBody).substr(0, 20)}) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary extras;
        EXPECT_FALSE(interpretTrackPointSentence(line, point, &extras)) << line;
        EXPECT_EQ(point, kBefore) << line;
        EXPECT_TRUE(extras.empty()) << line;
    }
}

TEST(ReadTrackPoint, ADamagedCharacterNeverGivesAnotherPoint)
{
    const auto whole = readTrackPoint(kTrackPointBody);
    support::forEachDamage(sentence(kTrackPointBody), [&whole](const std::string& line) {
        gps::GPSPoint point = kBefore;
        gps::Dictionary extras;
        if (!interpretTrackPointSentence(line, point, &extras))
            return;
        EXPECT_EQ(point, whole) << line;
        EXPECT_EQ(gps::describe(extras), "{trackName = \"NAME\"}") << line;
    });
}

TEST(WriteTrackPoint, IsOneSentenceWithoutANameAndWithItsChecksum)
{
    EXPECT_EQ(makeTrackPointSentenceWithPoint({46.5, -7.5, 1529, kTime, 77}),
              sentence("PMGNTRK,4630.00000,N,00730.00000,W,01529,M,071548.00,A,,110808"));
    EXPECT_EQ(makeTrackPointSentenceWithPoint({-46.5, 7.5, 1529, kTime, 0}),
              sentence("PMGNTRK,4630.00000,S,00730.00000,E,01529,M,071548.00,A,,110808"));
}

TEST(WriteTrackPoint, AnAltitudeIsCutTowardZeroAndFilledUpToFiveCharacters)
{
    for (const auto& [altitude, text] : std::vector<std::pair<double, std::string>>{
             {123.9, "00123"},
             {-12.7, "-0012"},
             {0, "00000"},
             {0.9, "00000"},
             {-0.9, "00000"},
             {-1, "-0001"},
             {-9999, "-9999"},
             {-10000, "-10000"},
             {99999.9, "99999"},
             {100000, "100000"},
         })
        EXPECT_EQ(makeTrackPointSentenceWithPoint({0, 0, altitude, 0, 0}),
                  sentence("PMGNTRK,0000.00000,N,00000.00000,E," + text + ",M,,A,,"))
            << altitude;
}

TEST(WriteTrackPoint, AnAltitudeOutsideThe32BitRangeIsTheNearestBoundAndANanIsZero)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const auto& [altitude, text] : std::vector<std::pair<double, std::string>>{
             {2147483646.9, "2147483646"},
             {2147483647.0, "2147483647"},
             {2147483648.0, "2147483647"},
             {1e300, "2147483647"},
             {kInfinity, "2147483647"},
             {-2147483647.9, "-2147483647"},
             {-2147483648.0, "-2147483648"},
             {-2147483649.0, "-2147483648"},
             {-1e300, "-2147483648"},
             {-kInfinity, "-2147483648"},
             {std::numeric_limits<double>::quiet_NaN(), "00000"},
         })
        EXPECT_EQ(makeTrackPointSentenceWithPoint({0, 0, altitude, 0, 0}),
                  sentence("PMGNTRK,0000.00000,N,00000.00000,E," + text + ",M,,A,,"))
            << altitude;
}

TEST(WriteTrackPoint, ATimeThatADateTextCannotCarryIsWrittenAsTwoEmptyTexts)
{
    for (const std::int64_t time :
         {std::int64_t{0}, std::int64_t{315532799}, std::int64_t{3471292800}, std::int64_t{-1}})
        EXPECT_EQ(makeTrackPointSentenceWithPoint({0, 0, 0, time, 0}),
                  sentence("PMGNTRK,0000.00000,N,00000.00000,E,00000,M,,A,,"))
            << time;
    EXPECT_EQ(makeTrackPointSentenceWithPoint({0, 0, 0, 315532800, 0}),
              sentence("PMGNTRK,0000.00000,N,00000.00000,E,00000,M,000000.00,A,,010180"));
    EXPECT_EQ(makeTrackPointSentenceWithPoint({0, 0, 0, 3471292799, 0}),
              sentence("PMGNTRK,0000.00000,N,00000.00000,E,00000,M,235959.00,A,,311279"));
}

TEST(WriteTrackPoint, ACoordinateWithoutATextMakesNoSentence)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(makeTrackPointSentenceWithPoint({90.0000001, 0, 0, 0, 0}), std::nullopt);
    EXPECT_EQ(makeTrackPointSentenceWithPoint({0, -180.0000001, 0, 0, 0}), std::nullopt);
    EXPECT_EQ(makeTrackPointSentenceWithPoint({kNaN, 0, 0, 0, 0}), std::nullopt);
    EXPECT_EQ(makeTrackPointSentenceWithPoint({0, kNaN, 0, 0, 0}), std::nullopt);
    EXPECT_TRUE(makeTrackPointSentenceWithPoint({90, 180, 0, 0, 0}));
    EXPECT_TRUE(makeTrackPointSentenceWithPoint({-90, -180, 0, 0, 0}));
}

TEST(WriteTrackPoint, ASentenceIsAppendedAndWithoutOneTheTextIsUnchanged)
{
    std::string text = "before\r\n";
    EXPECT_FALSE(appendTrackPointSentence(text, {91, 0, 0, 0, 0}));
    EXPECT_EQ(text, "before\r\n");
    EXPECT_TRUE(appendTrackPointSentence(text, {46.5, 7.5, 0, 0, 0}));
    EXPECT_EQ(text, "before\r\n" + sentence("PMGNTRK,4630.00000,N,00730.00000,E,00000,M,,A,,"));
}

TEST(WriteTrackPoint, AReadSentenceIsWrittenAsTheSameOneInEachHemisphere)
{
    for (const auto* latitude : {"N", "S"}) {
        for (const auto* longitude : {"E", "W"}) {
            const auto line =
                sentence("PMGNTRK,4605.97912," + std::string{latitude} + ",12213.31578," +
                         longitude + ",-0042,M,235959.00,A,,290208");
            gps::GPSPoint point;
            ASSERT_TRUE(interpretTrackPointSentence(line, point, nullptr));
            EXPECT_EQ(makeTrackPointSentenceWithPoint(point), line);
        }
    }
}

} // namespace
} // namespace magellan
