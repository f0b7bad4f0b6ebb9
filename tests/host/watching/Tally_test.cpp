// SPDX-License-Identifier: MIT

#include "host/watching/Tally.h"

#include "Records.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using namespace support;
using testing::ElementsAre;

class TallyTest : public testing::Test {
protected:
    std::string count(const std::vector<host::Event>& events)
    {
        host::Tally tally{std::make_unique<Told>(told_, closed_)};
        for (const auto& event : events)
            tally.event(event);
        return tally.text();
    }

    std::vector<std::string> told_;
    int closed_ = 0;
};

TEST_F(TallyTest, NothingIsAnEmptyText)
{
    EXPECT_EQ(count({}), "");
    EXPECT_EQ(count({endOfTransfer()}), "");
}

TEST_F(TallyTest, EachKindIsCountedAndOneIsSingular)
{
    EXPECT_EQ(count({place("A"), cache("B"), route("R"), track("T"), fix(1)}),
              "1 waypoint, 1 geocache, 1 route, 1 track (1 point)");
    EXPECT_EQ(count({place("A"), place("B"), endOfTransfer(), route("R"), route("S"),
                     endOfTransfer(), track("T"), fix(1), fix(2), track("U")}),
              "2 waypoints, 2 routes, 2 tracks (2 points)");
}

TEST_F(TallyTest, PointsOfARouteAreNoWaypoints)
{
    EXPECT_EQ(count({route("R"), place("A"), cache("B"), endOfTransfer(), place("C")}),
              "1 waypoint, 1 route");
}

TEST_F(TallyTest, PointsWithoutAHeadAreOneTrack)
{
    EXPECT_EQ(count({fix(1), fix(2), endOfTransfer(), fix(3)}), "2 tracks (3 points)");
}

TEST_F(TallyTest, EverythingReachesTheWriterBehindIt)
{
    host::Tally tally{std::make_unique<Told>(told_, closed_)};
    tally.event(place("A"));
    tally.event(endOfTransfer());
    tally.result(gps::Error{"some", 1});
    EXPECT_THAT(told_, ElementsAre("w:A", "-", "failed"));
    EXPECT_EQ(tally.remark(), "remark");
    EXPECT_TRUE(tally.close());
    EXPECT_EQ(closed_, 1);
}

} // namespace
