// SPDX-License-Identifier: MIT

#include "host/window/map/MapPath.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using host::MapPath;
using host::mapPositionOf;

gps::GPSPoint at(double latitude, double longitude)
{
    return {.latitude = latitude, .longitude = longitude};
}

TEST(MapPath, PositionOfTheEquatorAndTheMeridianIsTheMiddle)
{
    EXPECT_DOUBLE_EQ(mapPositionOf(at(0, 0)).x, 0.5);
    EXPECT_DOUBLE_EQ(mapPositionOf(at(0, 0)).y, 0.5);
    EXPECT_DOUBLE_EQ(mapPositionOf(at(0, -180)).x, 0);
    EXPECT_DOUBLE_EQ(mapPositionOf(at(0, 180)).x, 1);
}

TEST(MapPath, PositionsEndAtTheEdgesOfTheMap)
{
    constexpr double kEdge = 85.0511287798066; // degrees
    EXPECT_NEAR(mapPositionOf(at(kEdge, 0)).y, 0, 1e-12);
    EXPECT_NEAR(mapPositionOf(at(-kEdge, 0)).y, 1, 1e-12);
    EXPECT_EQ(mapPositionOf(at(90, 0)).y, 0);
    EXPECT_EQ(mapPositionOf(at(-90, 0)).y, 1);
}

TEST(MapPath, LeavesOutPointsThatAreLessThanAPixelFromTheOneBefore)
{
    MapPath path;
    const double pixel = 360 / (MapPath::kTileSize * 16); // degrees of longitude at zoom level 4
    for (const double pixels : {0.0, 0.9, 1.1, 1.2, 3.0})
        path.add(at(0, pixels * pixel));
    ASSERT_EQ(path.linesAt(4).size(), 1U);
    EXPECT_EQ(path.linesAt(4)[0].positions.size(), 3U); // the first, 1.1 and the last
    EXPECT_EQ(path.linesAt(8)[0].positions.size(), 5U);
    EXPECT_EQ(path.linesAt(0)[0].positions.size(), 2U); // both ends stay
}

TEST(MapPath, ZoomLevelsBeyondTheBoundsAreThoseAtTheBounds)
{
    MapPath path;
    path.add(at(1, 1));
    path.add(at(1, 1.0000001));
    EXPECT_EQ(&path.linesAt(-1), &path.linesAt(0));
    EXPECT_EQ(&path.linesAt(MapPath::kMostZoom + 1), &path.linesAt(MapPath::kMostZoom));
}

TEST(MapPath, BreaksAreNotBridged)
{
    MapPath path;
    path.breakHere();
    path.add(at(1, 1));
    path.add(at(2, 2));
    path.breakHere();
    path.breakHere();
    path.add(at(3, 3));
    ASSERT_EQ(path.linesAt(10).size(), 2U);
    EXPECT_EQ(path.linesAt(10)[0].positions.size(), 2U);
    EXPECT_EQ(path.linesAt(10)[1].positions.size(), 1U);
}

TEST(MapPath, GoesTheShorterWayAcrossThe180thMeridianInBothDirections)
{
    MapPath path;
    path.add(at(0, 179));
    path.add(at(0, -179));
    path.add(at(0, 179));
    const auto& line = path.linesAt(MapPath::kMostZoom)[0].positions;
    EXPECT_NEAR(line[1].x - line[0].x, 2 / 360.0, 1e-12);
    EXPECT_NEAR(line[2].x - line[0].x, 0, 1e-12);
}

TEST(MapPath, PointsThatAreNotOnTheGlobeAreIgnored)
{
    MapPath path;
    path.add(at(91, 0));
    path.add(at(0, 181));
    path.add(at(std::numeric_limits<double>::quiet_NaN(), 0));
    EXPECT_TRUE(path.extent().isEmpty());
    EXPECT_TRUE(path.linesAt(3).empty());
}

TEST(MapPath, PartsOfALineContainItsPointsAndTheOneAfterThem)
{
    MapPath path;
    for (std::size_t i = 0; i <= host::MapLine::kPart; ++i)
        path.add(at(0, static_cast<double>(i)));
    const auto& line = path.linesAt(MapPath::kMostZoom)[0];
    ASSERT_EQ(line.parts.size(), 2U); // of kPart points, and of one
    EXPECT_EQ(line.parts[0].right, line.positions.back().x);
    EXPECT_EQ(line.parts[1].left, line.positions.back().x);
}

TEST(MapPath, PartsOfALineThatGrowsAreThoseOfAllItsPoints)
{
    MapPath path;
    path.add(at(0, 0));
    path.add(at(0, 10));
    EXPECT_EQ(path.linesAt(MapPath::kMostZoom)[0].parts[0].right, mapPositionOf(at(0, 10)).x);
    path.add(at(0, 20));
    EXPECT_EQ(path.linesAt(MapPath::kMostZoom)[0].parts[0].right, mapPositionOf(at(0, 20)).x);
}

TEST(MapPath, PointThatIsAddedLaterIsDrawn)
{
    MapPath path;
    path.add(at(0, 0));
    EXPECT_EQ(path.linesAt(5)[0].positions.size(), 1U);
    path.add(at(0, 90));
    EXPECT_EQ(path.linesAt(5)[0].positions.size(), 2U);
}

} // namespace
