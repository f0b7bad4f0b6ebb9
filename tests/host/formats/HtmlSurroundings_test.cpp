// SPDX-License-Identifier: MIT
// What a page knows about the places around its records.

#include <host/formats/HtmlData.h>
#include <host/formats/HtmlSurroundings.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

Json surroundingsOf(const std::vector<gps::GPSPoint>& points)
{
    host::Areas areas;
    for (const auto& point : points)
        areas.add(point);
    std::string text = "{";
    host::appendSurroundings(text, areas.find());
    return Json::parse(text + "}");
}

TEST(HtmlSurroundings, AreEmptyWithoutPoints)
{
    EXPECT_EQ(surroundingsOf({}), Json::parse(R"({"areas":[],"places":[],"land":[]})"));
}

TEST(HtmlSurroundings, AnAreaHasItsPlaceItsZoneAndItsBounds)
{
    const auto areas = surroundingsOf({{.latitude = -44.7, .longitude = 169.15},
                                       {.latitude = -44.65, .longitude = 169.125}})["areas"];
    EXPECT_EQ(areas, Json::parse(R"([{"place":"near Wanaka","zone":"Pacific/Auckland",
                                      "bounds":[169125000,-44700000,169150000,-44650000]}])"));
}

TEST(HtmlSurroundings, AnAreaWhereNobodyLivesHasNeitherPlaceNorZone)
{
    const auto data = surroundingsOf({{.latitude = -48.87, .longitude = -123.39}});
    EXPECT_EQ(data["areas"][0]["place"], "");
    EXPECT_EQ(data["areas"][0]["zone"], "");
    EXPECT_EQ(data["places"], Json::array());
}

TEST(HtmlSurroundings, EveryAreaIsThereAndTheFirstSevenHavePlaces)
{
    const std::vector<double> longitudes{3, 7, 11, 15, 19, 23, 27, 31, 35};
    std::vector<gps::GPSPoint> points;
    points.reserve(longitudes.size());
    for (const double longitude : longitudes)
        points.push_back({.latitude = 48, .longitude = longitude});
    const auto data = surroundingsOf(points);
    EXPECT_EQ(data["areas"].size(), longitudes.size());
    double easternmost = 0;
    for (const auto& place : data["places"])
        easternmost = std::max(easternmost, place["at"][1].get<double>() / 1e6);
    EXPECT_NEAR(easternmost, longitudes[6], 2);
}

TEST(HtmlSurroundings, ThePlaceThatNamesAnAreaIsThereHoweverSmallItIs)
{
    // In a city of millions, whose suburbs are larger.
    const auto data = surroundingsOf(
        {{.latitude = 35.8, .longitude = 139.18}, {.latitude = 35.7, .longitude = 139.7}});
    const auto named = data["areas"][0]["place"].get<std::string>();
    ASSERT_THAT(named, testing::StartsWith("near "));
    std::vector<std::string> names;
    for (const auto& place : data["places"])
        names.push_back(place["name"]);
    EXPECT_THAT(names, testing::SizeIs(10));
    EXPECT_THAT(names, testing::Contains(named.substr(5)));
}

TEST(HtmlSurroundings, TheTenLargestPlacesOfAnAreaAreThereOnce)
{
    const auto names = [](const std::vector<gps::GPSPoint>& points) {
        std::vector<std::string> found;
        const auto places = surroundingsOf(points)["places"];
        for (const auto& place : places)
            found.push_back(place["name"]);
        return found;
    };
    const auto one = names({{.latitude = 46.2, .longitude = 7.5}});
    EXPECT_EQ(one.size(), 10U);
    EXPECT_THAT(one, testing::Contains("Sierre"));
    auto two = names({{.latitude = 46.2, .longitude = 7.2}, {.latitude = 46.2, .longitude = 9.1}});
    std::sort(two.begin(), two.end());
    EXPECT_EQ(std::adjacent_find(two.begin(), two.end()), two.end());
}

// The parts of the world that come with land, as western, southern, eastern and northern bound.
std::vector<std::vector<int>> levelsOf(const std::vector<gps::GPSPoint>& points)
{
    std::vector<std::vector<int>> levels;
    const auto land = surroundingsOf(points)["land"];
    for (const auto& level : land) {
        auto& degrees = levels.emplace_back();
        for (const double bound : level["bounds"])
            degrees.push_back(static_cast<int>(std::floor(bound / 1e6)));
    }
    return levels;
}

TEST(HtmlSurroundings, LandIsThatOfTheWorldAndThenOfTheAreaWithAMargin)
{
    EXPECT_THAT(levelsOf({{.latitude = -43.5, .longitude = 172.5}}),
                testing::ElementsAre(testing::ElementsAre(-180, -90, 180, 90),
                                     testing::ElementsAre(171, -45, 174, -42)));
}

TEST(HtmlSurroundings, InlandThereIsOnlyTheWorld)
{
    EXPECT_THAT(levelsOf({{.latitude = 46.5, .longitude = 7.5}}), testing::SizeIs(1));
}

TEST(HtmlSurroundings, SeveralAreasHaveTheLandAroundAllOfThemAcrossTheDateLineToo)
{
    const gps::GPSPoint fiji{.latitude = -17.5, .longitude = 178};
    const gps::GPSPoint samoa{.latitude = -13.5, .longitude = -172};
    EXPECT_THAT(levelsOf({fiji, samoa})[1], testing::ElementsAre(168, -28, 198, -4));
    EXPECT_THAT(levelsOf({samoa, fiji})[1], testing::ElementsAre(168, -28, 198, -4));
}

TEST(HtmlSurroundings, AreasAllOverTheWorldHaveNoLandOfAllThatTheWorldLacks)
{
    const auto levels =
        levelsOf({{.latitude = -43.5, .longitude = 172.5}, {.latitude = 59.5, .longitude = 5.5}});
    EXPECT_THAT(levels, testing::SizeIs(3)); // the world and each area
}

// The numbers of a text of appendDigits().
std::vector<double> numbersIn(std::string text)
{
    std::vector<double> numbers;
    while (!text.empty()) {
        std::int64_t number = 0;
        std::string digits = " ";
        while (!text.starts_with(digits)) {
            number = number > 0 ? -number : 1 - number;
            digits.clear();
            host::appendDigits(digits, number);
        }
        numbers.push_back(static_cast<double>(number));
        text.erase(0, digits.size());
    }
    return numbers;
}

TEST(HtmlSurroundings, OutlinesAreStepsFromTheCornerInTheirUnit)
{
    const auto level = surroundingsOf({{.latitude = -43.5, .longitude = 172.5}})["land"][1];
    const double unit = level["unit"];
    const std::vector<double> bounds = level["bounds"];
    double x = 0;
    double y = 0;
    for (const std::string text : level["outlines"]) {
        const auto outline = numbersIn(text);
        ASSERT_EQ(outline.size() % 2, 0U);
        x = y = 0;
        for (std::size_t i = 0; i < outline.size(); i += 2) {
            x += outline[i] * unit;
            y += outline[i + 1] * unit;
            EXPECT_GE(x, -unit);
            EXPECT_LE(x, bounds[2] - bounds[0] + unit);
            EXPECT_GE(y, -unit);
            EXPECT_LE(y, bounds[3] - bounds[1] + unit);
        }
    }
}

} // namespace
