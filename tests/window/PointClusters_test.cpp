// SPDX-License-Identifier: MIT

#include "host/window/map/PointClusters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using host::MapView;
using host::PointCluster;
using host::PointClusters;

constexpr MapView kView{.center = {0.5, 0.5}, .scale = 256 * 1024, .width = 800, .height = 600};

// A position at some pixels from the middle of the view.
host::MapPosition fromMiddle(double x, double y)
{
    return {0.5 + x / kView.scale, 0.5 + y / kView.scale};
}

std::vector<PointCluster> clustersOf(const std::vector<host::MapPosition>& positions)
{
    PointClusters clusters{kView};
    for (std::size_t i = 0; i < positions.size(); ++i)
        clusters.add(positions[i], i);
    return clusters.find();
}

TEST(PointClusters, PointWithRoomStaysAlone)
{
    const auto found = clustersOf({fromMiddle(0, 0), fromMiddle(100, 0), fromMiddle(0, -100)});
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[1].count, 1U);
    EXPECT_EQ(found[1].first, 1U);
    EXPECT_NEAR(found[1].center.x, 500, 1e-6);
    EXPECT_NEAR(found[1].center.y, 300, 1e-6);
}

TEST(PointClusters, PointsAreGroupedUpToTheRoomThatTheyNeed)
{
    // On both sides of the edge of a cell, which is in the middle of the view.
    const double half = PointClusters::kRoom / 2;
    EXPECT_EQ(clustersOf({fromMiddle(-half - 0.1, 5), fromMiddle(half + 0.1, 5)}).size(), 2U);
    const auto found = clustersOf({fromMiddle(-half + 0.1, 5), fromMiddle(half - 0.1, 5)});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].count, 2U);
    EXPECT_NEAR(found[0].center.x, 400, 1e-6);
    EXPECT_NEAR(found[0].extent.left, fromMiddle(-half + 0.1, 0).x, 1e-12);
    EXPECT_NEAR(found[0].extent.right, fromMiddle(half - 0.1, 0).x, 1e-12);
}

TEST(PointClusters, NoTwoGroupsOverlapAndNoPointIsLost)
{
    std::vector<host::MapPosition> positions;
    for (int i = 0; i < 100'000; ++i)
        positions.push_back(
            fromMiddle(std::fmod(i * 7.77, 700) - 350, std::fmod(i * 3.33, 500) - 250));
    const auto found = clustersOf(positions);
    std::size_t count = 0;
    for (const auto& one : found) {
        count += one.count;
        for (const auto& other : found) {
            if (&one != &other) {
                EXPECT_GE(std::hypot(one.center.x - other.center.x, one.center.y - other.center.y),
                          PointClusters::kRoom);
            }
        }
    }
    EXPECT_EQ(count, positions.size());
    EXPECT_LT(found.size(), 1000U);
}

TEST(PointClusters, GroupsAreCountedByTheirFirstPoints)
{
    const auto found =
        clustersOf({fromMiddle(200, 0), fromMiddle(0, 0), fromMiddle(0, 1), fromMiddle(200, 1)});
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].first, 0U);
    EXPECT_EQ(found[1].first, 1U);
}

} // namespace
