// SPDX-License-Identifier: MIT

#include "host/formats/XmlCharacters.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;

// "offset: what", or "fine".
std::string flawIn(std::string_view xml)
{
    const auto flaw = host::findXmlFlaw(xml);
    if (!flaw)
        return "fine";
    EXPECT_FALSE(flaw->advice.empty());
    return std::to_string(flaw->offset) + ": " + flaw->what;
}

bool isFine(std::string_view xml)
{
    return !host::findXmlFlaw(xml);
}

TEST(XmlCharacters, CharactersThatXmlAllowsAreFine)
{
    for (const std::string_view text :
         {"", "a", "\t\r\n", "\x7F", "caf\xC3\xA9", "\xC2\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xEF\xBB\xBF<a/>"})
        EXPECT_EQ(flawIn(text), "fine") << text;
}

TEST(XmlCharacters, ControlCharacterIsAFlaw)
{
    EXPECT_EQ(flawIn("a\0"s), "1: the file is damaged (a zero byte)");
    for (const char c : "\x01\b\v\f\x0E\x1F"s)
        EXPECT_EQ(flawIn("ab"s + c), "2: the file is damaged (a control character)");
}

TEST(XmlCharacters, CharacterBeyondTheLastIsAFlaw)
{
    for (const std::string_view text : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"})
        EXPECT_EQ(flawIn(text), "0: the file is damaged (a character that XML does not allow)");
}

TEST(XmlCharacters, InvalidUtf8IsAFlaw)
{
    for (const std::string_view bytes :
         {"\x80", "\xFF", "\xC3", "\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80",
          "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xE9t\xE9"})
        EXPECT_EQ(flawIn("ab" + std::string{bytes}), "2: the text is not valid UTF-8") << bytes;
}

TEST(XmlCharacters, ReferencesOfXmlItselfAreFine)
{
    for (const std::string_view text :
         {"&amp;", "&lt;&gt;&quot;&apos;", "&#9;&#10;&#13;&#32;", "&#x9;", "&#xd7ff;&#xE000;",
          "&#xFFFD;&#x10000;", "&#x10FFFF;", "&#00065;", "&#233;"})
        EXPECT_EQ(flawIn(text), "fine") << text;
}

TEST(XmlCharacters, ReferenceToAForbiddenCharacterIsAFlaw)
{
    EXPECT_EQ(flawIn("A&#0;"),
              "1: the file is not well-formed (&#0; is not a character that XML allows)");
    for (const std::string_view text :
         {"&#8;", "&#11;", "&#x1F;", "&#xD800;", "&#xDFFF;", "&#xFFFE;", "&#xFFFF;", "&#x110000;",
          "&#4294967361;", "&#;", "&#x;", "&#xG;", "&#X41;", "&#-1;", "&#1a;"})
        EXPECT_FALSE(isFine(text)) << text;
}

TEST(XmlCharacters, BareAmpersandIsAFlaw)
{
    for (const std::string_view text :
         {"&", "& ", "A & B", "&amp", "&amp ;", "&;", "&&amp;", "<a b='x&y'/>", "&#65"})
        EXPECT_FALSE(isFine(text)) << text;
    EXPECT_EQ(flawIn("A & B"), "2: the file is not well-formed (a \"&\" that begins no reference)");
}

TEST(XmlCharacters, OtherEntityIsAFlaw)
{
    EXPECT_EQ(flawIn("<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"),
              "33: the file uses &b;, which is not one of the entities of XML itself");
    for (const std::string_view text : {"&nbsp;", "&AMP;", "&ampamp;"})
        EXPECT_FALSE(isFine(text)) << text;
}

TEST(XmlCharacters, AmpersandIsACharacterInLiteralSections)
{
    for (const std::string_view text :
         {"<![CDATA[&]]>", "<![CDATA[a & b &nbsp; &#0; c]]>", "<!-- & -->", "<?p &?>",
          "<a/><!-- & --><b>&amp;</b><![CDATA[ & ]]>", "<![CDATA[ <!-- & ]]>", "<![CDATA[&&]]>",
          "<!DOCTYPE a [<!ENTITY b '&c; & d'>]><a/>"})
        EXPECT_EQ(flawIn(text), "fine") << text;
    for (const std::string_view text : {"<![CDATA[&]]>&", "<!-- & -->&x", "<?p?>&", "&<!-- -->",
                                        "<!-- <![CDATA[ -->&", "<![CDATA[&]]><![CDATA[&]]>& "})
        EXPECT_FALSE(isFine(text)) << text;
}

TEST(XmlCharacters, FlawIsFoundAcrossPieces)
{
    for (std::size_t size = 4090; size <= 4100; ++size) {
        const std::string plain(size, 'a');
        EXPECT_TRUE(isFine(plain + "\xF0\x9F\x8F\x95&amp;" + plain)) << size;
        EXPECT_TRUE(isFine(plain + "<![CDATA[ & ]]>" + plain)) << size;
        EXPECT_EQ(flawIn(plain + "\x01" + plain).substr(0, 5), std::to_string(size) + ":") << size;
        EXPECT_EQ(flawIn(plain + "&b" + plain).substr(0, 5), std::to_string(size) + ":") << size;
        EXPECT_EQ(flawIn(plain + "\xF0\x9F\x8F").substr(0, 5), std::to_string(size) + ":") << size;
    }
}

} // namespace
