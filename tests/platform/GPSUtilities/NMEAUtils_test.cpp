// SPDX-License-Identifier: MIT

#include <platform/GPSUtilities/NMEAUtils.h>
#include <support/Sentence.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace gps::NMEAUtils {
namespace {

using support::sentence;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(NMEAUtilsCheck, ReturnsTheBodyAsAViewIntoTheLine)
{
    const std::string line = sentence("PMGNCMD,END") + "\r\n";
    const auto body = checkAndTrimNMEASentence(line);
    EXPECT_EQ(body, "PMGNCMD,END");
    EXPECT_EQ(body->data(), line.data() + 1);
}

TEST(NMEAUtilsCheck, AcceptsEachLineEndAndAMissingOne)
{
    for (const std::string_view end : {"", "\r\n", "\r", "\n"})
        EXPECT_EQ(checkAndTrimNMEASentence("$J*4A" + std::string{end}), "J")
            << testing::PrintToString(end);
}

TEST(NMEAUtilsCheck, RejectsAnythingElseAfterTheChecksum)
{
    for (const std::string_view end : {"\n\n", "\r\r", "\n\r", "\r\r\n", "\r\n\n", "\r\n\r\n", " ",
                                       "\t", "A", "0", "*4A", " \r\n"})
        EXPECT_EQ(checkAndTrimNMEASentence("$J*4A" + std::string{end}), std::nullopt)
            << testing::PrintToString(end);
    EXPECT_EQ(checkAndTrimNMEASentence(std::string_view{"$J*4A\0", 6}), std::nullopt);
}

TEST(NMEAUtilsCheck, AcceptsChecksumDigitsOfEitherCase)
{
    EXPECT_EQ(checkAndTrimNMEASentence("$J*4A"), "J");
    EXPECT_EQ(checkAndTrimNMEASentence("$J*4a"), "J");
    EXPECT_EQ(checkAndTrimNMEASentence("$o*6F"), "o");
    EXPECT_EQ(checkAndTrimNMEASentence("$o*6f"), "o");
}

TEST(NMEAUtilsCheck, RejectsAChecksumThatIsNotExactlyTwoMatchingDigits)
{
    for (const auto* line :
         {"$J*4B", "$J*5A", "$J*", "$J*4", "$J*A", "$J*04A", "$J*4A0", "$J*4G", "$J*G4", "$J*4`",
          "$J*4@", "$J*4:", "$J*4/", "$J* 4A", "$J*+A", "$J4A", "$J", "$J,4A"})
        EXPECT_EQ(checkAndTrimNMEASentence(line), std::nullopt) << line;
}

TEST(NMEAUtilsCheck, AcceptsABodyOfOneCharacterAndRejectsAnEmptyOne)
{
    EXPECT_EQ(checkAndTrimNMEASentence("$A*41"), "A");
    EXPECT_EQ(checkAndTrimNMEASentence("$*00"), std::nullopt);
    for (const auto* line : {"", "$", "*", "$*", "$*0", "\r\n", "\r", "\n", "$\r\n", "*00"})
        EXPECT_EQ(checkAndTrimNMEASentence(line), std::nullopt) << testing::PrintToString(line);
}

TEST(NMEAUtilsCheck, RejectsALineThatDoesNotBeginWithADollarSign)
{
    for (const auto* line : {"J*4A", " $J*4A", "x$J*4A", "\xEF\xBB\xBF$J*4A", "!J*4A", "\r\n$J*4A"})
        EXPECT_EQ(checkAndTrimNMEASentence(line), std::nullopt) << line;
}

TEST(NMEAUtilsCheck, ABodyMayHoldPrintableAsciiExceptDollarSignAndAsterisk)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string body{'A', static_cast<char>(byte), 'B'};
        const bool allowed = byte >= 0x20 && byte <= 0x7E && byte != '$' && byte != '*';
        EXPECT_EQ(checkAndTrimNMEASentence(sentence(body)).has_value(), allowed) << byte;
    }
}

TEST(NMEAUtilsCheck, RejectsASentenceCutOffAnywhere)
{
    const std::string whole = sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M,HOME,,a");
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(checkAndTrimNMEASentence(whole.substr(0, length)), std::nullopt) << length;
}

TEST(NMEAUtilsCheck, RejectsEachForbiddenByteWhereverItIs)
{
    for (std::size_t size = 1; size <= 18; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string body(size, 'x');
                body[at] = static_cast<char>(byte);
                const bool isAllowed = byte >= 0x20 && byte <= 0x7E && byte != '$' && byte != '*';
                const auto sentence = addChecksumToNMEASentence(body);
                ASSERT_EQ(checkAndTrimNMEASentence(sentence).has_value(), isAllowed)
                    << byte << " at " << at << " of " << size;
            }
        }
    }
}

TEST(NMEAUtilsCheck, AcceptsOnlyTheRightOneOfAllChecksumsOfABodyOfAnyLength)
{
    std::uint8_t expected = 0;
    std::string body;
    for (int size = 1; size <= 40; ++size) {
        body += static_cast<char>('A' + size);
        expected ^= static_cast<std::uint8_t>(body.back());
        for (int checksum = 0; checksum < 256; ++checksum) {
            char tail[4];
            std::snprintf(tail, sizeof tail, "*%02X", checksum);
            ASSERT_EQ(checkAndTrimNMEASentence("$" + body + tail).has_value(), checksum == expected)
                << body << tail;
        }
    }
}

TEST(NMEAUtilsCheck, ADamagedCharacterNeverGivesAnotherBody)
{
    const std::string body = "PMGNWPL,4600.000,N,00730.000,E,0000500,M,HOME,,a";
    support::forEachDamage(sentence(body), [&body](const std::string& line) {
        EXPECT_EQ(checkAndTrimNMEASentence(line).value_or(body), body) << line;
    });
}

TEST(NMEAUtilsChecksum, IsTheExclusiveOrOfAllBytes)
{
    EXPECT_EQ(checksumFromSentence(""), 0);
    EXPECT_EQ(checksumFromSentence("A"), 0x41);
    EXPECT_EQ(checksumFromSentence("AB"), 0x03);
    EXPECT_EQ(checksumFromSentence("\xFF\x0F"), 0xF0);
}

TEST(NMEAUtilsChecksum, MatchesWhatReceiversExpectForEachCommand)
{
    EXPECT_EQ(checksumFromSentence("PMGNCMD,VERSION"), 0x28);
    EXPECT_EQ(checksumFromSentence("PMGNCMD,TON"), 0x27);
    EXPECT_EQ(checksumFromSentence("PMGNCMD,END"), 0x3D);
    EXPECT_EQ(checksumFromSentence("PMGNCMD,HANDON"), 0x70);
    EXPECT_EQ(checksumFromSentence("PMGNCMD,HANDOFF"), 0x3E);
}

TEST(NMEAUtilsChecksum, IsAppendedAsTwoUpperCaseDigitsWithoutALineEnd)
{
    EXPECT_EQ(addChecksumToNMEASentence("PMGNCMD,END"), "$PMGNCMD,END*3D");
    EXPECT_EQ(addChecksumToNMEASentence("AB"), "$AB*03");
    EXPECT_EQ(addChecksumToNMEASentence("o"), "$o*6F");
}

TEST(NMEAUtilsChecksum, IsAcceptedAfterItWasAppended)
{
    for (const std::string_view body :
         {"A", "PMGNCMD,END", " ", "~", ",,,", "PMGNRTE,1,1,m,1,R,hello"})
        EXPECT_EQ(checkAndTrimNMEASentence(addChecksumToNMEASentence(body)), body);
}

TEST(NMEAUtilsChecksum, OfABodyInPlaceCoversOnlyThatBody)
{
    std::string text = "$AB*03\r\n$PMGNCMD,END";
    appendNMEAChecksum(text, 9);
    EXPECT_EQ(text, "$AB*03\r\n$PMGNCMD,END*3D");
}

struct ReadCoordinate {
    std::string_view text;
    std::string_view direction;
    double degrees;
};

TEST(NMEAUtilsReadCoordinate, ReadsDegreesAndMinutesInEachHemisphere)
{
    for (const auto& [text, direction, degrees] : std::vector<ReadCoordinate>{
             {"4630.000", "N", 46.5},
             {"4630.000", "S", -46.5},
             {"00730.000", "E", 7.5},
             {"12215.000", "W", -122.25},
             {"0000.000", "N", 0},
             {"9000.000", "S", -90},
             {"18000.000", "W", -180},
             {"4606", "N", 46.1},
             {"30", "N", 0.5},
         })
        EXPECT_DOUBLE_EQ(convertNMEADegreesMinutes(text, direction), degrees) << text << direction;
}

TEST(NMEAUtilsReadCoordinate, OnlyExactlySAndWNegate)
{
    for (const auto* direction : {"N", "E", "s", "w", "South", "WW", " S", "S ", "", "-", "X"})
        EXPECT_DOUBLE_EQ(convertNMEADegreesMinutes("4630.000", direction), 46.5) << direction;
}

TEST(NMEAUtilsReadCoordinate, ReadsOnlyTheLeadingNumber)
{
    for (const auto& [text, direction, degrees] : std::vector<ReadCoordinate>{
             {" 4630.000", "N", 46.5},
             {"\t+4630.000", "N", 46.5},
             {"-4630.000", "N", -46.5},
             {"-4630.000", "S", 46.5},
             {"4630.000x", "N", 46.5},
             {"4630.000 99", "N", 46.5},
             {"4630.", "N", 46.5},
             {".6", "N", 0.01},
             {"4.63e3", "N", 46.5},
         })
        EXPECT_DOUBLE_EQ(convertNMEADegreesMinutes(text, direction), degrees) << text;
}

TEST(NMEAUtilsReadCoordinate, AFieldWithoutALeadingNumberReadsAsZero)
{
    for (const auto* text : {"", " ", "x", "x4630", "-", "+", ".", "e5", "inf", "nan", "INF",
                             "infinity", "0x1F", "--1"}) {
        const double north = convertNMEADegreesMinutes(text, "N");
        EXPECT_EQ(north, 0) << text;
        EXPECT_FALSE(std::signbit(convertNMEADegreesMinutes(text, "S"))) << text;
    }
}

TEST(NMEAUtilsReadCoordinate, ANumberBeyondAllBoundsStaysFinite)
{
    EXPECT_TRUE(std::isfinite(convertNMEADegreesMinutes("1e999", "N")));
    EXPECT_TRUE(std::isfinite(convertNMEADegreesMinutes("-1e999", "S")));
    EXPECT_TRUE(std::isfinite(convertNMEADegreesMinutes(std::string(400, '9'), "W")));
}

// Texts of eight characters and more are read in another way if they are digits with a point.
TEST(NMEAUtilsReadCoordinate, EachNumberOfDigitsReadsTheSameWhateverFollows)
{
    const std::string digits = "98765432198765432198";
    for (std::size_t whole = 0; whole <= 9; ++whole) {
        for (std::size_t decimals = 0; decimals <= 9; ++decimals) {
            for (std::size_t from = 0; from < 2; ++from) {
                const auto text = digits.substr(from, whole) + "." + digits.substr(whole, decimals);
                EXPECT_EQ(convertNMEADegreesMinutes(text, "N"),
                          convertNMEADegreesMinutes(text + "x", "N"))
                    << text;
            }
        }
    }
}

TEST(NMEAUtilsReadCoordinate, MinutesUpTo99AreOfTheSameDegree)
{
    for (const std::string_view text :
         {"0099.9999999", "0199.9999999", "17999.9999999", "9999999.9999999", "9999899.9999999"}) {
        const double degrees = convertNMEADegreesMinutes(text, "E");
        EXPECT_EQ(degrees, convertNMEADegreesMinutes(std::string{text} + "x", "E")) << text;
    }
}

TEST(NMEAUtilsReadCoordinate, AnythingButDigitsEndsTheNumberWhereverItIs)
{
    const std::string text = "04630.12345";
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const char c : {'/', ':', ' ', '.', 'x', '\0', '\x80', '\xB0', '\xFF'}) {
            std::string changed = text;
            changed[at] = c;
            EXPECT_EQ(convertNMEADegreesMinutes(changed, "N"),
                      convertNMEADegreesMinutes(changed + "x", "N"))
                << changed;
        }
    }
}

struct WrittenCoordinate {
    double degrees;
    bool asLatitude;
    std::string_view text; ///< degrees and minutes, a comma, the letter; empty: no text
};

std::string written(double degrees, bool asLatitude)
{
    const auto text = convertDegreesToNMEADegreesMinutes(degrees, asLatitude);
    EXPECT_EQ(text.has_value(), hasNMEACoordinate(degrees, asLatitude));
    return text ? text->degreesMinutes + "," + text->direction : "";
}

void expectWritten(const std::vector<WrittenCoordinate>& table)
{
    for (const auto& [degrees, asLatitude, text] : table)
        EXPECT_EQ(written(degrees, asLatitude), text)
            << testing::PrintToString(degrees) << (asLatitude ? " latitude" : " longitude");
}

TEST(NMEAUtilsWriteCoordinate, HasTwoOrThreeDigitsOfDegreesAndFiveDecimalsOfMinutes)
{
    expectWritten({
        {46.5, true, "4630.00000,N"},
        {-33.25, true, "3315.00000,S"},
        {7.5, true, "0730.00000,N"},
        {7.5, false, "00730.00000,E"},
        {-122.25, false, "12215.00000,W"},
        {46.09965, true, "4605.97900,N"},
        {0.1, false, "00006.00000,E"},
        {100 + 7.0 / 60, false, "10007.00000,E"},
    });
}

TEST(NMEAUtilsWriteCoordinate, RoundsToTheNearestLastDecimal)
{
    expectWritten({
        {1 + 0.000014 / 60, true, "0100.00001,N"},
        {1 + 0.000016 / 60, true, "0100.00002,N"},
        {-1 - 0.000014 / 60, false, "00100.00001,W"},
        {-1 - 0.000016 / 60, false, "00100.00002,W"},
    });
}

TEST(NMEAUtilsWriteCoordinate, SixtyMinutesCarryIntoTheDegree)
{
    expectWritten({
        {46 + 59.999994 / 60, true, "4659.99999,N"},
        {46 + 59.999996 / 60, true, "4700.00000,N"},
        {-46 - 59.999996 / 60, true, "4700.00000,S"},
        {9 + 59.999996 / 60, true, "1000.00000,N"},
        {99 + 59.999996 / 60, false, "10000.00000,E"},
        {89 + 59.999996 / 60, true, "9000.00000,N"},
        {-179 - 59.999996 / 60, false, "18000.00000,W"},
        {0 + 59.999996 / 60, false, "00100.00000,E"},
    });
}

TEST(NMEAUtilsWriteCoordinate, CoordinatesThatRoundToZeroAreNorthAndEast)
{
    expectWritten({
        {0.0, true, "0000.00000,N"},
        {-0.0, true, "0000.00000,N"},
        {-0.0, false, "00000.00000,E"},
        {-0.000004 / 60, true, "0000.00000,N"},
        {-0.000004 / 60, false, "00000.00000,E"},
        {-0.000006 / 60, true, "0000.00001,S"},
        {-0.000006 / 60, false, "00000.00001,W"},
        {-std::numeric_limits<double>::denorm_min(), true, "0000.00000,N"},
    });
}

TEST(NMEAUtilsWriteCoordinate, RangeEndsAtThePolesAndTheDateLine)
{
    expectWritten({
        {90, true, "9000.00000,N"},
        {-90, true, "9000.00000,S"},
        {180, false, "18000.00000,E"},
        {-180, false, "18000.00000,W"},
        {std::nextafter(90, 91), true, ""},
        {std::nextafter(-90, -91), true, ""},
        {std::nextafter(180, 181), false, ""},
        {std::nextafter(-180, -181), false, ""},
        {90.5, false, "09030.00000,E"},
        {1e300, true, ""},
        {-1e300, false, ""},
    });
}

TEST(NMEAUtilsWriteCoordinate, NonFiniteCoordinatesHaveNoText)
{
    expectWritten({{kInfinity, true, ""},
                   {-kInfinity, true, ""},
                   {kNaN, true, ""},
                   {kInfinity, false, ""},
                   {-kInfinity, false, ""},
                   {kNaN, false, ""}});
}

/// A coordinate's text from its hundred-thousandths of a minute, computed without floating
/// point.
std::string coordinateText(std::int64_t units, std::size_t degreeDigits)
{
    const auto padded = [](std::int64_t value, std::size_t width) {
        const auto digits = std::to_string(value);
        return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
    };
    return padded(units / 6'000'000, degreeDigits) + padded(units / 100'000 % 60, 2) + "." +
           padded(units % 100'000, 5);
}

TEST(NMEAUtilsWriteCoordinate, AReadTextIsWrittenAsTheSameTextInEachHemisphere)
{
    constexpr std::int64_t kStride = 99'991; // a prime, so that every decimal varies
    for (std::int64_t units = 1; units <= 180LL * 6'000'000; units += kStride) {
        const auto longitude = coordinateText(units, 3);
        ASSERT_EQ(written(convertNMEADegreesMinutes(longitude, "E"), false), longitude + ",E");
        ASSERT_EQ(written(convertNMEADegreesMinutes(longitude, "W"), false), longitude + ",W");
        if (units > 90LL * 6'000'000)
            continue;
        const auto latitude = coordinateText(units, 2);
        ASSERT_EQ(written(convertNMEADegreesMinutes(latitude, "N"), true), latitude + ",N");
        ASSERT_EQ(written(convertNMEADegreesMinutes(latitude, "S"), true), latitude + ",S");
    }
}

struct ReadTimestamp {
    std::string_view date;
    std::string_view time;
    std::int64_t seconds;
};

void expectRead(const std::vector<ReadTimestamp>& table)
{
    for (const auto& [date, time, seconds] : table)
        EXPECT_EQ(convertNMEADate(date, time), seconds) << "'" << date << "' '" << time << "'";
}

TEST(NMEAUtilsReadDate, CountsSecondsSince1970)
{
    expectRead({{"110808", "071548.24", 1218438948},
                {"290208", "000000", 1204243200},
                {"010170", "000000.00", 3155760000}});
}

TEST(NMEAUtilsReadDate, YearsFrom80AreOfTheLastCenturyAndUpTo79OfThisOne)
{
    expectRead({
        {"010180", "000000", 315532800},  // 1980
        {"311299", "235959", 946684799},  // 1999
        {"010100", "000000", 946684800},  // 2000
        {"311279", "235959", 3471292799}, // 2079
    });
}

TEST(NMEAUtilsReadDate, InvalidDaysReadAsNoTime)
{
    expectRead({
        {"290200", "000000", 951782400}, // 2000 is a leap year
        {"290280", "000000", 320630400},
        {"290207", "000000", 0},
        {"290281", "000000", 0},
        {"300208", "000000", 0},
        {"310408", "000000", 0},
        {"300408", "000000", 1209513600},
        {"320108", "000000", 0},
        {"000108", "000000", 0},
        {"010008", "000000", 0},
        {"011208", "000000", 1228089600},
        {"011308", "000000", 0},
        {"999999", "000000", 0},
    });
}

TEST(NMEAUtilsReadDate, InvalidTimesReadAsNoTime)
{
    expectRead({
        {"010100", "230000", 946767600},
        {"010100", "240000", 0},
        {"010100", "005900", 946688340},
        {"010100", "006000", 0},
        {"010100", "000059", 946684859},
        {"010100", "000060", 0},
    });
}

TEST(NMEAUtilsReadDate, AnEmptyOrMalformedTextReadsAsNoTime)
{
    for (const auto* date :
         {"", "11080", "1108080", "11080x", " 10808", "+10808", "11-808", "110808 ", "11/08/08"})
        EXPECT_EQ(convertNMEADate(date, "071548"), 0) << date;
    for (const auto* time :
         {"", "07154", "0715480", "07154x", " 71548", "071548x", "071548,0", "071548.x",
          "071548.2x", "071548.-1", "071548.2 ", "07:15:48", "-71548", "071548..0"})
        EXPECT_EQ(convertNMEADate("110808", time), 0) << time;
}

TEST(NMEAUtilsReadDate, FractionsOfASecondAreDropped)
{
    expectRead({
        {"110808", "071548", 1218438948},
        {"110808", "071548.", 1218438948},
        {"110808", "071548.99", 1218438948},
        {"110808", "071548.999999999999999999999", 1218438948},
    });
}

TEST(NMEAUtilsUpdateDate, KeepsTheDayAndSetsTheTimeOfDay)
{
    EXPECT_EQ(updateNMEADate(1218438948, "000000"), 1218412800);
    EXPECT_EQ(updateNMEADate(1218438948, "235959.99"), 1218499199);
    EXPECT_EQ(updateNMEADate(1218412800, "000001"), 1218412801);
    EXPECT_EQ(updateNMEADate(1218499199, "000001"), 1218412801);
}

TEST(NMEAUtilsUpdateDate, NoTimeIsDayZero)
{
    EXPECT_EQ(updateNMEADate(0, "000010"), 10);
    EXPECT_EQ(updateNMEADate(10, "235959"), 86399);
    EXPECT_EQ(updateNMEADate(-1, "000010"), -86390);
}

TEST(NMEAUtilsUpdateDate, AMalformedTimeLeavesThePreviousValueUnchanged)
{
    for (const auto* time : {"", "07154", "07154x", "240000", "006000", "000060", "071548x"}) {
        EXPECT_EQ(updateNMEADate(1218438948, time), 1218438948) << time;
        EXPECT_EQ(updateNMEADate(0, time), 0) << time;
    }
}

TEST(NMEAUtilsUpdateDate, ATimeOfDayThatOverflows64BitsLeavesThePreviousValueUnchanged)
{
    constexpr auto kFirst = std::numeric_limits<std::int64_t>::min(); // 08:29:52 of its day
    constexpr auto kLast = std::numeric_limits<std::int64_t>::max();  // 15:30:07 of its day
    EXPECT_EQ(updateNMEADate(kFirst, "082951"), kFirst);
    EXPECT_EQ(updateNMEADate(kFirst, "082952"), kFirst);
    EXPECT_EQ(updateNMEADate(kFirst, "082953"), kFirst + 1);
    EXPECT_EQ(updateNMEADate(kFirst, "000000"), kFirst);
    EXPECT_EQ(updateNMEADate(kLast, "153006"), kLast - 1);
    EXPECT_EQ(updateNMEADate(kLast, "153007"), kLast);
    EXPECT_EQ(updateNMEADate(kLast, "153008"), kLast);
    EXPECT_EQ(updateNMEADate(kLast, "235959"), kLast);
}

TEST(NMEAUtilsWriteDate, HasTwoDigitsOfEachPart)
{
    const auto [date, time] = makeNMEADateFrom(1218438948);
    EXPECT_EQ(date, "110808");
    EXPECT_EQ(time, "071548.00");
    EXPECT_EQ(makeNMEADateFrom(1204243200 + 3661).date, "290208");
    EXPECT_EQ(makeNMEADateFrom(1204243200 + 3661).time, "010101.00");
}

TEST(NMEAUtilsWriteDate, IsEmptyWithoutATimeAndOutsideTheYears1980To2079)
{
    for (const std::int64_t none :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::int64_t{315532799},
          std::int64_t{3471292800}, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(makeNMEADateFrom(none).date, "") << none;
        EXPECT_EQ(makeNMEADateFrom(none).time, "") << none;
    }
    EXPECT_EQ(makeNMEADateFrom(315532800).date, "010180");
    EXPECT_EQ(makeNMEADateFrom(315532800).time, "000000.00");
    EXPECT_EQ(makeNMEADateFrom(3471292799).date, "311279");
    EXPECT_EQ(makeNMEADateFrom(3471292799).time, "235959.00");
}

TEST(NMEAUtilsWriteDate, WrittenDatesReadBackAsTheSameTime)
{
    for (std::int64_t time = 315532800; time <= 3471292799; time += 1'000'003) {
        const auto text = makeNMEADateFrom(time);
        ASSERT_EQ(convertNMEADate(text.date, text.time), time);
    }
}

} // namespace
} // namespace gps::NMEAUtils
