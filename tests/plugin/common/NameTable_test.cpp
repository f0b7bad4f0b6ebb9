// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <plugin/common/NameTable.h>

namespace magellan {
namespace {

TEST(NameTable, NumbersNamesInTheOrderInWhichTheyFirstCome)
{
    NameTable names;
    EXPECT_EQ(names.numberOf("Camp"), 0U);
    EXPECT_EQ(names.numberOf("Ford"), 1U);
    EXPECT_EQ(names.numberOf("Camp"), 0U);
    EXPECT_EQ(names.numberOf("Hut"), 2U);
}

TEST(NameTable, TellsNamesApartByEveryByte)
{
    NameTable names;
    EXPECT_EQ(names.numberOf("Camp"), 0U);
    EXPECT_EQ(names.numberOf("camp"), 1U);
    EXPECT_EQ(names.numberOf("Camp "), 2U);
    EXPECT_EQ(names.numberOf(""), 3U);
    EXPECT_EQ(names.numberOf(""), 3U);
}

TEST(NameTable, GrowsAndForgetsNoName)
{
    std::vector<std::string> texts;
    for (int i = 0; i < 100'000; ++i)
        texts.push_back("Point " + std::to_string(i));
    NameTable names;
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(names.numberOf(texts[i]), i);
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(names.numberOf(texts[i]), i);
}

TEST(NameTable, DoesAsAMapWouldForNamesInAnyOrder)
{
    std::mt19937 random{11}; // the same names each time
    std::unordered_map<std::string, std::size_t> expected;
    NameTable names;
    for (int step = 0; step < 20'000; ++step) {
        const auto& [name, number] =
            *expected.try_emplace(std::to_string(random() % 3000), expected.size()).first;
        ASSERT_EQ(names.numberOf(name), number) << name;
    }
}

} // namespace
} // namespace magellan
