// SPDX-License-Identifier: MIT

#include "host/formats/XmlCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;

std::string describe(const host::XmlCheck& check)
{
    if (!check.flaw)
        return "fine";
    EXPECT_FALSE(check.flaw->advice.empty());
    return std::to_string(check.flaw->offset) + ": " + check.flaw->what;
}

// "offset: what", or "fine".
std::string flawIn(std::string_view xml)
{
    return describe(host::checkXml(xml));
}

// As flawIn(), for the content of an element; the offset counts from there.
std::string flawInContent(std::string_view content)
{
    auto check = host::checkXml("<a>" + std::string{content} + "</a>");
    if (check.flaw)
        check.flaw->offset -= 3;
    return describe(check);
}

bool isFineContent(std::string_view content)
{
    return flawInContent(content) == "fine";
}

TEST(XmlCheck, CharactersThatXmlAllowsAreFine)
{
    for (const std::string_view text :
         {"", "a", "\t\r\n", "\x7F", "caf\xC3\xA9", "\xC2\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xEF\xBB\xBF"})
        EXPECT_EQ(flawInContent(text), "fine") << text;
}

TEST(XmlCheck, ControlCharacterIsAFlawWhereverItIs)
{
    EXPECT_EQ(flawInContent("a\0"s), "1: the file is damaged (a zero byte)");
    for (const char c : "\x01\b\v\f\x0E\x1F"s)
        EXPECT_EQ(flawInContent("ab"s + c), "2: the file is damaged (a control character)");
    for (const std::string_view text :
         {"<a b='\x01'/>", "<\x01/>", "<!--  \x01--><a/>", "<a><![CDATA[\x01]]></a>", "<?p \x01?>"})
        EXPECT_EQ(flawIn(text), std::to_string(text.find('\x01')) +
                                    ": the file is damaged (a control character)");
}

TEST(XmlCheck, CharacterBeyondTheLastIsAFlaw)
{
    for (const std::string_view text : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"})
        EXPECT_EQ(flawInContent(text),
                  "0: the file is damaged (a character that XML does not allow)");
}

TEST(XmlCheck, InvalidUtf8IsAFlaw)
{
    for (const std::string_view bytes :
         {"\x80", "\xFF", "\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80",
          "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xE9t\xE9", "\xC3"})
        EXPECT_EQ(flawInContent("ab" + std::string{bytes}), "2: the text is not valid UTF-8")
            << bytes;
    for (const std::string_view text :
         {"<a b='\xE9'/>", "<a\xE9/>", "<!-- \xE9 --><a/>", "<a><![CDATA[\xE9]]></a>"})
        EXPECT_EQ(flawIn(text),
                  std::to_string(text.find('\xE9')) + ": the text is not valid UTF-8");
    EXPECT_EQ(flawIn("<a>\xC3"), "3: the file is damaged or cut short");
}

TEST(XmlCheck, DeclaredEncodingDoesNotCountBecauseTheTextIsConverted)
{
    EXPECT_EQ(flawIn("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9</a>"), "fine");
    EXPECT_EQ(flawIn("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"),
              "46: the text is not valid UTF-8");
    EXPECT_EQ(flawIn("\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-16'?><a/>"), "fine");
}

TEST(XmlCheck, ReferencesOfXmlItselfAreFine)
{
    for (const std::string_view text :
         {"&amp;", "&lt;&gt;&quot;&apos;", "&#9;&#10;&#13;&#32;", "&#x9;", "&#xd7ff;&#xE000;",
          "&#xFFFD;&#x10000;", "&#x10FFFF;", "&#00065;", "&#233;"})
        EXPECT_EQ(flawInContent(text), "fine") << text;
    EXPECT_EQ(flawIn("<a b='&amp;&#65;'/>"), "fine");
}

TEST(XmlCheck, ReferenceToAForbiddenCharacterIsAFlaw)
{
    EXPECT_EQ(flawInContent("A&#0;"),
              "1: the file is not well-formed (&#0; is not a character that XML allows)");
    EXPECT_EQ(flawIn("<a b='&#xFFFE;'/>"),
              "6: the file is not well-formed (&#xFFFE; is not a character that XML allows)");
    for (const std::string_view text :
         {"&#8;", "&#11;", "&#x1F;", "&#xD800;", "&#xDFFF;", "&#xFFFE;", "&#xFFFF;", "&#x110000;",
          "&#4294967361;", "&#;", "&#x;", "&#xG;", "&#X41;", "&#-1;", "&#1a;"})
        EXPECT_FALSE(isFineContent(text)) << text;
}

TEST(XmlCheck, BareAmpersandIsAFlaw)
{
    constexpr char kFlaw[] = "the file is not well-formed (a \"&\" that begins no reference)";
    for (const std::string_view text : {"& ", "A & B", "A &amp B", "&amp ;", "&;", "&&amp;", "x&y",
                                        "&#65", "&#xG;", "&caf\xC3\xA9"})
        EXPECT_EQ(flawInContent(text), std::to_string(text.find('&')) + ": " + kFlaw) << text;
    EXPECT_EQ(flawIn("<a b='x&y'/>"), "7: "s + kFlaw);
    EXPECT_EQ(flawIn("<a>&"), "3: the file is damaged or cut short");
}

TEST(XmlCheck, OtherEntityIsAFlaw)
{
    constexpr char kFlaw[] = "the file uses &b;, which is not one of the entities of XML itself";
    EXPECT_EQ(flawInContent("&amp;&b;"), "5: "s + kFlaw);
    EXPECT_EQ(flawIn("<a b='&amp;&#65;&lt;&gt;&quot;&apos;\n&b;'/>"), "37: "s + kFlaw);
    EXPECT_EQ(flawIn("<!DOCTYPE a SYSTEM 'a.dtd'><a>&amp;&b;</a>"), "35: "s + kFlaw);
    for (const std::string_view text : {"&nbsp;", "&AMP;", "&ampamp;"})
        EXPECT_FALSE(isFineContent(text)) << text;
    EXPECT_EQ(flawInContent("&" + std::string(41, 'b') + ";"),
              "0: the file uses &" + std::string(39, 'b') +
                  "…;, which is not one of the entities of XML itself");
}

TEST(XmlCheck, DeclarationsInTheDocumentTypeAreRefused)
{
    constexpr char kFlaw[] = "the file has declarations in its document type, which no map file "
                             "needs";
    for (const std::string_view text :
         {"<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>", "<!DOCTYPE a [<!ENTITY b 'c'>]><a/>",
          "<!DOCTYPE a SYSTEM 'x' [<!ATTLIST a b CDATA 'c'>]><a/>", "<!DOCTYPE a []><a/>"})
        EXPECT_EQ(flawIn(text), std::to_string(text.find('[')) + ": " + kFlaw) << text;
    EXPECT_EQ(flawIn("<!DOCTYPE a><a/>"), "fine");
    EXPECT_EQ(flawIn("<!DOCTYPE a PUBLIC 'x' 'y'>\n<a/>"), "fine");
}

TEST(XmlCheck, EntitiesWithinEntitiesAreRefusedHoweverManyThereAre)
{
    std::string text = "<!DOCTYPE a [<!ENTITY e0 'x'>";
    constexpr int kCount = 100000;
    for (int i = 1; i <= kCount; ++i)
        text += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    text += "]><a b='&e" + std::to_string(kCount) + ";'/>";
    EXPECT_TRUE(host::checkXml(text).flaw);
}

TEST(XmlCheck, MarkupIsTextInCommentsSectionsAndInstructions)
{
    for (const std::string_view text :
         {"<![CDATA[&]]>", "<![CDATA[a & b &nbsp; &#0; <c]]>", "<!-- & < ]]> -->", "<?p & < ]]> ?>",
          "<b/><!-- & --><b>&amp;</b><![CDATA[ & ]]>", "<![CDATA[ <!-- & -- ]]>", "<![CDATA[]]]]>"})
        EXPECT_EQ(flawInContent(text), "fine") << text;
    for (const std::string_view text : {"<![CDATA[&]]>&", "<!-- & -->&x", "<?p?>&", "&<!-- -->",
                                        "<!-- <![CDATA[ -->&", "<![CDATA[&]]><![CDATA[&]]>& "})
        EXPECT_FALSE(isFineContent(text)) << text;
}

TEST(XmlCheck, EndOfASectionInATextIsAFlaw)
{
    EXPECT_EQ(flawInContent("b]]>"), "3: the file is not well-formed (\"]]>\" in a text)");
    for (const std::string_view text : {"]]", "]] >", "]>", "]]&gt;", "<b c=']]>'/>"})
        EXPECT_EQ(flawInContent(text), "fine") << text;
}

TEST(XmlCheck, TwoHyphensInACommentAreAFlaw)
{
    constexpr char kFlaw[] = "the file is not well-formed (\"--\" in a comment)";
    EXPECT_EQ(flawInContent("<!-- b -- c -->"), "9: "s + kFlaw);
    EXPECT_EQ(flawInContent("<!-- b --->"), "9: "s + kFlaw);
    EXPECT_EQ(flawInContent("<!-- b - c -->-- "), "fine");
    EXPECT_EQ(flawIn("<!-- b --><a--\"/>"),
              "14: the file is not well-formed (\"\"\" is not allowed here)");
}

TEST(XmlCheck, AttributesAreQuotedSeparateAndGivenOnceWithoutALessThanSign)
{
    EXPECT_EQ(flawIn("<a b='1' c=\"'2\" B = '&lt;>'/>"), "fine");
    EXPECT_EQ(flawIn("<a b='<'/>"), "6: the file is not well-formed (\"<\" is not allowed here)");
    EXPECT_EQ(flawIn("<a b=1/>"), "5: the file is not well-formed (\"1\" is not allowed here)");
    EXPECT_EQ(flawIn("<a b/>"), "4: the file is not well-formed (\"/\" is not allowed here)");
    EXPECT_EQ(flawIn("<a b='1'c='2'/>"),
              "8: the file is not well-formed (\"c\" is not allowed here)");
    EXPECT_EQ(flawIn("<a b='1' b='2'/>"),
              "9: the file is not well-formed (an attribute is given twice)");
}

TEST(XmlCheck, CharacterThatCannotBeThereIsNamed)
{
    EXPECT_EQ(flawIn("<1a/>"), "1: the file is not well-formed (\"1\" is not allowed here)");
    EXPECT_EQ(flawIn("<a\xC3\x97/>"),
              "2: the file is not well-formed (\"\xC3\x97\" is not allowed here)");
    EXPECT_EQ(flawIn("<a \xE2\x80\xAE/>"),
              "3: the file is not well-formed (U+202E is not allowed here)");
    EXPECT_EQ(flawIn("<a \xC2\x9B/>"),
              "3: the file is not well-formed (U+009B is not allowed here)");
    EXPECT_EQ(flawIn("<\na/>"), "1: the file is not well-formed (white space is not allowed here)");
}

TEST(XmlCheck, ElementsEndInOrder)
{
    EXPECT_EQ(flawIn("<a><b></b ><c/></a>"), "fine");
    EXPECT_EQ(flawIn("<a><b></a >"), "8: the file is damaged or cut short (</a> does not end the "
                                     "element that is open)");
    EXPECT_EQ(flawIn("<a></" + std::string(41, 'b') + ">"),
              "5: the file is damaged or cut short (</" + std::string(39, 'b') +
                  "…> does not end the element that is open)");
}

TEST(XmlCheck, TextThatEndsInTheMiddleIsCutShort)
{
    for (const std::string_view text :
         {"<a>", "<a><b/>", "<a b='1", "<a", "<", "<a><![CDATA[x", "<!-- x", "<a><?p", "<a></a",
          "<!DOCTYPE", "<?xml version='1.0'"})
        EXPECT_NE(flawIn(text).find("the file is damaged or cut short"), std::string::npos) << text;
}

TEST(XmlCheck, DeclarationComesFirst)
{
    EXPECT_EQ(flawIn("<?xml version='1.0'?>\n<a/>"), "fine");
    for (const auto* const start : {" ", "\n", "<!-- -->"})
        EXPECT_EQ(flawIn(start + "<?xml version='1.0'?><a/>"s),
                  std::to_string(std::string_view{start}.size()) +
                      ": \"<?xml\" is not at the start of the file");
    for (const std::string version : {"1.0", "1.1", "1.10"})
        EXPECT_EQ(flawIn("<?xml version='" + version + "'?><a/>"), "fine") << version;
    for (const std::string version : {"2.0", "1.", "10", "1", "1.0a", "0"})
        EXPECT_EQ(flawIn("<?xml version='" + version + "'?><a/>"),
                  "0: the file is not well-formed (there is no version " + version + " of XML)");
    EXPECT_EQ(flawIn("<?xml?><a/>"), "5: the file is not well-formed (XML declaration not "
                                     "well-formed)");
}

TEST(XmlCheck, NothingButCommentsAndADocumentTypeIsBeforeTheDocument)
{
    constexpr char kFlaw[] = "the file is not well-formed (this cannot be before the document)";
    EXPECT_EQ(flawIn("<!-- --><?p?><!DOCTYPE a><!-- --><a/>"), "fine");
    EXPECT_EQ(flawIn("<!DOCTYPE a><!DOCTYPE a><a/>"), "12: "s + kFlaw);
    EXPECT_EQ(flawIn("<!-- -->b <a/>"), "8: "s + kFlaw);
}

TEST(XmlCheck, NothingButCommentsFollowsTheDocument)
{
    constexpr char kFlaw[] = "there is more text after the end of the document";
    EXPECT_EQ(flawIn("<a/>\n<!-- --><?p?> "), "fine");
    EXPECT_EQ(flawIn("<a/> b"), "5: "s + kFlaw);
    EXPECT_EQ(flawIn("<a/><a/>"), "4: "s + kFlaw);
}

TEST(XmlCheck, PrefixWithoutANamespaceIsFine)
{
    EXPECT_EQ(flawIn("<x:a y:b='1'><z:c/></x:a>"), "fine");
}

TEST(XmlCheck, RootIsThatOfTheDocumentEvenIfThereIsAFlawBehindIt)
{
    for (const std::string_view text :
         {"<x:a b='1'/>", "<!-- <c/> --><x:a><d/></x:a>", "<x:a><d></x:a>", "<x:a>", "<x:a/><e/>"})
        EXPECT_EQ(host::checkXml(text).root, "x:a") << text;
    for (const std::size_t length : {63U, 64U, 65U})
        EXPECT_EQ(host::checkXml("<" + std::string(length, 'a') + "/>").root.size(),
                  std::min<std::size_t>(length, 64));
    for (const std::string_view text : {"<!-- -- --><a/>", "<a", "<a b=1/>"})
        EXPECT_EQ(host::checkXml(text).root, "") << text;
}

TEST(XmlCheck, TextWithoutAnElementHasNeitherRootNorFlaw)
{
    for (const std::string_view text : {"", " \n", "\xEF\xBB\xBF", "<?xml version='1.0'?>",
                                        "<!-- <a/> -->", "<!DOCTYPE a>", "<!DOCTYPE a"}) {
        EXPECT_EQ(flawIn(text), "fine") << text;
        EXPECT_EQ(host::checkXml(text).root, "") << text;
    }
}

TEST(XmlCheck, FlawIsFoundAcrossPieces)
{
    constexpr std::string_view kFine = "<a b='\xF0\x9F\x8F\x95'>&amp;<![CDATA[ & ]]><!-- --></a>";
    const auto flawed = std::string{kFine.substr(0, kFine.size() - 4)} + "&b</a>";
    for (std::size_t piece = 1; piece <= flawed.size(); ++piece) {
        EXPECT_EQ(describe(host::checkXml(kFine, piece)), "fine") << piece;
        EXPECT_EQ(describe(host::checkXml(flawed, piece)), flawIn(flawed)) << piece;
    }
}

} // namespace
