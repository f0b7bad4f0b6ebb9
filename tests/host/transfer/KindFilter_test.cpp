// SPDX-License-Identifier: MIT

#include "host/transfer/KindFilter.h"

#include "host/Records.h"

#include <gtest/gtest.h>

namespace {

using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::segment;
using support::track;
using support::waypoint;

std::string passedBy(const host::RequestedKinds& kinds)
{
    host::KindFilter filter{kinds};
    std::string text;
    const auto sink = [&](const host::Event& event) { text += support::shortText(event) + " "; };
    for (const auto& event :
         {waypoint("A"), cache("C"), endOfTransfer(), route("R"), waypoint("1"), endOfTransfer(),
          waypoint("B"), track("T"), fix(1), segment(), fix(2), endOfTransfer()})
        filter.event(event, sink);
    filter.finish(sink);
    return text;
}

TEST(KindFilter, PassesEverythingThatIsWanted)
{
    EXPECT_EQ(passedBy(host::RequestedKinds{}), "w:A w:C - R:R w:1 - w:B T:T f:1 | f:2 - ");
}

TEST(KindFilter, LeavesOutWaypointsButNotThePointsOfRoutes)
{
    EXPECT_EQ(passedBy({.waypoints = false}), "- R:R w:1 - T:T f:1 | f:2 - ");
}

TEST(KindFilter, LeavesOutRoutesWithTheirPoints)
{
    EXPECT_EQ(passedBy({.routes = false}), "w:A w:C - - w:B T:T f:1 | f:2 - ");
}

TEST(KindFilter, LeavesOutTracksWithTheirPointsAndSegments)
{
    EXPECT_EQ(passedBy({.tracks = false}), "w:A w:C - R:R w:1 - w:B - ");
}

} // namespace
