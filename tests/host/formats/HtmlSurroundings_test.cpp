// SPDX-License-Identifier: MIT
// What a page knows about the places around its records.

#include <host/formats/HtmlSurroundings.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>

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
    EXPECT_EQ(surroundingsOf({}), Json::parse(R"({"areas":[],"places":[]})"));
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

TEST(HtmlSurroundings, OnlyTheFirstSevenAreasAreThere)
{
    const auto areas = [](int count) {
        std::vector<gps::GPSPoint> points;
        for (int i = 0; i < count; ++i)
            points.push_back({.latitude = 46.5, .longitude = 3.0 * i});
        return surroundingsOf(points)["areas"].size();
    };
    EXPECT_EQ(areas(7), 7U);
    EXPECT_EQ(areas(8), 7U);
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

} // namespace
