// SPDX-License-Identifier: MIT

#include <gps/Dictionary.h>
#include <gps/Value.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace gps {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> keysOf(const Dictionary& dictionary)
{
    std::vector<std::string> keys;
    for (const auto& [key, value] : dictionary)
        keys.push_back(key);
    return keys;
}

/// A key that is too long for a string's internal buffer.
std::string keyOf(int i)
{
    return "a key that takes some storage " + std::to_string(i);
}

/// The keys 0 to count-1, each with its number as the value.
Dictionary numbered(int count)
{
    Dictionary dictionary;
    for (int i = 0; i < count; ++i)
        dictionary.set(keyOf(i), i);
    return dictionary;
}

// Up to a dozen entries are searched one by one, more through an index. These tests cover both.
class DictionaryOfSize : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Sizes, DictionaryOfSize,
                         testing::Values(1, 2, 11, 12, 13, 14, 31, 32, 33, 200, 5000));

TEST_P(DictionaryOfSize, FindsEveryKeyAndNoOther)
{
    const auto dictionary = numbered(GetParam());
    EXPECT_EQ(dictionary.size(), static_cast<std::size_t>(GetParam()));
    for (int i = 0; i < GetParam(); ++i) {
        ASSERT_NE(dictionary.find(keyOf(i)), nullptr) << i;
        EXPECT_EQ(*dictionary.find(keyOf(i)), Value{i});
    }
    EXPECT_FALSE(dictionary.contains(keyOf(GetParam())));
    EXPECT_FALSE(dictionary.contains(""));
}

TEST_P(DictionaryOfSize, KeepsTheOrderInWhichKeysWereFirstSet)
{
    auto dictionary = numbered(GetParam());
    const auto before = keysOf(dictionary);
    for (int i = GetParam() - 1; i >= 0; --i)
        dictionary.set(keyOf(i), -i);
    EXPECT_EQ(keysOf(dictionary), before);
    EXPECT_EQ(*dictionary.find(keyOf(GetParam() - 1)), Value{1 - GetParam()});
}

TEST_P(DictionaryOfSize, RemovingAndSettingAgainPutsAKeyLast)
{
    auto dictionary = numbered(GetParam());
    auto expected = keysOf(dictionary);
    std::rotate(expected.begin(), expected.begin() + 1, expected.end());
    dictionary.remove(keyOf(0));
    EXPECT_FALSE(dictionary.contains(keyOf(0)));
    EXPECT_EQ(dictionary.size(), expected.size() - 1);
    dictionary.set(keyOf(0), "again");
    EXPECT_EQ(keysOf(dictionary), expected);
}

TEST_P(DictionaryOfSize, RemovingEveryOtherKeyLeavesTheRestInOrder)
{
    auto dictionary = numbered(GetParam());
    std::vector<std::string> expected;
    for (int i = 0; i < GetParam(); ++i) {
        if (i % 2 == 0)
            dictionary.remove(keyOf(i));
        else
            expected.push_back(keyOf(i));
    }
    EXPECT_EQ(keysOf(dictionary), expected);
    for (const auto& key : expected)
        EXPECT_TRUE(dictionary.contains(key));
    EXPECT_EQ(dictionary.size(), expected.size());
}

TEST_P(DictionaryOfSize, ACopyIsEqualAndSharesNothing)
{
    const auto original = numbered(GetParam());
    auto copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_EQ(keysOf(copy), keysOf(original));
    copy.set(keyOf(0), "changed");
    EXPECT_NE(copy, original);
    EXPECT_EQ(*original.find(keyOf(0)), Value{0});
}

TEST_P(DictionaryOfSize, ACopyAfterARemovalHasNoGap)
{
    auto original = numbered(GetParam());
    original.remove(keyOf(0));
    Dictionary copy = numbered(3);
    copy = original;
    EXPECT_EQ(copy, original);
    EXPECT_EQ(copy.size(), original.size());
    EXPECT_FALSE(copy.contains(keyOf(0)));
}

TEST_P(DictionaryOfSize, MovingTransfersAllEntriesAndLeavesTheSourceUsable)
{
    auto source = numbered(GetParam());
    const auto expected = source;
    Dictionary target = std::move(source);
    EXPECT_EQ(target, expected);
    source = {}; // its contents after the move are unspecified
    source.set("new", 1);
    EXPECT_EQ(source, (Dictionary{{"new", 1}}));
    EXPECT_EQ(target, expected);
}

TEST_P(DictionaryOfSize, AClearedOneIsEmptyAndCanBeFilledAgain)
{
    auto dictionary = numbered(GetParam());
    dictionary.clear();
    EXPECT_TRUE(dictionary.empty());
    EXPECT_THAT(keysOf(dictionary), IsEmpty());
    EXPECT_FALSE(dictionary.contains(keyOf(0)));
    for (int i = 0; i < GetParam(); ++i)
        dictionary.setText(keyOf(i), "text");
    EXPECT_EQ(dictionary.size(), static_cast<std::size_t>(GetParam()));
    EXPECT_EQ(*dictionary.findString(keyOf(0)), "text");
}

TEST_P(DictionaryOfSize, EqualityIgnoresTheOrder)
{
    Dictionary backwards;
    for (int i = GetParam() - 1; i >= 0; --i)
        backwards.set(keyOf(i), static_cast<double>(i));
    auto forwards = numbered(GetParam());
    EXPECT_EQ(forwards, backwards);
    backwards.set(keyOf(0), "other");
    EXPECT_NE(forwards, backwards);
    backwards.remove(keyOf(0));
    EXPECT_NE(forwards, backwards);
    EXPECT_NE(backwards, forwards);
    backwards.set("another key", 0);
    EXPECT_NE(forwards, backwards);
}

TEST(Dictionary, AnEmptyOneHasNoEntries)
{
    Dictionary dictionary;
    EXPECT_TRUE(dictionary.empty());
    EXPECT_EQ(dictionary.begin(), dictionary.end());
    EXPECT_EQ(dictionary.find("a"), nullptr);
    dictionary.remove("a");
    dictionary.clear();
    EXPECT_EQ(dictionary, Dictionary{});
}

TEST(Dictionary, SettingANullValueRemovesTheKey)
{
    Dictionary dictionary{{"a", 1}, {"b", 2}};
    dictionary.set("a", {});
    dictionary.set("c", {});
    EXPECT_THAT(keysOf(dictionary), ElementsAre("b"));
    EXPECT_EQ((Dictionary{{"a", Value{}}}), Dictionary{});
}

TEST(Dictionary, AKeyGivenTwiceHasTheLastValueAtTheFirstPosition)
{
    EXPECT_EQ(describe(Dictionary{{"a", 1}, {"b", 2}, {"a", 3}}), "{a = 3, b = 2}");
}

TEST(Dictionary, AnEmptyKeyIsAKey)
{
    Dictionary dictionary;
    dictionary.set("", "value");
    EXPECT_EQ(*dictionary.findString(""), "value");
}

TEST(Dictionary, TypedLookupsAreNullForAnotherType)
{
    const Dictionary dictionary{
        {"text", "t"}, {"number", 1}, {"inner", Dictionary{{"a", 1}}}, {"list", Array{1}}};
    EXPECT_EQ(*dictionary.findString("text"), "t");
    EXPECT_EQ(dictionary.findString("number"), nullptr);
    EXPECT_EQ(dictionary.findString("none"), nullptr);
    EXPECT_EQ(*dictionary.findDictionary("inner"), (Dictionary{{"a", 1}}));
    EXPECT_EQ(dictionary.findDictionary("text"), nullptr);
    EXPECT_EQ(dictionary.findDictionary("none"), nullptr);
    EXPECT_EQ(*dictionary.findArray("list"), Array{1});
    EXPECT_EQ(dictionary.findArray("inner"), nullptr);
    EXPECT_EQ(dictionary.findArray("none"), nullptr);
}

TEST(Dictionary, AnArrayCanBeChangedInPlace)
{
    Dictionary dictionary{{"list", Array{1}}};
    dictionary.findArray("list")->emplace_back(2);
    EXPECT_EQ(dictionary, (Dictionary{{"list", Array{1, 2}}}));
}

TEST(Dictionary, SetTextReplacesAValueOfAnyType)
{
    Dictionary dictionary{{"a", 1}, {"b", Dictionary{{"c", 2}}}};
    dictionary.setText("a", "text");
    dictionary.setText("b", "");
    EXPECT_EQ(describe(dictionary), R"({a = "text", b = ""})");
}

TEST(Dictionary, AFoundValueCanBeChangedInPlace)
{
    Dictionary dictionary{{"list", Array{1}}};
    dictionary.find("list")->as<Array>()->push_back(2);
    EXPECT_EQ(dictionary, (Dictionary{{"list", Array{1, 2}}}));
}

TEST(Dictionary, AClearedOneDoesNotExposeItsOldEntries)
{
    Dictionary dictionary{{"a", "old"}, {"b", Dictionary{{"x", 1}}}};
    dictionary.clear();
    dictionary.set("n", 5);
    dictionary.setText("m", "new");
    EXPECT_EQ(describe(dictionary), R"({n = 5, m = "new"})");
    const Dictionary copy = dictionary;
    EXPECT_EQ(copy.size(), 2U);
}

TEST(Dictionary, RefillingAClearedOneNeedsNoNewStorage)
{
    const std::string text(100, 't');
    Dictionary dictionary;
    const auto fill = [&] {
        dictionary.clear();
        for (int i = 0; i < 5; ++i)
            dictionary.setText(keyOf(i), text);
    };
    fill();
    std::vector<const char*> before;
    for (const auto& [key, value] : dictionary)
        before.insert(before.end(), {key.data(), value.as<std::string>()->data()});
    fill();
    std::vector<const char*> after;
    for (const auto& [key, value] : dictionary)
        after.insert(after.end(), {key.data(), value.as<std::string>()->data()});
    EXPECT_EQ(before, after);
}

TEST(Dictionary, AssigningOneToItselfChangesNothing)
{
    for (const int size : {3, 100}) {
        auto dictionary = numbered(size);
        const auto& same = dictionary;
        dictionary = same;
        EXPECT_EQ(dictionary, numbered(size));
    }
}

TEST(Dictionary, AnElementCanBecomeTheDictionaryThatHeldIt)
{
    Dictionary dictionary{
        {"inner", Dictionary{{"a", "a text that takes some storage of its own"}}}};
    dictionary = Dictionary{*dictionary.findDictionary("inner")};
    EXPECT_EQ(dictionary, (Dictionary{{"a", "a text that takes some storage of its own"}}));
}

TEST(Dictionary, AnElementCanBeMovedIntoTheDictionaryThatHeldIt)
{
    Dictionary dictionary{{"inner", Dictionary{{"a", "b"}, {"c", Dictionary{{"d", 1}}}}}};
    dictionary = std::move(*dictionary.find("inner")->as<Dictionary>());
    EXPECT_EQ(describe(dictionary), "{a = \"b\", c = {d = 1}}");
}

TEST(Dictionary, ManyRemovalsAndInsertionsKeepAllEntries)
{
    auto dictionary = numbered(20);
    for (int round = 0; round < 10'000; ++round) {
        dictionary.remove(keyOf(round % 20));
        dictionary.set(keyOf(round % 20), round);
    }
    EXPECT_EQ(dictionary.size(), 20U);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(*dictionary.find(keyOf(i)), Value{9'980 + i});
    EXPECT_EQ(keysOf(dictionary).front(), keyOf(0));
}

/// Makes random changes to a dictionary and to a plain list, and compares them after each.
void compareWithAList(int keys, unsigned clearsInAThousand)
{
    std::mt19937 random{7}; // the same steps each time
    Dictionary dictionary;
    std::vector<std::pair<std::string, int>> list;
    for (int step = 0; step < 20'000; ++step) {
        const auto key = keyOf(static_cast<int>(random() % static_cast<unsigned>(keys)));
        const auto at = std::find_if(list.begin(), list.end(),
                                     [&key](const auto& entry) { return entry.first == key; });
        const auto kind = random() % 1000;
        if (kind < clearsInAThousand) {
            dictionary.clear();
            list.clear();
        } else if (kind < 400) {
            dictionary.remove(key);
            if (at != list.end())
                list.erase(at);
        } else {
            dictionary.set(key, step);
            if (at != list.end())
                at->second = step;
            else
                list.emplace_back(key, step);
        }
        if (kind % 50 == 0)
            dictionary = Dictionary{dictionary};
        ASSERT_EQ(dictionary.size(), list.size());
        auto expected = list.begin();
        for (const auto& entry : dictionary) {
            ASSERT_EQ(entry.key, expected->first);
            ASSERT_EQ(entry.value, Value{expected->second});
            ++expected;
        }
        ASSERT_EQ(dictionary.contains(key), kind >= 400);
    }
}

TEST(Dictionary, AgreesWithAListAfterRandomSteps)
{
    compareWithAList(60, 1);
}

TEST(Dictionary, ASmallOneAgreesWithAListAfterFrequentClears)
{
    compareWithAList(6, 150);
}

TEST(Dictionary, ALargeOneAgreesWithAListAfterFrequentClears)
{
    compareWithAList(20, 20);
}

TEST(Dictionary, AClearedOneFilledInAnotherOrderHasEachKeyOnce)
{
    Dictionary dictionary{{"a", 1}, {"b", 2}, {"c", 3}};
    dictionary.clear();
    dictionary.set("b", 4); // reuses the entry of "a", before its own old entry
    dictionary.set("b", 5);
    dictionary.set("c", 6);
    EXPECT_THAT(keysOf(dictionary), ElementsAre("b", "c"));
    EXPECT_EQ(*dictionary.find("b"), Value{5});
}

TEST(Dictionary, OneThatGotAShorterCopyAndIsFilledAgainHasEachKeyOnce)
{
    Dictionary dictionary{{"a", 1}, {"b", 2}, {"c", 3}};
    const Dictionary shorter{{"c", 4}};
    dictionary = shorter;
    for (const auto* key : {"b", "c"})
        dictionary.setText(key, "again");
    EXPECT_EQ(dictionary, (Dictionary{{"c", "again"}, {"b", "again"}}));
}

TEST(Dictionary, HoldsAMillionKeys)
{
    constexpr int kCount = 1'000'000;
    Dictionary dictionary;
    for (int i = 0; i < kCount; ++i)
        dictionary.set(std::to_string(i), i);
    EXPECT_EQ(dictionary.size(), static_cast<std::size_t>(kCount));
    for (int i = 0; i < kCount; i += 997)
        ASSERT_EQ(*dictionary.find(std::to_string(i)), Value{i});
    for (int i = 0; i < kCount; i += 2)
        dictionary.remove(std::to_string(i));
    EXPECT_EQ(dictionary.size(), static_cast<std::size_t>(kCount / 2));
    EXPECT_FALSE(dictionary.contains("0"));
    EXPECT_TRUE(dictionary.contains("1"));
}

} // namespace
} // namespace gps
