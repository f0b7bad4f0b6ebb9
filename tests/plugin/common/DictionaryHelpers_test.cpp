// SPDX-License-Identifier: MIT
// The exported helpers, called as another module would.

#include <gps/DictionaryHelpers.h>
#include <gps/Value.h>
#include <platform/OrvUtils/OrvDebug.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using gps::Dictionary;

/// Values without a boolean or an integer reading.
const std::vector<gps::Value> kWithoutReading{gps::Array{1}, Dictionary{{"key", 1}},
                                              gps::GPSPoint{}};

class DebugLevelTest : public testing::Test {
protected:
    ~DebugLevelTest() override { GarminSetDebugLevel(0); }
};

TEST_F(DebugLevelTest, IsStoredHereAndInTheFramework)
{
    EXPECT_EQ(GarminDebugLevel, 0);
    GarminSetDebugLevel(2);
    EXPECT_EQ(GarminDebugLevel, 2);
    EXPECT_TRUE(gps::OrvDebugLevelIs(2));
    EXPECT_FALSE(gps::OrvDebugLevelIs(3));
}

TEST_F(DebugLevelTest, TheFrameworkDecidesWhetherALevelIsOn)
{
    GarminDebugLevel = 5;
    EXPECT_FALSE(DebugLevelIs(1));
    gps::OrvSetDebugLevel(1);
    GarminDebugLevel = 0;
    EXPECT_TRUE(DebugLevelIs(1));
    EXPECT_FALSE(DebugLevelIs(2));
}

TEST_F(DebugLevelTest, WithoutTheOptionItIsZeroWithAZeroItIsOneAndOtherwiseTheOptions)
{
    for (const auto& [options, level] :
         std::vector<std::pair<Dictionary, int>>{{{}, 0},
                                                 {{{"debug", 0}}, 1},
                                                 {{{"debug", 1}}, 1},
                                                 {{{"debug", 3}}, 3},
                                                 {{{"debug", -2}}, -2},
                                                 {{{"debug", "4 please"}}, 4},
                                                 {{{"debug", "yes"}}, 1},
                                                 {{{"debug", false}}, 1}}) {
        GarminSetDebugLevel(9);
        SetDebugLevelFromDictionary(&options);
        EXPECT_EQ(GarminDebugLevel, level) << gps::describe(options);
        EXPECT_EQ(gps::OrvDebugLevelIs(1), level > 0) << gps::describe(options);
    }
}

TEST_F(DebugLevelTest, AnOptionThatIsNeitherANumberNorATextCountsAsAbsent)
{
    for (const auto& value : kWithoutReading) {
        const Dictionary options{{"debug", value}};
        GarminSetDebugLevel(9);
        SetDebugLevelFromDictionary(&options);
        EXPECT_EQ(GarminDebugLevel, 0) << gps::describe(options);
    }
}

TEST_F(DebugLevelTest, ANullDictionaryLeavesItUnchanged)
{
    GarminSetDebugLevel(2);
    SetDebugLevelFromDictionary(nullptr);
    EXPECT_EQ(GarminDebugLevel, 2);
    EXPECT_TRUE(gps::OrvDebugLevelIs(2));
}

TEST(GetBoolValueForKey, ReadsNumbersAndTexts)
{
    for (const auto& [value, reading] : std::vector<std::pair<gps::Value, bool>>{{2, true},
                                                                                 {0, false},
                                                                                 {-1, true},
                                                                                 {0.5, true},
                                                                                 {true, true},
                                                                                 {false, false},
                                                                                 {"YES", true},
                                                                                 {"no", false},
                                                                                 {" true", true},
                                                                                 {"0", false},
                                                                                 {"07", true},
                                                                                 {"", false}}) {
        const Dictionary dictionary{{"key", value}};
        EXPECT_EQ(GetBoolValueForKey(&dictionary, "key", !reading), reading)
            << gps::describe(value);
    }
}

TEST(GetBoolValueForKey, TwoReadsAsExactlyOne)
{
    const Dictionary dictionary{{"key", 2}};
    EXPECT_EQ(static_cast<int>(GetBoolValueForKey(&dictionary, "key", false)), 1);
}

TEST(GetBoolValueForKey, IsTheDefaultWithoutAKeyOrADictionary)
{
    const Dictionary empty;
    for (const bool fallback : {false, true}) {
        EXPECT_EQ(GetBoolValueForKey(&empty, "key", fallback), fallback);
        EXPECT_EQ(GetBoolValueForKey(nullptr, "key", fallback), fallback);
    }
}

TEST(GetBoolValueForKey, IsTheDefaultForAValueThatIsNeitherANumberNorAText)
{
    for (const auto& value : kWithoutReading) {
        const Dictionary dictionary{{"key", value}};
        for (const bool fallback : {false, true})
            EXPECT_EQ(GetBoolValueForKey(&dictionary, "key", fallback), fallback)
                << gps::describe(value);
    }
}

TEST(GetIntValueForKey, ReadsNumbersAndTheLeadingIntegerOfATextSaturated)
{
    for (const auto& [value, reading] : std::vector<std::pair<gps::Value, std::int32_t>>{
             {42, 42},
             {-7.9, -7},
             {"12abc", 12},
             {" -5", -5},
             {"abc", 0},
             {std::int64_t{1} << 40, std::numeric_limits<std::int32_t>::max()},
             {"-99999999999", std::numeric_limits<std::int32_t>::min()},
         }) {
        const Dictionary dictionary{{"key", value}};
        EXPECT_EQ(GetIntValueForKey(&dictionary, "key", 99), reading) << gps::describe(value);
    }
}

TEST(GetIntValueForKey, IsTheDefaultWithoutAKeyOrADictionary)
{
    const Dictionary empty;
    EXPECT_EQ(GetIntValueForKey(&empty, "key", -3), -3);
    EXPECT_EQ(GetIntValueForKey(nullptr, "key", -3), -3);
}

TEST(GetIntValueForKey, IsTheDefaultForAValueThatIsNeitherANumberNorAText)
{
    for (const auto& value : kWithoutReading) {
        const Dictionary dictionary{{"key", value}};
        EXPECT_EQ(GetIntValueForKey(&dictionary, "key", -3), -3) << gps::describe(value);
    }
}

TEST(GetIntValueForKey, AKeyIsNotAPath)
{
    const Dictionary dictionary{{"a.b", 1}, {"a", Dictionary{{"b", 2}}}};
    EXPECT_EQ(GetIntValueForKey(&dictionary, "a.b", 0), 1);
}

TEST(SetNumbers, KeepTheirNumericType)
{
    Dictionary dictionary;
    SetFloatInDictionary(&dictionary, "float", 0.5F);
    SetIntInDictionary(&dictionary, "int", -3);
    EXPECT_EQ(dictionary.find("float")->as<gps::Number>()->type(), gps::NumberType::kFloat32);
    EXPECT_EQ(dictionary.find("int")->as<gps::Number>()->type(), gps::NumberType::kInt32);
    EXPECT_EQ(gps::describe(dictionary), "{float = 0.5, int = -3}");
}

TEST(SetNumbers, AreBuiltFromTheBytesOfTheGivenType)
{
    const std::int8_t int8 = -8;
    const std::int16_t int16 = -16;
    const std::int32_t int32 = -32;
    const std::int64_t int64 = std::int64_t{-64} << 40;
    const float float32 = 0.25F;
    const double float64 = 1e300;
    Dictionary dictionary;
    SetNumberInDictionary(&dictionary, "a", gps::NumberType::kInt8, &int8);
    SetNumberInDictionary(&dictionary, "b", gps::NumberType::kInt16, &int16);
    SetNumberInDictionary(&dictionary, "c", gps::NumberType::kInt32, &int32);
    SetNumberInDictionary(&dictionary, "d", gps::NumberType::kInt64, &int64);
    SetNumberInDictionary(&dictionary, "e", gps::NumberType::kFloat32, &float32);
    SetNumberInDictionary(&dictionary, "f", gps::NumberType::kFloat64, &float64);
    EXPECT_EQ(gps::describe(dictionary),
              "{a = -8, b = -16, c = -32, d = -70368744177664, e = 0.25, f = 1e+300}");
    EXPECT_EQ(dictionary.find("b")->as<gps::Number>()->type(), gps::NumberType::kInt16);
}

TEST(SetNumbers, AnInvalidTypeIsNotStored)
{
    Dictionary dictionary{{"key", "old"}};
    const std::int64_t value = 1;
    SetNumberInDictionary(&dictionary, "key", static_cast<gps::NumberType>(-1), &value);
    SetNumberInDictionary(&dictionary, "key", static_cast<gps::NumberType>(7), &value);
    EXPECT_EQ(*dictionary.findString("key"), "old");
}

TEST(SetCString, AnEmptyTextReplacesTheValueExceptInTheIfNotEmptyForm)
{
    Dictionary dictionary{{"key", "old"}};
    SetCStringInDictionaryIfNotEmpty(&dictionary, "key", "");
    EXPECT_EQ(*dictionary.findString("key"), "old");
    SetCStringInDictionary(&dictionary, "key", "");
    EXPECT_EQ(*dictionary.findString("key"), "");
    SetCStringInDictionaryIfNotEmpty(&dictionary, "key", "new");
    EXPECT_EQ(*dictionary.findString("key"), "new");
}

TEST(SetCString, ATextWithAByteAbove127IsNotStoredAndAnOlderOneIsKept)
{
    Dictionary dictionary{{"key", "old"}};
    SetCStringInDictionary(&dictionary, "key", "caf\xE9");
    SetCStringInDictionaryIfNotEmpty(&dictionary, "key", "\x80");
    EXPECT_EQ(*dictionary.findString("key"), "old");
    SetCStringInDictionary(&dictionary, "key", "\x7F");
    EXPECT_EQ(*dictionary.findString("key"), "\x7F");
}

TEST(SetLatin1CString, AByteAbove127IsItsLatin1Character)
{
    Dictionary dictionary;
    SetLatin1CStringInDictionary(&dictionary, "key", "caf\xE9 \x7F\x80\xBF\xC0\xFF");
    EXPECT_EQ(*dictionary.findString("key"), "caf\xC3\xA9 \x7F\xC2\x80\xC2\xBF\xC3\x80\xC3\xBF");
    SetLatin1CStringInDictionaryIfNotEmpty(&dictionary, "other", "\xA9");
    EXPECT_EQ(*dictionary.findString("other"), "\xC2\xA9");
}

TEST(SetLatin1CString, AnEmptyTextReplacesTheValueExceptInTheIfNotEmptyForm)
{
    Dictionary dictionary{{"key", "old"}};
    SetLatin1CStringInDictionaryIfNotEmpty(&dictionary, "key", "");
    EXPECT_EQ(*dictionary.findString("key"), "old");
    SetLatin1CStringInDictionary(&dictionary, "key", "");
    EXPECT_EQ(*dictionary.findString("key"), "");
}

TEST(SetStringFromList, AcceptsTheLastIndexAndLeavesTheDictionaryUntouchedOutside)
{
    const std::array<const char*, 3> list{"zero", "one", "two"};
    const std::array<std::string, 3> strings{"zero", "one", "caf\xC3\xA9"};
    const auto taken = [&](std::int32_t index) {
        Dictionary dictionary{{"c", "old"}, {"s", "old"}};
        SetStringInDictionaryFromCStringList(&dictionary, "c", list.data(), 2, index);
        SetStringInDictionaryFromCFStringList(&dictionary, "s", strings.data(), 2, index);
        return *dictionary.findString("c") + " " + *dictionary.findString("s");
    };
    EXPECT_EQ(taken(-1), "old old");
    EXPECT_EQ(taken(0), "zero zero");
    EXPECT_EQ(taken(2), "two caf\xC3\xA9");
    EXPECT_EQ(taken(3), "old old");
}

TEST(SetGPSPoint, ABoxedPointIsBitIdenticalInAllFiveFields)
{
    const gps::GPSPoint point{-0.0, std::numeric_limits<double>::quiet_NaN(), 1e-310,
                              std::numeric_limits<std::int64_t>::min(), -77};
    Dictionary dictionary;
    SetGPSPointInDictionary(&dictionary, "point", point);
    ASSERT_NE(gps::findPoint(dictionary), nullptr);
    EXPECT_EQ(*gps::findPoint(dictionary), point);
    EXPECT_STREQ(gps::kGPSPointTypeCode, "{?=dddqq}");
}

TEST(SetGPSPoint, AnExistingKeyKeepsItsPosition)
{
    Dictionary dictionary{{"point", 1}, {"name", "A"}};
    SetGPSPointInDictionary(&dictionary, "point", {1, 2, 3, 4, 5});
    EXPECT_EQ(gps::describe(dictionary), "{point = (1, 2, 3, 4, 5), name = \"A\"}");
}

TEST(Setters, RemoveTheKeyFirstSoThatTheNewEntryIsTheLast)
{
    const std::array<const char*, 1> list{"text"};
    const std::array<std::string, 1> strings{"text"};
    const double number = 1;
    const std::vector<void (*)(Dictionary&)> setters{
        [](Dictionary& d) { SetFloatInDictionary(&d, "key", 1); },
        [](Dictionary& d) { SetIntInDictionary(&d, "key", 1); },
        [](Dictionary& d) { SetCStringInDictionary(&d, "key", "text"); },
        [](Dictionary& d) { SetCStringInDictionaryIfNotEmpty(&d, "key", "text"); },
        [](Dictionary& d) { SetLatin1CStringInDictionary(&d, "key", "text"); },
        [](Dictionary& d) { SetLatin1CStringInDictionaryIfNotEmpty(&d, "key", "text"); },
    };
    const auto lastKey = [](const Dictionary& dictionary) {
        std::string last;
        for (const auto& entry : dictionary)
            last = entry.key;
        return last;
    };
    for (std::size_t i = 0; i < setters.size(); ++i) {
        Dictionary dictionary{{"key", "old"}, {"other", 1}};
        setters[i](dictionary);
        EXPECT_EQ(dictionary.size(), 2U) << i;
        EXPECT_EQ(lastKey(dictionary), "key") << i;
    }
    Dictionary dictionary{{"key", "old"}, {"other", 1}};
    SetNumberInDictionary(&dictionary, "key", gps::NumberType::kFloat64, &number);
    EXPECT_EQ(lastKey(dictionary), "key");
    SetStringInDictionaryFromCStringList(&dictionary, "other", list.data(), 0, 0);
    EXPECT_EQ(lastKey(dictionary), "other");
    SetStringInDictionaryFromCFStringList(&dictionary, "key", strings.data(), 0, 0);
    EXPECT_EQ(lastKey(dictionary), "key");
}

TEST(Setters, DoNothingWithoutADictionary)
{
    const std::array<const char*, 1> list{"text"};
    const std::array<std::string, 1> strings{"text"};
    const double number = 1;
    SetFloatInDictionary(nullptr, "key", 1);
    SetIntInDictionary(nullptr, "key", 1);
    SetNumberInDictionary(nullptr, "key", gps::NumberType::kFloat64, &number);
    SetCStringInDictionary(nullptr, "key", "text");
    SetCStringInDictionaryIfNotEmpty(nullptr, "key", "text");
    SetLatin1CStringInDictionary(nullptr, "key", "text");
    SetLatin1CStringInDictionaryIfNotEmpty(nullptr, "key", "text");
    SetStringInDictionaryFromCStringList(nullptr, "key", list.data(), 0, 0);
    SetStringInDictionaryFromCFStringList(nullptr, "key", strings.data(), 0, 0);
    SetGPSPointInDictionary(nullptr, "key", {});
    // Nor do they look at the rest then.
    SetNumberInDictionary(nullptr, "key", gps::NumberType::kFloat64, nullptr);
    SetCStringInDictionary(nullptr, nullptr, nullptr);
    SetCStringInDictionaryIfNotEmpty(nullptr, nullptr, nullptr);
    SetLatin1CStringInDictionary(nullptr, nullptr, nullptr);
    SetLatin1CStringInDictionaryIfNotEmpty(nullptr, nullptr, nullptr);
    SetStringInDictionaryFromCStringList(nullptr, nullptr, nullptr, 0, 0);
    SetStringInDictionaryFromCFStringList(nullptr, nullptr, nullptr, 0, 0);
    SUCCEED();
}

TEST(Setters, AcceptAKeyThatIsPartOfTheDictionary)
{
    const std::string longKey(100, 'k'); // not stored within the string object itself
    const auto afterSetting = [&](auto set) {
        gps::Dictionary dictionary{{longKey, "old"}};
        set(&dictionary, dictionary.begin()->key.c_str());
        EXPECT_EQ(dictionary.size(), 1U);
        EXPECT_EQ(dictionary.begin()->key, longKey);
    };
    afterSetting([](auto* d, auto* key) { SetIntInDictionary(d, key, 1); });
    afterSetting([](auto* d, auto* key) { SetFloatInDictionary(d, key, 1); });
    afterSetting([](auto* d, auto* key) { SetCStringInDictionary(d, key, key); });
    afterSetting([](auto* d, auto* key) { SetLatin1CStringInDictionary(d, key, key); });
    afterSetting([](auto* d, auto* key) { SetGPSPointInDictionary(d, key, {}); });
    gps::Dictionary names{{"name", longKey}};
    SetGPSPointInDictionary(&names, names.findString("name")->c_str(), {});
    EXPECT_NE(names.find(longKey), nullptr);
}

TEST(TimeZones, ANullNameHasNoOffset)
{
    EXPECT_EQ(GetGMTOffsetFromTimeZoneName(nullptr), 0);
    EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime(nullptr, 0), 0);
}

TEST(TimeZones, AnOffsetIsThatOfTheInstant)
{
    constexpr std::int64_t kJanuary = 1199145600; // 2008-01-01
    constexpr std::int64_t kJuly = 1214870400;    // 2008-07-01
    EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime("Europe/Zurich", kJanuary), 3600);
    EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime("Europe/Zurich", kJuly), 7200);
    EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime("America/New_York", kJanuary), -5 * 3600);
    EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime("Asia/Kolkata", kJanuary), 19800);
    EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime("UTC", kJuly), 0);
}

TEST(TimeZones, AnUnknownNameHasNoOffset)
{
    for (const auto* name : {"", "Nowhere/AtAll", "../../etc/passwd"}) {
        EXPECT_EQ(GetGMTOffsetFromTimeZoneNameWithUnixTime(name, 0), 0) << name;
        EXPECT_EQ(GetGMTOffsetFromTimeZoneName(name), 0) << name;
    }
}

TEST(TimeZones, TheDefaultTimeIsNow)
{
    EXPECT_EQ(GetGMTOffsetFromTimeZoneName("Asia/Kolkata"), 19800); // no daylight saving there
    const auto zurich = GetGMTOffsetFromTimeZoneName("Europe/Zurich");
    EXPECT_TRUE(zurich == 3600 || zurich == 7200) << zurich;
}

} // namespace
