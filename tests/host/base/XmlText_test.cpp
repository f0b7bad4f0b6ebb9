// SPDX-License-Identifier: MIT

#include "host/base/XmlText.h"

#include "host/base/EscapedXml.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using support::xml;

using namespace std::string_literals;

std::string converted(std::string xml)
{
    EXPECT_EQ(host::convertXmlToUtf8(xml), host::XmlConversion::kDone);
    return xml;
}

// The text before what is not valid.
std::string validPart(std::string xml)
{
    EXPECT_EQ(host::convertXmlToUtf8(xml), host::XmlConversion::kInvalidText);
    return xml;
}

// ASCII in code units of so many bytes.
std::string wide(std::string_view ascii, std::size_t unit, bool bigEndian)
{
    std::string text;
    for (const char c : ascii) {
        std::string one(unit, '\0');
        one[bigEndian ? unit - 1 : 0] = c;
        text += one;
    }
    return text;
}

TEST(XmlText, Utf8IsNotChanged)
{
    for (const std::string& xml : {""s, "<"s, "<a>\xC3\xA9</a>"s, "\xEF\xBB\xBF<a/>"s,
                                   "<?xml version='1.0' encoding='UTF-8'?><a/>"s,
                                   "<?xml version=\"1.0\" encoding=\"utf8\"?><a/>"s, "<a>\xFF</a>"s,
                                   "\xFF"s, "<?xml version='1.0'?><a encoding='latin1'/>"s,
                                   "<?xml encoding?>"s, "<?xml encoding='x?>"s})
        EXPECT_EQ(converted(xml), xml);
}

TEST(XmlText, ByteOrderMarkDecidesTheEncoding)
{
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_EQ(converted("\xFF\xFE"s + wide("<a/>", 2, false)), mark + "<a/>");
    EXPECT_EQ(converted("\xFE\xFF"s + wide("<a/>", 2, true)), mark + "<a/>");
    EXPECT_EQ(converted("\xFF\xFE\0\0"s + wide("<a/>", 4, false)), mark + "<a/>");
    EXPECT_EQ(converted("\0\0\xFE\xFF"s + wide("<a/>", 4, true)), mark + "<a/>");
}

TEST(XmlText, Utf16IsRecognisedByItsFirstCharacter)
{
    EXPECT_EQ(converted(wide("<a/>", 2, false)), "<a/>");
    EXPECT_EQ(converted(wide("<a/>", 2, true)), "<a/>");
}

TEST(XmlText, LongTextIsConvertedWhole)
{
    const std::string text = "<a>" + std::string(100000, 'x') + "</a>";
    EXPECT_EQ(converted(wide(text, 2, true)), text);
}

TEST(XmlText, BytesThatTheEncodingDoesNotHaveEndTheConversion)
{
    EXPECT_EQ(validPart(wide("<a", 2, false) + "x"), "<a"); // half of a character
    EXPECT_EQ(validPart(wide("<a", 2, false) + "\xD8"s), "<a");
    EXPECT_EQ(validPart(wide("<a", 2, true) + "\xD8\x3C"s + wide("b", 2, true)), "<a");
    for (const std::string& start : {"<?xml version='1.0' encoding='US-ASCII'?><a>"s,
                                     "<?xml version='1.0' encoding='Shift_JIS'?><a>"s,
                                     "<?xml version='1.0' encoding='GB2312'?><a>"s}) {
        EXPECT_EQ(validPart(start + "G\xFClle"), start + "G");
        EXPECT_EQ(converted(start + "Gulle"), start + "Gulle");
    }
    const std::string lines = "<a>" + std::string(100000, '\n');
    EXPECT_EQ(validPart(wide(lines, 2, true) + "\xDC\x3C"s + wide("</a>", 2, true)), lines);
}

TEST(XmlText, DeclarationDecidesTheEncoding)
{
    const std::string latin = R"(<?xml version="1.0" encoding="ISO-8859-1"?><a>)";
    EXPECT_EQ(converted(latin + "\xE9"), latin + "\xC3\xA9");
    const std::string windows = "<?xml version='1.0' encoding='windows-1252'?><a>";
    EXPECT_EQ(converted(windows + "\x80"), windows + "\xE2\x82\xAC");
    const std::string style = "<?xml-stylesheet title=\"encoding='windows-1252'\"?><a>\xC3\xA9</a>";
    EXPECT_EQ(converted(style), style);
}

TEST(XmlText, DeclarationThatCannotBeTrueIsIgnored)
{
    const std::string xml = "<?xml version='1.0' encoding='UTF-16'?><a>\xC3\xA9</a>";
    EXPECT_EQ(converted(xml), xml);
}

TEST(XmlText, UnknownEncodingIsRejected)
{
    std::string xml = "<?xml version='1.0' encoding='no-such-thing'?><a/>";
    const std::string before = xml;
    EXPECT_EQ(host::convertXmlToUtf8(xml), host::XmlConversion::kUnknownEncoding);
    EXPECT_EQ(xml, before);
}

TEST(XmlText, LinesAreCountedFromOne)
{
    EXPECT_EQ(host::lineAt("a\nb\n", 0), 1U);
    EXPECT_EQ(host::lineAt("a\nb\n", 1), 1U);
    EXPECT_EQ(host::lineAt("a\nb\n", 2), 2U);
    EXPECT_EQ(host::lineAt("a\nb\n", 99), 3U);
}

TEST(XmlText, TextIsEscaped)
{
    EXPECT_EQ(xml("<a & \"b\">'"), "&lt;a &amp; &quot;b&quot;&gt;'");
    EXPECT_EQ(xml("a<b"), "a&lt;b");
    EXPECT_EQ(xml("~\x7f ü&&é~"), "~\x7f ü&amp;&amp;é~");
}

TEST(XmlText, ForbiddenCharactersAreDroppedAndLineBreaksKept)
{
    EXPECT_EQ(xml(std::string_view{"a\0\x01\x0b\x1f\tb\nc\rd", 11}), "a\tb\nc&#13;d");
    EXPECT_EQ(xml("\xEF\xBF\xBD|\xEF\xBF\xBE|\xEF\xBF\xBF"),
              "\xEF\xBF\xBD||"); // U+FFFD is allowed, U+FFFE and U+FFFF are not
}

} // namespace
