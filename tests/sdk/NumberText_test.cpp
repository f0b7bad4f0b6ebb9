// SPDX-License-Identifier: MIT

#include <gps/NumberText.h>

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace gps {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();

template <typename... Arguments>
std::string appended(void (*append)(std::string&, Arguments...), Arguments... arguments)
{
    std::string text = ">";
    append(text, arguments...);
    return text.substr(1);
}

std::string written(char* (*put)(char*, double), double value)
{
    std::array<char, kMostOfDecimal> text;
    return {text.data(), put(text.data(), value)};
}

TEST(NumberText, LeadingNumberReadsTheNumberAtTheStartOfAText)
{
    const std::pair<std::string, double> rows[] = {
        {"0", 0},
        {"5.", 5},
        {".5", 0.5},
        {"-.5x", -0.5},
        {"+12.25", 12.25},
        {"  \t\r\n\v\f 7", 7},
        {"12,5", 12},
        {"12M", 12},
        {"1.2.3", 1.2},
        {"1e3", 1000},
        {"1E+3", 1000},
        {"1e-3", 0.001},
        {"1e", 1},
        {"1e+", 1},
        {"1ex", 1},
        {"0x10", 0},
        {"00012", 12},
        {"4605.979", 4605.979},
        {"123456789012345", 123456789012345},
        {"1234567890123456", 1234567890123456},
        {"12345678901234567890", 12345678901234567890.0},
        {"0.1234567890123456789", 0.1234567890123456789},
        {"999999999999999.", 999999999999999},
        {".000000000000001", 1e-15},
        {"1e308", 1e308},
        {"1e309", kLargest},
        {"-1e309", -kLargest},
        {"1e99999999999999999999", kLargest},
        {"1e-99999999999999999999", 0},
        {"0e99999999999999999999", 0},
        {std::string(400, '9'), kLargest},
        {"-" + std::string(400, '9'), -kLargest},
        {"0." + std::string(400, '0') + "1", 0},
        {"0." + std::string(400, '0') + "1e800", kLargest},
        {std::string(400, '9') + "e-800", 0},
        {std::string(400, '9') + "e -800", kLargest},
        {std::string(400, '9') + "e", kLargest}};
    for (const auto& [text, number] : rows) {
        const auto read = leadingNumber(text);
        ASSERT_TRUE(read) << text;
        EXPECT_EQ(*read, number) << text;
    }
}

TEST(NumberText, ATextThatDoesNotBeginWithANumberHasNoLeadingNumber)
{
    for (const char* text :
         {"",   " ",   ".",   "-",    "+",   "-.",       "+-1", "--1",  "- 1",    "abc", ",5",
          "e5", ".e5", "inf", "-inf", "INF", "infinity", "nan", "-nan", "NaN(1)", "x10", "$1"})
        EXPECT_EQ(leadingNumber(text), std::nullopt) << text;
}

TEST(NumberText, AMinusBeforeZeroIsKept)
{
    EXPECT_TRUE(std::signbit(*leadingNumber("-0")));
    EXPECT_FALSE(std::signbit(*leadingNumber("0")));
}

TEST(NumberText, ShortNumbersAreReadAsTheStandardLibraryReadsThem)
{
    std::mt19937_64 random{7};
    for (int i = 0; i < 200'000; ++i) {
        const auto digits = std::to_string(random() % 10'000'000'000'000'000U);
        const auto point = random() % (digits.size() + 1);
        const auto text = digits.substr(0, point) + "." + digits.substr(point);
        double expected = 0;
        std::from_chars(text.data(), text.data() + text.size(), expected);
        ASSERT_EQ(leadingNumber(text), expected) << text;
    }
}

TEST(NumberText, WholeNumberReadsATextThatIsOneNumber)
{
    const std::pair<std::string, double> rows[] = {
        {"0", 0},
        {"+1", 1},
        {"-46.5", -46.5},
        {"5.", 5},
        {".5", 0.5},
        {"1e3", 1000},
        {"1E+3", 1000},
        {"1e-3", 0.001},
        {"1.7976931348623157e308", kLargest},
        {"-1.7976931348623157e308", -kLargest},
        {"5e-324", std::numeric_limits<double>::denorm_min()},
        {"1e-400", 0},
        {"0.1234567890123456789", 0.1234567890123456789}};
    for (const auto& [text, number] : rows)
        EXPECT_EQ(wholeNumber(text), number) << text;
    EXPECT_TRUE(std::signbit(*wholeNumber("-0")));
    EXPECT_TRUE(std::signbit(*wholeNumber("-1e-400")));
}

TEST(NumberText, WholeNumberRejectsAnyOtherText)
{
    for (const char* text : {"",
                             " ",
                             "+",
                             "-",
                             ".",
                             "-.",
                             "1 ",
                             " 1",
                             "+-1",
                             "--1",
                             "1x",
                             "1e",
                             "1e+",
                             "1,5",
                             "0x10",
                             "inf",
                             "-inf",
                             "nan",
                             "NaN",
                             "1.2.3",
                             "1..2",
                             "e5",
                             "1e 5",
                             "46.5N",
                             "1e309",
                             "-1e309",
                             "1e99999999999999999999",
                             "12345678901234567890x"})
        EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
}

TEST(NumberText, WholeIntegerReadsAnOptionalSignAndDigitsWithin64Bits)
{
    constexpr auto kMin = std::numeric_limits<std::int64_t>::min();
    constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::string, std::int64_t> rows[] = {{"0", 0},
                                                         {"-0", 0},
                                                         {"+12", 12},
                                                         {"-12", -12},
                                                         {"0012", 12},
                                                         {"9223372036854775807", kMax},
                                                         {"+9223372036854775807", kMax},
                                                         {"-9223372036854775808", kMin}};
    for (const auto& [text, number] : rows)
        EXPECT_EQ(wholeInteger(text), number) << text;
    for (const char* text : {"", "+", "-", "+-1", "-+1", "++1", "--1", " 1", "1 ", "1x", "1.0",
                             "0x1", "1e3", "9223372036854775808", "+9223372036854775808",
                             "-9223372036854775809", "99999999999999999999999"})
        EXPECT_EQ(wholeInteger(text), std::nullopt) << text;
}

TEST(NumberText, WholeUnsignedReadsDigitsWithin32Bits)
{
    const std::pair<std::string, std::uint32_t> rows[] = {
        {"0", 0}, {"0012", 12}, {"4294967295", 4294967295U}};
    for (const auto& [text, number] : rows)
        EXPECT_EQ(wholeUnsigned(text), number) << text;
    for (const char* text :
         {"", "+1", "-0", "-1", " 1", "1 ", "1x", "1.0", "f", "4294967296", "99999999999999999999"})
        EXPECT_EQ(wholeUnsigned(text), std::nullopt) << text;
}

TEST(NumberText, HexIntegerReadsHexadecimalDigitsWithin32Bits)
{
    const std::pair<std::string, std::uint32_t> rows[] = {
        {"0", 0},     {"067b", 0x067B},          {"067B", 0x067B},
        {"fF", 0xFF}, {"ffffffff", 0xFFFFFFFFU}, {"00ffffffff", 0xFFFFFFFFU}};
    for (const auto& [text, number] : rows)
        EXPECT_EQ(hexInteger(text), number) << text;
    for (const char* text : {"", "+1", "-1", " 1", "1 ", "g", "1g", "0x1", "100000000"})
        EXPECT_EQ(hexInteger(text), std::nullopt) << text;
}

TEST(NumberText, LeadingInt32SaturatesAtItsBounds)
{
    constexpr auto kMin = std::numeric_limits<std::int32_t>::min();
    constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
    const std::pair<std::string, std::int32_t> rows[] = {{"", 0},
                                                         {"x", 0},
                                                         {"-", 0},
                                                         {"12", 12},
                                                         {" \n+12x", 12},
                                                         {"-12.9", -12},
                                                         {"2147483646", kMax - 1},
                                                         {"2147483647", kMax},
                                                         {"2147483648", kMax},
                                                         {"-2147483647", kMin + 1},
                                                         {"-2147483648", kMin},
                                                         {"-2147483649", kMin},
                                                         {"00000000000000000000000000012", 12},
                                                         {std::string(1000, '9'), kMax},
                                                         {"-" + std::string(1000, '9'), kMin}};
    for (const auto& [text, number] : rows)
        EXPECT_EQ(leadingInt32(text), number) << text;
}

TEST(NumberText, LeadingBoolAcceptsYesTrueAndDigits)
{
    for (const char* text :
         {"Y", "yes", "T", "true", "1", "9", " \t1", "+1", "-1", "-0y", "0001", "00t"})
        EXPECT_TRUE(leadingBool(text)) << text;
    for (const char* text :
         {"", " ", "N", "no", "false", "F", "0", "000", "+", "-", "x", "--1", "0x1", "0.5", "on"})
        EXPECT_FALSE(leadingBool(text)) << text;
}

TEST(NumberText, DoublesSaturateAt32Bits)
{
    EXPECT_EQ(saturatedInt32(2147483646.999), 2147483646);
    EXPECT_EQ(saturatedInt32(2147483647.5), 2147483647);
    EXPECT_EQ(saturatedInt32(-2147483647.999), -2147483647);
    EXPECT_EQ(saturatedInt32(-2147483648.5), -2147483648);
    EXPECT_EQ(saturatedInt32(-1.9), -1);
    EXPECT_EQ(saturatedInt32(std::nan("")), 0);
    EXPECT_EQ(saturatedInt32(HUGE_VAL), 2147483647);
    EXPECT_EQ(saturatedInt32(-HUGE_VAL), -2147483647 - 1);
}

TEST(NumberText, TheShortestTextReadsBack)
{
    std::mt19937_64 random{7};
    std::uniform_real_distribution<double> degrees{-180, 180};
    for (int i = 0; i < 20'000; ++i) {
        const double value = degrees(random);
        ASSERT_EQ(leadingNumber(appended(appendShortest, value)), value);
        ASSERT_EQ(leadingNumber(written(putDecimal, value)), value);
    }
    EXPECT_EQ(appended(appendShortest, 46.5), "46.5");
    EXPECT_EQ(appended(appendShortest, -2.2250738585072014e-308), "-2.2250738585072014e-308");
    EXPECT_EQ(appended(appendShortest, HUGE_VAL), "inf");
}

TEST(NumberText, ADecimalHasNoExponentHoweverLargeOrSmall)
{
    EXPECT_EQ(written(putDecimal, 0.0), "0");
    EXPECT_EQ(written(putDecimal, -0.5), "-0.5");
    EXPECT_EQ(written(putDecimal, 1e22), "10000000000000000000000");
    EXPECT_EQ(written(putDecimal, 1e-7), "0.0000001");
    for (const double value : {kLargest, -kLargest, std::numeric_limits<double>::min(),
                               std::numeric_limits<double>::denorm_min()}) {
        const auto text = written(putDecimal, value);
        EXPECT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos);
        EXPECT_EQ(std::strtod(text.c_str(), nullptr), value);
    }
}

// The text that the standard library writes.
std::string generalText(double value, bool isFixed)
{
    std::array<char, 1200> text;
    char* const end = text.data() + text.size();
    const auto result = isFixed ? std::to_chars(text.data(), end, value, std::chars_format::fixed)
                                : std::to_chars(text.data(), end, value);
    return {text.data(), result.ptr};
}

void expectTheGeneralText(double value)
{
    EXPECT_EQ(written(putDecimal, value), generalText(value, true)) << value;
    EXPECT_EQ(appended(appendShortest, value), generalText(value, false)) << value;
}

TEST(NumberText, WholeNumbersAreWrittenAsTheStandardLibraryWritesThem)
{
    for (const double value : {0.0, -0.0, 1.0, -1.0, 10.0, 46.5, 10000.0, 99999.0, -99999.0,
                               99999.5, 100000.0, -100000.0, 1e22, 0.1})
        expectTheGeneralText(value);
    for (int i = -150000; i < 150000; i += 7)
        expectTheGeneralText(i);
}

TEST(NumberText, ARoundedNumberHasNoTrailingZeros)
{
    EXPECT_EQ(written(putRounded, 46.5), "46.5");
    EXPECT_EQ(written(putRounded, 10.0), "10");
    EXPECT_EQ(written(putRounded, 0.000000010), "0.00000001");
    EXPECT_EQ(written(putRounded, -179.123456789), "-179.123456789");
    EXPECT_EQ(written(putRounded, 0.0), "0");
    EXPECT_EQ(written(putRounded, -0.0), "0");
}

TEST(NumberText, ARoundedNumberIsRoundedHalfAwayFromZero)
{
    EXPECT_EQ(written(putRounded, 179.9999999994), "179.999999999");
    EXPECT_EQ(written(putRounded, 179.9999999996), "180");
    EXPECT_EQ(written(putRounded, 999999999.999999999), "1000000000");
    EXPECT_EQ(written(putRounded, 5e-10), "0.000000001");
    EXPECT_EQ(written(putRounded, -5e-10), "-0.000000001");
    EXPECT_EQ(written(putRounded, 4.999e-10), "0");
    EXPECT_EQ(written(putRounded, -4.999e-10), "0");
    // Adding 0.5 to this many units would round up to 1.
    EXPECT_EQ(written(putRounded, 0.49999999999999994e-9), "0");
}

TEST(NumberText, ARoundedNumberIsWhatTheCLibraryRounds)
{
    for (int i = 0; i < 20000; ++i) {
        const double value = std::sin(i) * std::pow(10, i % 19 - 10);
        const auto digits = std::llround(std::abs(value) * 1e9);
        char expected[40];
        std::snprintf(expected, sizeof expected, "%s%lld.%09lld", value < 0 && digits ? "-" : "",
                      digits / 1000000000, digits % 1000000000);
        std::string text{expected};
        text.resize(text.find_last_not_of('0') + 1);
        text.resize(text.back() == '.' ? text.size() - 1 : text.size());
        EXPECT_EQ(written(putRounded, value), text) << value;
    }
}

TEST(NumberText, TheLongestNumbersFitTheirRoom)
{
    const double smallest = -std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(written(putDecimal, smallest).size(), kMostOfDecimal);
    EXPECT_EQ(appended(appendShortest, -2.2250738585072014e-308).size(), kMostOfShortest);
    EXPECT_EQ(written(putRounded, -999999999.999999999).size(), 11U);
    EXPECT_EQ(appended(appendInteger, std::numeric_limits<std::int64_t>::min()).size(),
              kMostOfInteger);
}

TEST(NumberText, AFixedNumberHasExactlyTheGivenNumberOfDecimals)
{
    const auto fixed = [](double value, int decimals) {
        std::string text;
        appendFixed(text, value, decimals);
        return text;
    };
    EXPECT_EQ(fixed(0, 2), "0.00");
    EXPECT_EQ(fixed(46.5, 2), "46.50");
    EXPECT_EQ(fixed(-46.456, 2), "-46.46");
    EXPECT_EQ(fixed(0.994999, 2), "0.99");
    EXPECT_EQ(fixed(0.995001, 2), "1.00");
    EXPECT_EQ(fixed(2.4, 0), "2");
    EXPECT_EQ(fixed(-kLargest, 100).size(), 1 + 309 + 1 + 100U);
}

TEST(NumberText, IntegersArePaddedAsPrintfDoes)
{
    EXPECT_EQ(appended(appendInteger, std::numeric_limits<std::int64_t>::min()),
              "-9223372036854775808");
    for (const std::int64_t value :
         {std::int64_t{0}, std::int64_t{7}, std::int64_t{-7}, std::int64_t{999}, std::int64_t{1000},
          std::int64_t{-1000}, std::numeric_limits<std::int64_t>::min()}) {
        for (const int width : {0, 1, 2, 3, 5, 30}) {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%0*lld", width,
                          static_cast<long long>(value));
            EXPECT_EQ(appended(appendPadded, value, width), expected);
            if (static_cast<std::size_t>(width) > kMostOfInteger)
                continue;
            std::array<char, kMostOfInteger> text;
            const std::string put(text.data(), putPadded(text.data(), value, width));
            EXPECT_EQ(put, expected);
        }
    }
}

} // namespace
} // namespace gps
