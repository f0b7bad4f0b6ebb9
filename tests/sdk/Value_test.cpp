// SPDX-License-Identifier: MIT

#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace gps {
namespace {

TEST(Value, HoldsTheTypeThatItWasCreatedFrom)
{
    EXPECT_TRUE(Value{}.isNone());
    EXPECT_EQ(Value{true}.as<Number>()->type(), NumberType::kBool);
    EXPECT_EQ(Value{std::int8_t{1}}.as<Number>()->type(), NumberType::kInt8);
    EXPECT_EQ(Value{7}.as<Number>()->type(), NumberType::kInt32);
    EXPECT_EQ(Value{std::int64_t{7}}.as<Number>()->type(), NumberType::kInt64);
    EXPECT_EQ(Value{7.0F}.as<Number>()->type(), NumberType::kFloat32);
    EXPECT_EQ(Value{7.0}.as<Number>()->type(), NumberType::kFloat64);
    EXPECT_EQ(*Value{"text"}.as<std::string>(), "text");
    EXPECT_EQ(Value{std::string_view("te\0xt", 5)}.as<std::string>()->size(), 5U);
    EXPECT_EQ(Value{GPSPoint{}}.as<GPSPoint>()->time, 0);
    EXPECT_EQ(Value{Array{}}.as<Array>()->size(), 0U);
    EXPECT_EQ(Value{Dictionary{}}.as<Dictionary>()->size(), 0U);
    EXPECT_EQ(Value{"text"}.as<Number>(), nullptr);
    EXPECT_FALSE(Value{""}.isNone());
}

TEST(Value, NumbersAreEqualByTheirValueWhateverTheirType)
{
    EXPECT_EQ(Value{1}, Value{1.0});
    EXPECT_EQ(Value{1}, Value{true});
    EXPECT_EQ(Value{std::int8_t{-3}}, Value{-3.0F});
    EXPECT_NE(Value{1}, Value{2});
    EXPECT_NE(Value{1}, Value{"1"});
    EXPECT_NE(Value{0}, Value{});
    EXPECT_EQ(Value{}, Value{});
}

TEST(Value, TextsAreEqualByteForByte)
{
    EXPECT_EQ(Value{"a"}, Value{std::string{"a"}});
    EXPECT_NE(Value{"caf\xC3\xA9"}, Value{"cafe\xCC\x81"}); // they look the same
    EXPECT_NE(Value{"a"}, Value{std::string_view("a\0", 2)});
}

TEST(Value, ArraysAndDictionariesAreEqualElementByElement)
{
    const Array array{1, "a", Array{2.0, Dictionary{{"k", "v"}}}};
    EXPECT_EQ(Value{array}, (Value{Array{1.0, "a", Array{2, Dictionary{{"k", "v"}}}}}));
    EXPECT_NE(Value{array}, (Value{Array{"a", 1, Array{2.0, Dictionary{{"k", "v"}}}}}));
    EXPECT_NE(Value{array}, Value{Array{1}});
    EXPECT_NE(Value{Array{}}, Value{Dictionary{}});
}

TEST(Value, PointsAreEqualBitForBit)
{
    EXPECT_EQ(Value{(GPSPoint{46.5, 7.25, 1200, 5, 6})}, Value{(GPSPoint{46.5, 7.25, 1200, 5, 6})});
    EXPECT_NE(Value{(GPSPoint{0.0, 0, 0, 0, 0})}, Value{(GPSPoint{-0.0, 0, 0, 0, 0})});
}

TEST(Value, AChangeOfACopyDoesNotShowInTheOriginal)
{
    const Dictionary content{{"list", Array{1, 2}}};
    const Value original{content};
    Value copy = original;
    copy.as<Dictionary>()->find("list")->as<Array>()->clear();
    EXPECT_EQ(original, (Value{Dictionary{{"list", Array{1, 2}}}}));
    EXPECT_NE(original, copy);
}

TEST(Value, AChangeOfTheOriginalDoesNotShowInItsCopy)
{
    Array list{1, Dictionary{{"k", "v"}}};
    const auto copy = list;
    list[1].as<Dictionary>()->set("k", "changed");
    EXPECT_EQ(*copy[1].as<Dictionary>()->findString("k"), "v");
}

TEST(Value, CopiesShareTheirElementsUntilOneIsChanged)
{
    const Value original{Array{1, 2}};
    Value copy = original;
    EXPECT_EQ(std::as_const(copy).as<Array>(), original.as<Array>());
    copy.as<Array>()->push_back(3);
    EXPECT_NE(std::as_const(copy).as<Array>(), original.as<Array>());
    EXPECT_EQ(original.as<Array>()->size(), 2U);
}

TEST(Value, AMovedOutArrayOrDictionaryIsNeither)
{
    Value array{Array{1}};
    Value dictionary{Dictionary{{"a", 1}}};
    const Value taken[] = {std::move(array), std::move(dictionary)};
    EXPECT_EQ(taken[0], Value{Array{1}});
    EXPECT_EQ(array.as<Array>(), nullptr);           // NOLINT(bugprone-use-after-move): the point
    EXPECT_EQ(dictionary.as<Dictionary>(), nullptr); // NOLINT(bugprone-use-after-move)
    array = Array{2};
    EXPECT_EQ(array, Value{Array{2}});
}

TEST(Value, BooleanReadingsOfEachType)
{
    struct Row {
        Value value;
        bool reading;
    };
    const Row rows[] = {{true, true},
                        {false, false},
                        {0, false},
                        {2, true},
                        {-1, true},
                        {0.5, true},
                        {0.0, false},
                        {-0.0, false},
                        {std::nan(""), true},
                        {"", false},
                        {"yes", true},
                        {"Y", true},
                        {"true", true},
                        {"T", true},
                        {"no", false},
                        {"1", true},
                        {"0", false},
                        {"  \t9", true},
                        {"-1", true},
                        {"+00", false},
                        {"007", true},
                        {"x1", false},
                        {"0.5", false},
                        {" 0y", true},
                        {Value{}, false},
                        {Array{1}, false},
                        {Dictionary{{"a", 1}}, false},
                        {GPSPoint{1, 1, 1, 1, 1}, false}};
    for (const auto& [value, reading] : rows)
        EXPECT_EQ(value.boolReading(), reading) << describe(value);
}

TEST(Value, OnlyNumbersAndTextsHaveAReading)
{
    EXPECT_TRUE(Value{0}.hasReading());
    EXPECT_TRUE(Value{""}.hasReading());
    EXPECT_FALSE(Value{}.hasReading());
    EXPECT_FALSE((Value{Array{}}.hasReading()));
    EXPECT_FALSE((Value{Dictionary{}}.hasReading()));
    EXPECT_FALSE(Value{GPSPoint{}}.hasReading());
}

TEST(Value, IntegerReadingsSaturate)
{
    constexpr auto kMin = std::numeric_limits<std::int32_t>::min();
    constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
    struct Row {
        Value value;
        std::int32_t reading;
    };
    const Row rows[] = {{7, 7},
                        {true, 1},
                        {2.9, 2},
                        {-2.9, -2},
                        {std::nan(""), 0},
                        {1e300, kMax},
                        {-1e300, kMin},
                        {std::int64_t{1} << 40, kMax},
                        {-(std::int64_t{1} << 40), kMin},
                        {"12abc", 12},
                        {" -12", -12},
                        {"+5", 5},
                        {"2147483647", kMax},
                        {"2147483648", kMax},
                        {"-2147483648", kMin},
                        {"-2147483649", kMin},
                        {"99999999999999999999999999", kMax},
                        {"abc", 0},
                        {"", 0},
                        {"- 1", 0},
                        {"1.9", 1},
                        {Value{}, 0},
                        {Array{1}, 0}};
    for (const auto& [value, reading] : rows)
        EXPECT_EQ(value.int32Reading(), reading) << describe(value);
}

TEST(Value, ADescriptionShowsAllContents)
{
    EXPECT_EQ(describe(Value{}), "(null)");
    EXPECT_EQ(describe(Value{Array{}}), "[]");
    EXPECT_EQ(describe(Dictionary{}), "{}");
    EXPECT_EQ(describe(Dictionary{{"name", "Camp"},
                                  {"n", 1.5},
                                  {"list", Array{true, -2}},
                                  {"point", GPSPoint{46.5, -7.25, 0, 3, 0}}}),
              R"({name = "Camp", n = 1.5, list = [1, -2], point = (46.5, -7.25, 0, 3, 0)})");
    // An Array{Array{}} would be a copy of the inner one with clang, a list of one with g++.
    EXPECT_EQ(describe(Array{Dictionary{}, Dictionary{}, Array{Value{Array{}}}, ""}),
              R"([{}, {}, [[]], ""])");
    EXPECT_EQ(describe(Dictionary{{"a", Dictionary{}}, {"b", "{"}, {"c", 1}}),
              R"({a = {}, b = "{", c = 1})");
}

TEST(Value, StatusObjectsAreEqualByIdentity)
{
    const std::shared_ptr<GPSOutputReceiver> none;
    EXPECT_EQ(Value{none}, Value{none});
    EXPECT_FALSE(Value{none}.isNone());
    EXPECT_EQ(describe(Value{none}), "(status object)");
}

TEST(Value, FindsTheBoxedPoint)
{
    const GPSPoint point{1, 2, 3, 4, 5};
    const Dictionary record{{kPointKey, point}};
    ASSERT_NE(findPoint(record), nullptr);
    EXPECT_EQ(*findPoint(record), point);
    EXPECT_EQ(findPoint(Dictionary{}), nullptr);
    EXPECT_EQ(findPoint(Dictionary{{kPointKey, "1 2"}}), nullptr);
}

} // namespace
} // namespace gps
