// SPDX-License-Identifier: MIT

#include "platform/System/Plist.h"

#include <platform/System/PropertyList.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cstddef>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace gps {
namespace {

using support::plist;
using support::TemporaryFolder;
using testing::HasSubstr;

std::string nested(int depth)
{
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "<array>";
    for (int i = 0; i < depth; ++i)
        text += "</array>";
    return text;
}

/// The value, or the error's description.
Value read(std::string_view xml)
{
    Value value;
    const auto error = parsePropertyList(xml, value);
    return error ? Value{"ERROR: " + *error->description()} : value;
}

TEST(PropertyList, ReadsEveryTypeInFileOrder)
{
    const auto value = read(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist SYSTEM "PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>zeta</key> <string>text</string>
    <key>integer</key> <integer>-12</integer>
    <key>real</key> <real>1.5e3</real>
    <key>yes</key> <true/>
    <key>no</key> <false></false>
    <key>date</key> <date>2026-01-02T03:04:05Z</date>
    <key>data</key> <data>AAEC</data>
    <!-- a comment -->
    <key>alpha</key>
    <array>
        <string>a</string>
        <dict/>
        <array></array>
    </array>
</dict>
</plist>
)");
    const auto* dictionary = value.as<Dictionary>();
    ASSERT_NE(dictionary, nullptr) << describe(value);
    EXPECT_EQ(describe(*dictionary),
              R"({zeta = "text", integer = -12, real = 1500, yes = 1, no = 0, )"
              R"(date = "2026-01-02T03:04:05Z", data = "AAEC", alpha = ["a", {}, []]})");
    EXPECT_EQ(dictionary->find("integer")->as<Number>()->type(), NumberType::kInt64);
    EXPECT_EQ(dictionary->find("real")->as<Number>()->type(), NumberType::kFloat64);
    EXPECT_EQ(dictionary->find("yes")->as<Number>()->type(), NumberType::kBool);
}

TEST(PropertyList, AcceptsValidLists)
{
    const std::pair<std::string, Value> rows[] = {
        {plist("<string/>"), ""},
        {plist("<string></string>"), ""},
        {plist("<string>  </string>"), "  "},
        {plist("<string> a\n b </string>"), " a\n b "},
        {plist("<string>a<!-- c --> b</string>"), "a b"},
        {plist("<string> <![CDATA[<b>]]> </string>"), " <b> "},
        {plist("<string>&lt;&amp;&gt;&quot;&#233;&#x20AC;</string>"), "<&>\"\xC3\xA9\xE2\x82\xAC"},
        {plist("<string>&unknown;</string>"), "&unknown;"},
        {"\xEF\xBB\xBF" + plist("<true/>"), true},
        {"  \n" + plist(" <true/> ") + "\n<!-- end -->\n", true},
        {plist("<integer>0</integer>"), 0},
        {plist("<integer> +7\n</integer>"), 7},
        {plist("<integer>9223372036854775807</integer>"), std::numeric_limits<std::int64_t>::max()},
        {plist("<integer>-9223372036854775808</integer>"),
         std::numeric_limits<std::int64_t>::min()},
        {plist("<real>-.5</real>"), -0.5},
        {plist("<real>5</real>"), 5.0},
        {plist("<dict><key/><string>empty key</string></dict>"), Dictionary{{"", "empty key"}}},
        {plist("<dict><key> a b </key><true/></dict>"), Dictionary{{" a b ", true}}},
        {plist("<dict><key>a</key><integer>1</integer><key>a</key><integer>2</integer></dict>"),
         Dictionary{{"a", 2}}},
    };
    for (const auto& [xml, value] : rows)
        EXPECT_EQ(read(xml), value) << xml << "\n" << describe(read(xml));
}

TEST(PropertyList, RejectsInvalidLists)
{
    const std::pair<std::string, const char*> rows[] = {
        {"", "has no <plist>"},
        {"   ", "has no <plist>"},
        {"text", "has no <plist>"},
        {"<dict/>", "has no <plist>"},
        {"text" + plist("<true/>"), "has no <plist>"},
        {plist("<true/>") + "text", "has content after its end at byte"},
        {plist("<true/>") + plist("<true/>"), "has content after its end"},
        {plist(""), "has no value"},
        {plist("text"), "has text between its elements"},
        {plist("text<true/>"), "has a second value"},
        {plist("<true/>text"), "has a second value"},
        {plist("<true/><true/>"), "has a second value"},
        {plist("<foo/>"), "has the unknown element <foo>"},
        {plist("<String>a</String>"), "has the unknown element <String>"},
        {plist("<key>a</key>"), "has the unknown element <key>"},
        {plist("<plist><true/></plist>"), "has an element inside a <plist>"},
        {plist("<string>a<b/></string>"), "has an element inside a <string>"},
        {plist("<true>yes</true>"), "has a <true> with an invalid value"},
        {plist("<array>text</array>"), "has text between its elements"},
        {plist("<array><true/>,<true/></array>"), "has text between its elements"},
        {plist("<dict><key>a</key></dict>"), "has a <key> without a value"},
        {plist("<dict><true/></dict>"), "lacks a <key>"},
        {plist("<dict><key>a</key><true/><true/></dict>"), "lacks a <key>"},
        {plist("<dict><key>a</key><key>b</key></dict>"), "has the unknown element <key>"},
        {plist("<dict>text<key>a</key><true/></dict>"), "lacks a <key>"},
        {plist("<dict><key>a</key>text<true/></dict>"), "has text between its elements"},
        {plist("<dict><key>a<b/></key><true/></dict>"), "has an element inside a <key>"},
        {plist("<integer/>"), "has a <integer> with an invalid value"},
        {plist("<integer>1.5</integer>"), "has a <integer> with an invalid value"},
        {plist("<integer>12a</integer>"), "has a <integer> with an invalid value"},
        {plist("<integer>- 1</integer>"), "has a <integer> with an invalid value"},
        {plist("<integer>+-1</integer>"), "has a <integer> with an invalid value"},
        {plist("<integer>9223372036854775808</integer>"), "has a <integer> with an invalid value"},
        {plist("<integer>-9223372036854775809</integer>"), "has a <integer> with an invalid value"},
        {plist("<real/>"), "has a <real> with an invalid value"},
        {plist("<real>nan</real>"), "has a <real> with an invalid value"},
        {plist("<real>-inf</real>"), "has a <real> with an invalid value"},
        {plist("<real>1e999</real>"), "has a <real> with an invalid value"},
        {plist("<real>1,5</real>"), "has a <real> with an invalid value"},
        {"<plist><true/>", "is not well-formed XML"},
        {"<plist><dict><key>a</key></plist>", "is not well-formed XML"},
        {"<plist><string>a</plist>", "is not well-formed XML"},
        {"<", "is not well-formed XML"},
        {std::string{"<plist><true/></plist>\0<!--", 27}, "has a zero byte at byte 22"},
    };
    for (const auto& [xml, text] : rows) {
        Value value = "untouched";
        const auto error = parsePropertyList(xml, value);
        ASSERT_TRUE(error) << xml;
        EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
        EXPECT_EQ(error->code(), 3840);
        EXPECT_THAT(*error->description(), HasSubstr(text)) << xml;
        EXPECT_EQ(value, Value{"untouched"}) << xml;
    }
}

TEST(PropertyList, AnErrorNamesTheByteOffset)
{
    EXPECT_EQ(read("<plist><foo/></plist>"),
              Value{"ERROR: The property list has the unknown element <foo> at byte 8."});
}

TEST(PropertyList, EveryTruncatedListIsRejected)
{
    const auto xml = plist("<dict><key>a</key><string>b</string></dict>");
    for (std::size_t length = 0; length < xml.size(); ++length) {
        Value value;
        EXPECT_TRUE(parsePropertyList(xml.substr(0, length), value)) << length;
    }
}

TEST(PropertyList, SixtyFourLevelsAreReadAndOneMoreIsNot)
{
    EXPECT_NE(read(plist(nested(64))).as<Array>(), nullptr);
    EXPECT_THAT(*read(plist(nested(65))).as<std::string>(), HasSubstr("is nested too deeply"));
    EXPECT_THAT(*read(plist(nested(60'000))).as<std::string>(), HasSubstr("is nested too deeply"));
}

TEST(PropertyList, EntityBombsAreInert)
{
    const auto value =
        read("<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">"
             "<!ENTITY f SYSTEM \"file:///etc/passwd\">]>" +
             plist("<string>&b;&f;</string>"));
    EXPECT_EQ(value, Value{"&b;&f;"});
}

TEST(PropertyList, OneMebibyteIsReadAndOneByteMoreIsNot)
{
    const auto frame = plist("<string></string>").size();
    const auto largest =
        plist("<string>" + std::string(kLargestPropertyList - frame, 'a') + "</string>");
    EXPECT_EQ(read(largest), Value{std::string(kLargestPropertyList - frame, 'a')});
    EXPECT_THAT(*read(largest + " ").as<std::string>(), HasSubstr("is too large"));
}

TEST(PropertyList, ReadErrorsOfAFileAreReturned)
{
    const TemporaryFolder folder;
    Value value;
    EXPECT_EQ(readPropertyList(folder.path("none"), value)->code(), 260);
    EXPECT_EQ(readPropertyList(folder.path(), value)->code(), 256);
    EXPECT_EQ(
        readPropertyList(folder.put("large", std::string(kLargestPropertyList + 1, ' ')), value)
            ->code(),
        256);
    EXPECT_EQ(readPropertyList(folder.put("empty", ""), value)->code(), 3840);
    EXPECT_EQ(readPropertyList(folder.put("list", plist("<true/>")), value), std::nullopt);
    EXPECT_EQ(value, Value{true});
}

TEST(PropertyList, ADictionaryIsReadOnlyFromAFileThatHoldsOne)
{
    const TemporaryFolder folder;
    EXPECT_EQ(
        readPropertyListDictionary(folder.put("a", plist("<dict><key>a</key><true/></dict>"))),
        (Dictionary{{"a", true}}));
    EXPECT_EQ(readPropertyListDictionary(folder.put("b", plist("<array/>"))), std::nullopt);
    EXPECT_EQ(readPropertyListDictionary(folder.put("c", "<dict/>")), std::nullopt);
    EXPECT_EQ(readPropertyListDictionary(folder.path("none")), std::nullopt);
}

TEST(PropertyList, ALackOfMemoryIsAnException)
{
    const auto allocate = pugi::get_memory_allocation_function();
    const auto release = pugi::get_memory_deallocation_function();
    pugi::set_memory_management_functions([](std::size_t) -> void* { return nullptr; }, release);
    Value value;
    EXPECT_THROW((void)parsePropertyList("<plist><string>a</string></plist>", value),
                 std::bad_alloc);
    pugi::set_memory_management_functions(allocate, release);
}

} // namespace
} // namespace gps
