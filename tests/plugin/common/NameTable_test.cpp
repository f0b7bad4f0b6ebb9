// SPDX-License-Identifier: MIT
// Names and their indices, before and after the table grows.

#include <plugin/common/NameTable.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace magellan {
namespace {

TEST(NameTable, IndexesNamesInOrderOfFirstAppearance)
{
    NameTable names;
    EXPECT_EQ(names.indexOf("Camp"), 0U);
    EXPECT_EQ(names.indexOf("Ford"), 1U);
    EXPECT_EQ(names.indexOf("Camp"), 0U);
    EXPECT_EQ(names.indexOf("Hut"), 2U);
}

TEST(NameTable, DistinguishesNamesByEveryByte)
{
    NameTable names;
    EXPECT_EQ(names.indexOf("Camp"), 0U);
    EXPECT_EQ(names.indexOf("camp"), 1U);
    EXPECT_EQ(names.indexOf("Camp "), 2U);
    EXPECT_EQ(names.indexOf(""), 3U);
    EXPECT_EQ(names.indexOf(""), 3U);
}

TEST(NameTable, GrowsAndForgetsNoName)
{
    std::vector<std::string> texts;
    for (int i = 0; i < 100'000; ++i)
        texts.push_back("Point " + std::to_string(i));
    NameTable names;
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(names.indexOf(texts[i]), i);
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(names.indexOf(texts[i]), i);
}

TEST(NameTable, AgreesWithAMapForNamesInAnyOrder)
{
    std::mt19937 random{11}; // the same names each time
    std::unordered_map<std::string, std::size_t> expected;
    NameTable names;
    for (int step = 0; step < 20'000; ++step) {
        const auto& [name, number] =
            *expected.try_emplace(std::to_string(random() % 3000), expected.size()).first;
        ASSERT_EQ(names.indexOf(name), number) << name;
    }
}

} // namespace
} // namespace magellan
