// SPDX-License-Identifier: MIT

#include "host/words/RecordCountText.h"

#include <gtest/gtest.h>

namespace {

using host::recordCountText;

TEST(RecordCountText, IsEmptyWithoutRecords)
{
    EXPECT_EQ(recordCountText({}), "");
}

TEST(RecordCountText, OneIsSingular)
{
    EXPECT_EQ(recordCountText({.waypoints = 1,
                               .geocaches = 1,
                               .routes = 1,
                               .routePoints = 1,
                               .tracks = 1,
                               .trackPoints = 1}),
              "1 waypoint, 1 geocache, 1 route, 1 track (1 point)");
}

TEST(RecordCountText, KindsWithoutRecordsAreLeftOut)
{
    EXPECT_EQ(recordCountText({.waypoints = 2, .tracks = 2}), "2 waypoints, 2 tracks (0 points)");
    EXPECT_EQ(recordCountText({.geocaches = 2}), "2 geocaches");
    EXPECT_EQ(recordCountText({.routes = 2}), "2 routes");
}

} // namespace
