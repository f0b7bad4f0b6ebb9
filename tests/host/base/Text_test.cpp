// SPDX-License-Identifier: MIT

#include "host/base/Text.h"

#include "host/base/EscapedXml.h"
#include "host/base/XmlText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

namespace {

using support::xml;

TEST(Text, CharactersOfEveryLengthAreKept)
{
    for (const char* text : {"a", "\x7f", "\xC2\x80", "ü", "€", "\xEF\xBF\xBD", "\xF0\x90\x80\x80",
                             "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(xml(text), text);
        EXPECT_EQ(host::characterCount(text), 1U) << text;
    }
}

TEST(Text, EachByteOfAnInvalidSequenceIsReplaced)
{
    struct Row {
        const char* text;
        std::size_t bytes;
    };
    // A continuation byte alone, overlong forms, a surrogate, a code point above the last one, a
    // sequence that is cut off, a byte that occurs in no sequence.
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

TEST(Text, IncompleteSequenceDoesNotSwallowTheNextCharacter)
{
    EXPECT_EQ(xml("\xE2\x82<"), "\xEF\xBF\xBD\xEF\xBF\xBD&lt;");
    EXPECT_EQ(xml("\xF0\x9F\x8F\xC3\xBC"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xC3\xBC");
}

TEST(Text, PieceIsAsLongAsItMayBeWithoutSplittingACharacter)
{
    const auto pieceOf = [](std::string_view text, std::size_t most) {
        const auto whole = text;
        const auto piece = host::takePiece(text, most);
        EXPECT_EQ(std::string{piece} + std::string{text}, whole);
        return std::string{piece};
    };
    EXPECT_EQ(pieceOf("abcd", 4), "abcd");
    EXPECT_EQ(pieceOf("abcde", 4), "abcd");
    EXPECT_EQ(pieceOf("abcü", 4), "abc");
    EXPECT_EQ(pieceOf("abüx", 4), "abü");
    EXPECT_EQ(pieceOf("a\xF0\x9F\x8F\x95", 4), "a");
    EXPECT_EQ(pieceOf("\xF0\x9F\x8F\x95x", 4), "\xF0\x9F\x8F\x95");
    EXPECT_EQ(pieceOf("abc\xE2", 4), "abc\xE2") << "the end of the text is not a split";
    EXPECT_EQ(pieceOf("\x80\x80\x80\x80\x80", 4), "\x80\x80\x80\x80");
}

TEST(Text, DisplayTextIsCutAfterWholeCharacters)
{
    EXPECT_EQ(host::displayText("äöü", 3), "äöü");
    EXPECT_EQ(host::displayText("äöüß", 3), "äö…");
    EXPECT_EQ(host::displayText("abc", 1), "…");
    EXPECT_EQ(host::displayText(""), "");
}

TEST(Text, DisplayTextHasNoControlCharacters)
{
    EXPECT_EQ(host::displayText("a\x1b[31mb\n\x7f"), "a\xEF\xBF\xBD[31mb\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(host::displayText("\xC2\x9B|\xE2\x80\xAE"),
              "\xEF\xBF\xBD|\xEF\xBF\xBD"); // a C1 control, a change to right-to-left
}

TEST(Text, DisplayTextHasNothingThatHidesOrReordersText)
{
    for (const char32_t unsafe : std::initializer_list<char32_t>{
             0x80,   0x9B,   0x9F,   0xAD,   0x61C,   0x180E,  0x200B,
             0x200D, 0x200E, 0x200F, 0x2028, 0x202E,  0x2060,  0x2066,
             0x2069, 0x206F, 0xFEFF, 0xFFF9, 0xE0000, 0xE0041, 0xE007F}) {
        std::string text;
        host::appendCharacter(text, unsafe);
        EXPECT_EQ(host::displayText(text), "\uFFFD")
            << std::hex << static_cast<std::uint32_t>(unsafe);
    }
    for (const char* safe : {"\u00A0", "\u00AC", "\u00AE", "\u200A", "\u2010", "\u2027", "\u202F",
                             "\u2070", "\uFEFE", "\uFFFC", "\U000E0080"})
        EXPECT_EQ(host::displayText(safe), safe);
}

TEST(Text, DisplayTextHasNoBytesOutsideOfCharacters)
{
    EXPECT_EQ(host::displayText("a\x9B"
                                "2J\x80\xFF"),
              "a\uFFFD2J\uFFFD\uFFFD");
}

TEST(Text, PageTextKeepsJoinersAndHasNothingElseThatIsUnsafe)
{
    EXPECT_EQ(host::pageText("a\u200Cb\u200Dc"), "a\u200Cb\u200Dc");
    EXPECT_EQ(host::pageText("\u200B|\u200E|\u202E|\x1b|\uFEFF"),
              "\uFFFD|\uFFFD|\uFFFD|\uFFFD|\uFFFD");
    EXPECT_EQ(host::pageText("a\xFF"), "a\uFFFD");
}

TEST(Text, PageTextHasASpaceForEachLineBreakAndTab)
{
    EXPECT_EQ(host::pageText("a\r\nb\nc\rd\te"), "a b c d e");
    EXPECT_EQ(host::pageText("a\vb\fc\u0085d\u2028e\u2029f"), "a b c d e f");
    EXPECT_EQ(host::pageText("a\n\rb"), "a  b");
}

TEST(Text, JoinedTextsHaveTheSeparatorBetweenThem)
{
    EXPECT_EQ(host::joined({}, ", "), "");
    EXPECT_EQ(host::joined({"a"}, ", "), "a");
    EXPECT_EQ(host::joined({"", "b", ""}, ", "), ", b, ");
}

} // namespace
