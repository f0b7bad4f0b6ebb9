// SPDX-License-Identifier: MIT
// Symbols to icons and back, with the names and codes that the map does not have.

#include <plugin/codec/SymbolMap.h>

#include <gtest/gtest.h>

#include <string>

namespace magellan {
namespace {

const SymbolMap& example()
{
    static const SymbolMap map{{{"Flag", "a"}, {"Camp", "j"}, {"Campground", "j"}, {"Odd", 7}}};
    return map;
}

std::string iconOf(const SymbolMap& map, const std::string& symbol)
{
    return std::string{map.magellanIconFromSymbolString(&symbol)};
}

TEST(SymbolMap, ASymbolHasItsIcon)
{
    EXPECT_EQ(iconOf(example(), "Camp"), "j");
    EXPECT_EQ(iconOf(example(), "Campground"), "j");
    EXPECT_EQ(iconOf(example(), "Flag"), "a");
}

TEST(SymbolMap, NullIsTheCrossedBox)
{
    EXPECT_EQ(example().magellanIconFromSymbolString(nullptr), "a");
    EXPECT_STREQ(kMagellanSymbol_crossed_box, "a");
}

TEST(SymbolMap, AnUnknownSymbolOfTwoCharactersIsAnIconAndOneOfThreeBecomesTheCrossedBox)
{
    EXPECT_EQ(iconOf(example(), ""), "");
    EXPECT_EQ(iconOf(example(), "z"), "z");
    EXPECT_EQ(iconOf(example(), "zz"), "zz");
    EXPECT_EQ(iconOf(example(), "zzz"), "a");
    EXPECT_EQ(iconOf(example(), "No such symbol"), "a");
    EXPECT_EQ(iconOf(example(), "camp"), "a");
}

TEST(SymbolMap, CharactersAreCountedNotBytes)
{
    EXPECT_EQ(iconOf(example(), "\xC3\xA9\xC3\xA9"), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(iconOf(example(), "\xC3\xA9\xC3\xA9\xC3\xA9"), "a");
}

TEST(SymbolMap, AnIconIsReadAsTheLastSymbolWithThatIcon)
{
    EXPECT_EQ(example().symbolStringFromMagellanIcon("j"), "Campground");
    EXPECT_EQ(example().symbolStringFromMagellanIcon("a"), "Flag");
}

TEST(SymbolMap, AnUnknownIconIsItsOwnSymbol)
{
    EXPECT_EQ(example().symbolStringFromMagellanIcon("zz"), "zz");
    EXPECT_EQ(example().symbolStringFromMagellanIcon("J"), "J");
    EXPECT_EQ(example().symbolStringFromMagellanIcon(""), "");
}

TEST(SymbolMap, AnIconInTheMapIsThatOfItsSymbol)
{
    const SymbolMap map{
        {{"House", "c"}, {"Home", "c"}, {"b", "Camp"}, {"Camp", "ab"}, {"x", "b"}, {"Odd", 7}}};
    for (const std::string icon : {"c", "Camp", "ab", "b"}) {
        EXPECT_TRUE(map.containsIcon(icon)) << icon;
        EXPECT_EQ(iconOf(map, std::string{map.symbolStringFromMagellanIcon(icon)}), icon);
    }
    for (const auto* icon : {"", "7", "x", "Home", "zz"})
        EXPECT_FALSE(map.containsIcon(icon)) << icon;
}

TEST(SymbolMap, AnIconThatIsNotATextCountsAsMissing)
{
    EXPECT_EQ(iconOf(example(), "Odd"), "a");
    EXPECT_EQ(example().symbolStringFromMagellanIcon("7"), "7");
}

TEST(SymbolMap, AnEmptyMapFindsNothing)
{
    const SymbolMap empty{gps::Dictionary{}};
    EXPECT_EQ(iconOf(empty, "Campground"), "a");
    EXPECT_EQ(iconOf(empty, "j"), "j");
    EXPECT_EQ(empty.symbolStringFromMagellanIcon("j"), "j");
}

TEST(SymbolMap, TheSharedMapIsLoadedFromTheBundleOnce)
{
    const auto& shared = SymbolMap::shared();
    EXPECT_EQ(&shared, &SymbolMap::shared());
    EXPECT_EQ(iconOf(shared, "Campground"), "j");
    EXPECT_EQ(iconOf(shared, "Camp"), "j");
    EXPECT_EQ(shared.symbolStringFromMagellanIcon("j"), "Campground");
    EXPECT_EQ(shared.symbolStringFromMagellanIcon("c"), "Residence");
    EXPECT_EQ(shared.symbolStringFromMagellanIcon("ap"), "Zoo");
}

} // namespace
} // namespace magellan
