// SPDX-License-Identifier: MIT
// Which points are in one area.

#include <host/points/Areas.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using host::Area;
using host::Areas;
using Position = std::pair<double, double>; // latitude and longitude

std::vector<Area> areasOf(const std::vector<Position>& positions)
{
    Areas areas;
    for (const auto& [latitude, longitude] : positions)
        areas.add({.latitude = latitude, .longitude = longitude});
    return areas.find();
}

TEST(Areas, ThereAreNoneWithoutPoints)
{
    EXPECT_TRUE(areasOf({}).empty());
}

TEST(Areas, PointsInNeighbouringCellsAreOneAreaDiagonallyToo)
{
    for (const auto& other : {Position{46.5, 8.9}, {47.9, 7.5}, {47.9, 8.9}, {45.1, 6.1}})
        EXPECT_EQ(areasOf({{46.5, 7.5}, other}).size(), 1U) << other.first << " " << other.second;
}

TEST(Areas, PointsWithAnEmptyCellBetweenThemAreTwoAreas)
{
    for (const auto& other : {Position{46.5, 9.1}, {48.1, 7.5}, {44.9, 7.5}, {46.5, 5.9}})
        EXPECT_EQ(areasOf({{46.5, 7.5}, other}).size(), 2U) << other.first << " " << other.second;
}

TEST(Areas, AChainOfNeighboursIsOneAreaWithTheBoundsOfAllItsPoints)
{
    const auto areas = areasOf({{10.5, 10.5}, {11.5, 11.2}, {12.25, 12.75}});
    ASSERT_EQ(areas.size(), 1U);
    EXPECT_EQ(areas[0].bounds.south, 10.5);
    EXPECT_EQ(areas[0].bounds.north, 12.25);
    EXPECT_EQ(areas[0].bounds.west, 10.5);
    EXPECT_EQ(areas[0].bounds.east, 12.75);
}

TEST(Areas, PointsOnBothSidesOfTheEquatorAndOfGreenwichAreOneArea)
{
    EXPECT_EQ(areasOf({{0.1, 0.1}, {-0.1, -0.1}}).size(), 1U);
}

TEST(Areas, AcrossTheDateLineTheEasternBoundIsAbove180)
{
    for (const auto& points : {std::vector<Position>{{0.5, 179.75}, {0.5, -179.5}},
                               std::vector<Position>{{0.5, -179.5}, {0.5, 179.75}}}) {
        const auto areas = areasOf(points);
        ASSERT_EQ(areas.size(), 1U);
        EXPECT_EQ(areas[0].bounds.west, 179.75);
        EXPECT_EQ(areas[0].bounds.east, 180.5);
    }
}

TEST(Areas, BothNamesOfTheDateLineAreOnePlace)
{
    const auto areas = areasOf({{0.5, 180}, {0.5, -180}});
    ASSERT_EQ(areas.size(), 1U);
    EXPECT_EQ(areas[0].bounds.west, areas[0].bounds.east);
    EXPECT_EQ(areas[0].bounds.west, -180);
}

TEST(Areas, ABeltAroundTheWorldIsOneAreaThatEnds)
{
    std::vector<Position> belt;
    for (int longitude = -180; longitude < 180; ++longitude)
        belt.emplace_back(0.5, longitude + 0.5);
    const auto areas = areasOf(belt);
    ASSERT_EQ(areas.size(), 1U);
    EXPECT_GE(areas[0].bounds.west, -180);
    EXPECT_LE(areas[0].bounds.east - areas[0].bounds.west, 360);
}

TEST(Areas, ThePolesAreInCellsOfTheirOwn)
{
    const auto areas = areasOf({{90, 0}, {-90, 0}, {89.5, 0.5}});
    ASSERT_EQ(areas.size(), 2U);
    EXPECT_EQ(areas[0].bounds.north, 90);
}

TEST(Areas, TheHeaviestComesFirstAndAmongEqualOnesThatFurtherWest)
{
    Areas areas;
    areas.add({.latitude = 10, .longitude = 10}, Areas::kTrackPointWeight);
    for (int i = 0; i < 9; ++i)
        areas.add({.latitude = 50, .longitude = 50});
    EXPECT_EQ(areas.find().at(0).bounds.north, 10);
    areas.add({.latitude = 50, .longitude = 50});
    EXPECT_EQ(areas.find().at(0).bounds.north, 10);
    areas.add({.latitude = 50, .longitude = 50});
    EXPECT_EQ(areas.find().at(0).bounds.north, 50);
    EXPECT_EQ(areas.find().at(0).weight, 11U);
}

TEST(Areas, AnAreaKnowsTheFirstOfItsPoints)
{
    const auto areas = areasOf({{47.5, 8.5}, {46.5, 7.5}, {46.4, 7.4}});
    ASSERT_EQ(areas.size(), 1U);
    EXPECT_EQ(areas[0].first.latitude, 47.5);
}

} // namespace
