// SPDX-License-Identifier: MIT

#include "host/fitting/PlainTextConverter.h"

#include <gtest/gtest.h>

namespace {

const gps::CharacterSet& characters()
{
    static const gps::CharacterSet set{
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz .0123456789-/'"};
    return set;
}

TEST(PlainTextConverter, LettersOfOtherScriptsBecomeLatin)
{
    struct Row {
        std::string_view text;
        std::string_view plain;
    };
    const Row rows[] = {
        {"", ""},
        {"Camp 1", "Camp 1"},
        {"caf\xC3\xA9", "cafe"},
        {"cafe\xCC\x81", "cafe"}, // a combining accent
        {"\xC3\x89t\xC3\xA9 \xC3\xA0 Z\xC3\xBCrich", "Ete a Zurich"},
        {"Stra\xC3\x9F"
         "e",
         "Strasse"},
        {"\xC3\x98re", "Ore"},
        {"\xC5\x81\xC3\xB3\x64\xC5\xBA", "Lodz"},
        {"\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0", "Moskva"},
        {"\xCE\x91\xCE\xB8\xCE\xAE\xCE\xBD\xCE\xB1", "Athena"},
        {"\xE5\x8C\x97\xE4\xBA\xAC", "bei jing"},
        {"A\xE2\x80\x93"
         "B\xE2\x80\x99s",
         "A-B's"}, // typographic marks
    };
    host::PlainTextConverter converter{characters()};
    for (const auto& row : rows) {
        const auto plain = converter.convert(row.text);
        EXPECT_EQ(plain.text, row.plain) << row.text;
        EXPECT_EQ(plain.dropped, "") << row.text;
    }
}

TEST(PlainTextConverter, CharactersWithoutAReplacementAreDroppedAndReported)
{
    host::PlainTextConverter converter{characters()};
    const auto plain = converter.convert("a,b;\xF0\x9F\x8F\x95 c\xFF,");
    EXPECT_EQ(plain.text, "ab c");
    EXPECT_EQ(plain.dropped, ",;\xF0\x9F\x8F\x95\xEF\xBF\xBD,");
}

TEST(PlainTextConverter, LineBreaksBecomeOneSpace)
{
    host::PlainTextConverter converter{characters()};
    EXPECT_EQ(converter.convert("a\r\n\r\n\tb\n").text, "a b ");
    EXPECT_EQ(converter.convert("\n\na  b").text, "a  b") << "spaces are kept";
    EXPECT_EQ(converter.convert("a\n   b  \n c").text, "a b c")
        << "except those around a line break";
    EXPECT_EQ(converter.convert("a\n\nb").dropped, "");
}

TEST(PlainTextConverter, SpaceIsDroppedIfTheReceiverHasNone)
{
    const gps::CharacterSet letters{"ab"};
    host::PlainTextConverter converter{letters};
    const auto plain = converter.convert("a b");
    EXPECT_EQ(plain.text, "ab");
    EXPECT_EQ(plain.dropped, " ");
}

TEST(PlainTextConverter, TextIsPlainIfTheReceiverHasAllItsCharacters)
{
    const host::PlainTextConverter converter{characters()};
    for (const std::string_view text : {"", "Camp 1", " "})
        EXPECT_TRUE(converter.isPlain(text)) << text;
    for (const std::string_view text : {"a,b", "caf\xC3\xA9", "a\nb", "\xFF"})
        EXPECT_FALSE(converter.isPlain(text)) << text;
}

TEST(PlainTextConverter, LongWordIsConvertedWholeWhereverItsPiecesEnd)
{
    host::PlainTextConverter converter{characters()};
    for (const std::size_t ahead : {0U, 1U, 2U, 3U}) {
        std::string text(ahead, 'x');
        for (int i = 0; i < 2000; ++i)
            text += "\xE1\xBA\xBD\xC3\xA9"; // five bytes a pair
        const auto plain = converter.convert(text);
        EXPECT_EQ(plain.text.size(), ahead + 4000);
        EXPECT_TRUE(plain.dropped.empty());
    }
    EXPECT_EQ(converter.convert(std::string(5000, '\x80')).text, "") << "not one valid character";
}

} // namespace
