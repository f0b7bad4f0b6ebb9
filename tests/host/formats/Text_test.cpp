// SPDX-License-Identifier: MIT

#include "host/formats/Text.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

std::string xml(std::string_view text)
{
    std::string out;
    host::appendXml(out, text);
    return out;
}

std::string moment(std::int64_t time)
{
    std::string out;
    host::appendMoment(out, time, 'T');
    return out;
}

TEST(Text, XmlIsEscaped)
{
    EXPECT_EQ(xml("<a & \"b\">'"), "&lt;a &amp; &quot;b&quot;&gt;'");
}

TEST(Text, XmlKeepsLinesAndDropsWhatItForbids)
{
    EXPECT_EQ(xml(std::string_view{"a\0\x01\x0b\x1f\tb\nc\rd", 11}), "a\tb\nc&#13;d");
    EXPECT_EQ(xml("\xEF\xBF\xBD|\xEF\xBF\xBE|\xEF\xBF\xBF"), "\xEF\xBF\xBD||"); // U+FFFD may, U+FFFE and U+FFFF may not
}

TEST(Text, CharactersOfEveryLengthComeThrough)
{
    for (const char* text : {"a", "\x7f", "\xC2\x80", "ü", "€", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(xml(text), text);
        EXPECT_EQ(host::characterCount(text), 1U) << text;
    }
}

TEST(Text, EachByteThatIsNoUtf8IsReplaced)
{
    struct Row {
        const char* text;
        std::size_t bytes;
    };
    // A tail alone, an overlong form, a surrogate, beyond the last character, cut off, an impossible byte.
    for (const auto& [text, bytes] :
         {Row{"\x80", 1}, Row{"\xC0\xAF", 2}, Row{"\xE0\x80\xAF", 3}, Row{"\xED\xA0\x80", 3}, Row{"\xF4\x90\x80\x80", 4},
          Row{"\xE2\x82", 2}, Row{"\xFF", 1}, Row{"\xF0\x80\x80\x80", 4}}) {
        EXPECT_EQ(host::characterCount(text), bytes) << text;
        std::string replaced;
        for (std::size_t i = 0; i < bytes; ++i)
            replaced += "\xEF\xBF\xBD";
        EXPECT_EQ(xml(text), replaced);
    }
}

TEST(Text, DisplayIsCutByCharacters)
{
    EXPECT_EQ(host::displayText("äöü", 3), "äöü");
    EXPECT_EQ(host::displayText("äöüß", 3), "äö…");
    EXPECT_EQ(host::displayText("abc", 1), "…");
    EXPECT_EQ(host::displayText(""), "");
}

TEST(Text, DisplayMakesControlCharactersHarmless)
{
    EXPECT_EQ(host::displayText("a\x1b[31mb\n\x7f"), "a\xEF\xBF\xBD[31mb\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(host::displayText("\xC2\x9B|\xE2\x80\xAE"), "\xEF\xBF\xBD|\xEF\xBF\xBD"); // a C1 control, a turn to right-to-left
}

TEST(Text, MomentsBeginIn1980AndEndWithTheYear9999)
{
    EXPECT_FALSE(host::hasMoment({0, 0, 0, 0, 0}));
    EXPECT_FALSE(host::hasMoment({0, 0, 0, 315532799, 0}));
    EXPECT_TRUE(host::hasMoment({0, 0, 0, 315532800, 0}));
    EXPECT_TRUE(host::hasMoment({0, 0, 0, 253402300799, 0}));
    EXPECT_FALSE(host::hasMoment({0, 0, 0, 253402300800, 0}));
}

TEST(Text, MomentsAreWrittenInUtc)
{
    EXPECT_EQ(moment(315532800), "1980-01-01T00:00:00");
    EXPECT_EQ(moment(951782399), "2000-02-28T23:59:59");
    EXPECT_EQ(moment(951782400), "2000-02-29T00:00:00");
    EXPECT_EQ(moment(253402300799), "9999-12-31T23:59:59");
}

TEST(Text, GlobeHasItsBounds)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const auto isOnGlobe = [](double latitude, double longitude) { return host::isOnGlobe({latitude, longitude, 0, 0, 0}); };
    EXPECT_TRUE(isOnGlobe(90, 180));
    EXPECT_TRUE(isOnGlobe(-90, -180));
    EXPECT_FALSE(isOnGlobe(90.0000001, 0));
    EXPECT_FALSE(isOnGlobe(-90.0000001, 0));
    EXPECT_FALSE(isOnGlobe(0, 180.0000001));
    EXPECT_FALSE(isOnGlobe(0, -180.0000001));
    EXPECT_FALSE(isOnGlobe(kNaN, 0));
    EXPECT_FALSE(isOnGlobe(0, kNaN));
}

TEST(Joined, TextsHaveWhatStandsBetweenThemBetweenEachTwo)
{
    EXPECT_EQ(host::joined({}, ", "), "");
    EXPECT_EQ(host::joined({"a"}, ", "), "a");
    EXPECT_EQ(host::joined({"", "b", ""}, ", "), ", b, ");
}

} // namespace
