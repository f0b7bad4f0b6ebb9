// SPDX-License-Identifier: MIT
// Symbols to icons and back, with the names and codes that the map does not have.

#include <plugin/codec/SymbolMap.h>

#include <gtest/gtest.h>

#include <cctype>
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

struct DeviceIcon {
    const char* icon;
    const char* meaning; ///< to the device
    const char* symbol;  ///< that the icon is read as
};

constexpr DeviceIcon kDeviceIcons[] = {{"a", "crossed square", "Waypoint"},
                                       {"b", "box", "Box"},
                                       {"c", "house", "Residence"},
                                       {"d", "aerial", "Radio Beacon"},
                                       {"e", "airport", "Airport"},
                                       {"f", "amusement park", "Amusement Park"},
                                       {"g", "ATM", "Bank"},
                                       {"h", "auto repair", "Car Repair"},
                                       {"i", "boating", "Boat Ramp"},
                                       {"j", "camping", "Campground"},
                                       {"k", "exit ramp", "Exit"},
                                       {"l", "first aid", "Medical Facility"},
                                       {"m", "nav aid", "Navaid"},
                                       {"n", "buoy", "Buoy"},
                                       {"o", "fuel", "Gas Station"},
                                       {"p", "garden", "Garden"},
                                       {"q", "golf", "Golf Course"},
                                       {"r", "hotel", "Lodging"},
                                       {"s", "hunting and fishing", "Fishing Area"},
                                       {"t", "large city", "City (Large)"},
                                       {"u", "lighthouse", "Lighthouse"},
                                       {"v", "major city", "City (Capitol)"},
                                       {"w", "marina", "Marina"},
                                       {"x", "medium city", "City (Medium)"},
                                       {"y", "museum", "Museum"},
                                       {"z", "obstruction", "Obstruction"},
                                       {"aa", "park", "Park"},
                                       {"ab", "resort", "Resort"},
                                       {"ac", "restaurant", "Restaurant"},
                                       {"ad", "rock", "Rock"},
                                       {"ae", "scuba", "Scuba Diving Area"},
                                       {"af", "RV service", "RV Park"},
                                       {"ag", "shooting", "Shooting Range"},
                                       {"ah", "sight seeing", "Scenic Area"},
                                       {"ai", "small city", "City (Small)"},
                                       {"aj", "sounding", "Sounding"},
                                       {"ak", "sports arena", "Stadium"},
                                       {"al", "tourist information", "Information"},
                                       {"am", "truck service", "Truck Stop"},
                                       {"an", "winery", "Winery"},
                                       {"ao", "wreck", "Shipwreck"},
                                       {"ap", "zoo", "Zoo"}};

TEST(SymbolMap, TheMeaningOfEachIconIsASymbolWithThatIconInSmallLettersAndAsATitle)
{
    const auto& shared = SymbolMap::shared();
    for (const auto& [icon, meaning, symbol] : kDeviceIcons) {
        EXPECT_EQ(iconOf(shared, meaning), icon);
        std::string title = meaning;
        title[0] = static_cast<char>(std::toupper(title[0]));
        if (title.find(' ') == std::string::npos) {
            EXPECT_EQ(iconOf(shared, title), icon);
        }
        EXPECT_EQ(iconOf(shared, symbol), icon);
        EXPECT_EQ(shared.symbolStringFromMagellanIcon(icon), symbol);
    }
    EXPECT_EQ(iconOf(shared, "Large City"), "t");
    EXPECT_EQ(iconOf(shared, "Hunting and Fishing"), "s");
    EXPECT_EQ(iconOf(shared, "large cities"), "a");
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
