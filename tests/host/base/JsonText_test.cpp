// SPDX-License-Identifier: MIT

#include "host/base/JsonText.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

std::string jsonOf(std::string_view text)
{
    std::string out;
    host::appendJson(out, text);
    return out;
}

std::string jsonOf(const gps::Dictionary& record)
{
    std::string out;
    host::appendJson(out, record);
    return out;
}

TEST(JsonText, StringsAreEscaped)
{
    EXPECT_EQ(jsonOf("plain"), R"("plain")");
    EXPECT_EQ(jsonOf("a\"b\\c"), R"("a\"b\\c")");
    EXPECT_EQ(jsonOf(std::string_view{"\0\n\x1f", 3}), R"("\u0000\n\u001f")");
    EXPECT_EQ(jsonOf("Zürich"), "\"Zürich\"");
}

TEST(JsonText, InvalidUtf8IsReplaced)
{
    EXPECT_EQ(jsonOf("a\xff"), "\"a\xEF\xBF\xBD\"");
}

TEST(JsonText, NumbersKeepTheirType)
{
    EXPECT_EQ(jsonOf(gps::Dictionary{
                  {"b", true}, {"i", std::int64_t{-5}}, {"d", 46.0}, {"e", 0.1}, {"f", 1.5F}}),
              R"({"b":true,"i":-5,"d":46,"e":0.1,"f":1.5})");
}

TEST(JsonText, NumbersThatAreNotFiniteAreNull)
{
    EXPECT_EQ(jsonOf(gps::Dictionary{{"n", std::numeric_limits<double>::quiet_NaN()},
                                     {"i", std::numeric_limits<float>::infinity()}}),
              R"({"n":null,"i":null})");
    std::string out;
    host::appendJson(out, gps::GPSPoint{std::numeric_limits<double>::infinity(), 0, 0, 0, 0});
    EXPECT_EQ(out, R"({"latitude":null,"longitude":0,"altitude":0,"time":0,"reserved":0})");
}

TEST(JsonText, RecordsNest)
{
    const gps::Dictionary record{
        {"name", "R"},
        {"points", gps::Array{gps::Dictionary{{"point", gps::GPSPoint{1, 2, 3, 4, 5}}}, 7}},
        {"empty", gps::Array{}}};
    EXPECT_EQ(jsonOf(record),
              R"({"name":"R","points":[{"point":{"latitude":1,"longitude":2,"altitude":3,"time":4,)"
              R"("reserved":5}},7],)"
              R"("empty":[]})");
}

TEST(JsonText, ObjectIsReadWithItsKeysInOrder)
{
    const auto read = host::readJsonObject(
        R"({"z":true,"a":1,"n":-2,"d":1.5,"s":"x","l":[1,"y"],"o":{"k":0},"none":null})");
    ASSERT_TRUE(read);
    EXPECT_EQ(jsonOf(*read), R"({"z":true,"a":1,"n":-2,"d":1.5,"s":"x","l":[1,"y"],"o":{"k":0}})");
    EXPECT_EQ(host::readJsonObject("{}"), gps::Dictionary{});
}

TEST(JsonText, IntegerBeyond64BitsSaturates)
{
    EXPECT_EQ(jsonOf(*host::readJsonObject(R"({"n":18446744073709551615})")),
              R"({"n":9223372036854775807})");
}

TEST(JsonText, TextThatIsNotAnObjectIsRejected)
{
    for (const char* text : {"", "null", "[]", "1", "\"a\"", "{", "{}x", "{\"a\":}", "{a:1}"})
        EXPECT_FALSE(host::readJsonObject(text)) << text;
}

TEST(JsonText, ErrorOffsetIsThatOfTheFirstErrorOrHugeNumber)
{
    EXPECT_EQ(host::jsonErrorOffset("{\"a\":1}"), std::nullopt);
    EXPECT_EQ(host::jsonErrorOffset("[1e308]"), std::nullopt);
    EXPECT_EQ(host::jsonErrorOffset("[1e999]"), 5U) << "valid JSON, but no double";
    EXPECT_EQ(host::jsonErrorOffset(""), 0U);
    EXPECT_EQ(host::jsonErrorOffset("{a:1}"), 1U);
    EXPECT_EQ(host::jsonErrorOffset("{} x"), 3U);
    EXPECT_EQ(host::jsonErrorOffset("[1,"), 3U) << "at the end of the text";
}

TEST(JsonText, NestingIsBounded)
{
    const auto nested = [](std::size_t levels) {
        return "{\"a\":" + std::string(levels - 1, '[') + std::string(levels - 1, ']') + "}";
    };
    EXPECT_TRUE(host::readJsonObject(nested(64)));
    EXPECT_FALSE(host::readJsonObject(nested(66)));
    EXPECT_FALSE(host::readJsonObject(nested(100000)));
}

TEST(JsonText, RepeatedKeyIsFoundBehindItsSecondOccurrence)
{
    EXPECT_FALSE(host::repeatedJsonKey(R"({"a":{"a":[{"a":1},{"a":2}]},"A":1})"));
    EXPECT_FALSE(host::repeatedJsonKey(R"({"a":null,"b":[null,null,{"a":null}]})"));
    EXPECT_FALSE(host::repeatedJsonKey(R"({"a":)"));
    const std::string text = R"({"b":{"":1,"" :2}})";
    const auto repeated = host::repeatedJsonKey(text);
    ASSERT_TRUE(repeated);
    EXPECT_EQ(repeated->key, "");
    EXPECT_EQ(repeated->offset, text.find(" :2"));
    EXPECT_FALSE(host::readJsonObject(text));
}

TEST(JsonText, KeyIsRepeatedWhateverItsValuesAre)
{
    for (const char* const text :
         {R"({"a":null,"a":null})", R"({"a":null,"a":1})", R"({"a":1,"a":null})",
          R"({"b":[{"a":null,"c":1,"a":null}]})", R"({"a":{"a":null},"b":1,"a":null})"}) {
        const auto repeated = host::repeatedJsonKey(text);
        ASSERT_TRUE(repeated) << text;
        EXPECT_EQ(repeated->key, "a") << text;
        EXPECT_FALSE(host::readJsonObject(text)) << text;
    }
}

} // namespace
