// SPDX-License-Identifier: MIT

#include "host/formats/PageIcons.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <initializer_list>
#include <string>

namespace {

using Json = nlohmann::json;

Json iconsOf(std::initializer_list<const char*> symbols)
{
    host::PageIcons icons;
    for (const char* const symbol : symbols)
        icons.add(symbol);
    std::string text = "{";
    icons.append(text);
    return Json::parse(text + "}")["icons"];
}

TEST(PageIcons, APageHasThoseInUseOnly)
{
    EXPECT_EQ(iconsOf({}), Json::array());
    const auto icons = iconsOf({"Campground", "Campground"});
    ASSERT_EQ(icons.size(), 1U);
    EXPECT_EQ(icons[0]["symbols"], Json({"campground"}));
    EXPECT_THAT(icons[0]["path"].get<std::string>(), testing::StartsWith("M"));
}

TEST(PageIcons, SymbolsOfTheSameMeaningShareAPicture)
{
    const auto icons = iconsOf({"Winery", "Camp", "camping", "CAMPGROUND"});
    ASSERT_EQ(icons.size(), 2U);
    EXPECT_EQ(icons[0]["symbols"], Json({"camp", "campground", "camping"}));
    EXPECT_EQ(icons[1]["symbols"], Json({"winery"}));
    EXPECT_NE(icons[0]["path"], icons[1]["path"]);
}

TEST(PageIcons, OtherSymbolsHaveNone)
{
    EXPECT_EQ(iconsOf({"", "Waypoint", "zz", "</script>", "Geocache", "camp ", "zoo\xFF"}),
              Json::array());
}

TEST(PageIcons, TheFirstAndTheLastSymbolOfTheTableAreFound)
{
    EXPECT_EQ(iconsOf({"aerial", "zoo"}).size(), 2U);
}

} // namespace
