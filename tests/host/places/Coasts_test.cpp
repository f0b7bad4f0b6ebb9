// SPDX-License-Identifier: MIT
// The land within bounds: clipped, as precise as wanted, and where the land is.

#include <host/places/Coasts.h>
#include <host/places/LandTable.h>

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdlib>
#include <vector>

namespace {

using host::Bounds;
using host::landWithin;
using host::MapPoint;
using host::Outline;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Bounds kEverywhere{.west = -180, .east = 180, .south = -90, .north = 90};

// By the even-odd rule: whether a line from the point to the east crosses outlines an odd number of
// times.
bool isLand(const std::vector<Outline>& land, double latitude, double longitude)
{
    bool isInside = false;
    for (const auto& outline : land) {
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const auto& a = outline[i];
            const auto& b = outline[(i + 1) % outline.size()];
            if ((a.latitude > latitude) != (b.latitude > latitude) &&
                longitude < a.longitude + (latitude - a.latitude) * (b.longitude - a.longitude) /
                                              (b.latitude - a.latitude))
                isInside = !isInside;
        }
    }
    return isInside;
}

std::size_t pointsOf(const std::vector<Outline>& land)
{
    std::size_t count = 0;
    for (const auto& outline : land)
        count += outline.size();
    return count;
}

TEST(LandTable, HasCoastsWithinTheWorld)
{
    const auto& table = host::LandTable::shared();
    EXPECT_GT(table.size(), 3000U);
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_GE(table.coast(i).size(), 3U);
        for (const auto& point : table.coast(i)) {
            EXPECT_LE(std::abs(point.longitude), 200 * host::LandPoint::kUnitsPerDegree);
            EXPECT_LE(std::abs(point.latitude), 90 * host::LandPoint::kUnitsPerDegree);
        }
    }
}

TEST(LandTable, NoCoastJumpsFromOneSideOfTheMapToTheOther)
{
    const auto& table = host::LandTable::shared();
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto coast = table.coast(i);
        for (std::size_t j = 1; j < coast.size(); ++j) {
            const bool isEdge = coast[j].latitude == -90 * host::LandPoint::kUnitsPerDegree;
            EXPECT_TRUE(isEdge || std::abs(coast[j].longitude - coast[j - 1].longitude) <
                                      30 * host::LandPoint::kUnitsPerDegree)
                << i;
        }
    }
}

TEST(Coasts, LandIsLandAndSeaIsSea)
{
    const auto land = landWithin(kEverywhere, 0.3);
    EXPECT_TRUE(isLand(land, 46.5, 7.5));
    EXPECT_TRUE(isLand(land, -44.7, 169.1));
    EXPECT_TRUE(isLand(land, -80, 0));
    EXPECT_TRUE(isLand(land, -89, 179));
    EXPECT_FALSE(isLand(land, 89, 0));
    EXPECT_TRUE(isLand(land, 67, 179));
    EXPECT_TRUE(isLand(land, 67, -179));
    EXPECT_FALSE(isLand(land, 0, -30));
    EXPECT_FALSE(isLand(land, 41, 18)); // between two peninsulas
    EXPECT_FALSE(isLand(land, 42, 50)); // a sea without an outlet
}

TEST(Coasts, AllPointsAreWithinTheBounds)
{
    constexpr Bounds kCoast{.west = 5, .east = 9, .south = 42, .north = 45};
    const auto land = landWithin(kCoast, 0.01);
    ASSERT_FALSE(land.empty());
    for (const auto& outline : land) {
        for (const auto& [longitude, latitude] : outline) {
            EXPECT_GE(longitude, kCoast.west);
            EXPECT_LE(longitude, kCoast.east);
            EXPECT_GE(latitude, kCoast.south);
            EXPECT_LE(latitude, kCoast.north);
        }
    }
    EXPECT_TRUE(isLand(land, 44.5, 6.5));
    EXPECT_FALSE(isLand(land, 42.5, 7));
}

TEST(Coasts, InlandTheLandIsTheBoundsThemselves)
{
    const auto land = landWithin({.west = 7, .east = 8, .south = 46, .north = 47}, 0.01);
    ASSERT_THAT(land, SizeIs(1));
    EXPECT_THAT(land[0], testing::UnorderedElementsAre(MapPoint{7, 46}, MapPoint{7, 47},
                                                       MapPoint{8, 46}, MapPoint{8, 47}));
}

TEST(Coasts, OutAtSeaThereIsNone)
{
    EXPECT_THAT(landWithin({.west = -31, .east = -30, .south = 0, .north = 1}, 0.01), IsEmpty());
}

TEST(Coasts, BoundsAcrossTheDateLineHaveTheLandOfBothSides)
{
    const auto east = landWithin({.west = 176, .east = 184, .south = -20, .north = -15}, 0.01);
    const auto west = landWithin({.west = -184, .east = -176, .south = -20, .north = -15}, 0.01);
    EXPECT_TRUE(isLand(east, -17.8, 178));
    EXPECT_TRUE(isLand(west, -17.8, -182));
    EXPECT_EQ(pointsOf(east), pointsOf(west));
    const auto north = landWithin({.west = 170, .east = 200, .south = 60, .north = 72}, 0.05);
    EXPECT_TRUE(isLand(north, 67, 175));
    EXPECT_TRUE(isLand(north, 66, 184)); // beyond 180 degrees
    EXPECT_TRUE(isLand(north, 65, 198));
    EXPECT_FALSE(isLand(north, 62, 185));
}

TEST(Coasts, ALargerToleranceLeavesFewerPointsAndSmallIslandsOut)
{
    constexpr Bounds kFjords{.west = 4, .east = 12, .south = 58, .north = 64};
    const auto fine = landWithin(kFjords, 0.01);
    const auto coarse = landWithin(kFjords, 0.1);
    EXPECT_GT(pointsOf(fine), 3 * pointsOf(coarse));
    EXPECT_GT(fine.size(), coarse.size());
    EXPECT_TRUE(isLand(coarse, 61, 9));
}

} // namespace
