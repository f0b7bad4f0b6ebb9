// SPDX-License-Identifier: MIT

#include "host/base/Text.h"

#include "host/base/XmlText.h"

#include <gtest/gtest.h>

namespace {

std::string xml(std::string_view text)
{
    std::string out;
    host::appendXml(out, text);
    return out;
}

TEST(Text, CharactersOfEveryLengthComeThrough)
{
    for (const char* text : {"a", "\x7f", "\xC2\x80", "ü", "€", "\xEF\xBF\xBD", "\xF0\x90\x80\x80",
                             "\xF4\x8F\xBF\xBF"}) {
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
    // A tail alone, an overlong form, a surrogate, beyond the last character, cut off, an
    // impossible byte.
    for (const auto& [text, bytes] :
         {Row{"\x80", 1}, Row{"\xC0\xAF", 2}, Row{"\xE0\x80\xAF", 3}, Row{"\xED\xA0\x80", 3},
          Row{"\xF4\x90\x80\x80", 4}, Row{"\xE2\x82", 2}, Row{"\xFF", 1},
          Row{"\xF0\x80\x80\x80", 4}}) {
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
    EXPECT_EQ(host::displayText("\xC2\x9B|\xE2\x80\xAE"),
              "\xEF\xBF\xBD|\xEF\xBF\xBD"); // a C1 control, a turn to right-to-left
}

TEST(Joined, TextsHaveWhatStandsBetweenThemBetweenEachTwo)
{
    EXPECT_EQ(host::joined({}, ", "), "");
    EXPECT_EQ(host::joined({"a"}, ", "), "a");
    EXPECT_EQ(host::joined({"", "b", ""}, ", "), ", b, ");
}

} // namespace
