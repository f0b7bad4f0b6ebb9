// SPDX-License-Identifier: MIT

#include "host/transfer/RepeatFilter.h"

#include "host/Records.h"

#include <gmock/gmock.h>

namespace {

using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::track;
using support::waypoint;
using testing::ElementsAre;

class RepeatFilter : public testing::Test {
protected:
    /// What passes, in short.
    std::vector<std::string> passing(const std::vector<host::Event>& events)
    {
        std::vector<std::string> passed;
        const auto sink = [&](const host::Event& event) {
            passed.push_back(support::shortText(event));
        };
        for (const auto& event : events)
            filter_.event(event, sink);
        filter_.finish(sink);
        return passed;
    }

    host::RepeatFilter filter_;
};

TEST_F(RepeatFilter, DropsAPointThatEqualsTheOneBefore)
{
    EXPECT_THAT(passing({track("A"), fix(1), fix(1), fix(2), fix(1)}),
                ElementsAre("T:A", "f:1", "f:2", "f:1"));
    EXPECT_EQ(filter_.dropped().trackPoints, 1U);
    EXPECT_EQ(filter_.dropped().total(), 1U);
}

TEST_F(RepeatFilter, ComparesTheWholeRecord)
{
    EXPECT_THAT(passing({fix(1, 46, "A"), fix(1, 46, "B"), fix(1, 47, "B")}),
                ElementsAre("f:1A", "f:1B", "f:1B"));
    EXPECT_EQ(filter_.dropped().total(), 0U);
}

TEST_F(RepeatFilter, DropsWaypointsThatComeAgainAsOftenAsTheyDo)
{
    EXPECT_THAT(passing({waypoint("A"), waypoint("A"), waypoint("A"), waypoint("B"), cache("B")}),
                ElementsAre("w:A", "w:B", "w:B"));
    EXPECT_EQ(filter_.dropped().waypoints, 2U);
}

TEST_F(RepeatFilter, RepeatInAnotherTransferPasses)
{
    EXPECT_THAT(passing({waypoint("A"), endOfTransfer(), waypoint("A")}),
                ElementsAre("w:A", "-", "w:A"));
}

TEST_F(RepeatFilter, DropsARouteOnlyIfAllOfItIsTheSame)
{
    EXPECT_THAT(passing({route("R"), waypoint("A"), waypoint("B"), route("R"), waypoint("A"),
                         waypoint("B"), route("R"), waypoint("A")}),
                ElementsAre("R:R", "w:A", "w:B", "R:R", "w:A"));
    EXPECT_EQ(filter_.dropped().routes, 1U);
    EXPECT_EQ(filter_.dropped().waypoints, 0U);
}

TEST_F(RepeatFilter, EqualNeighboursWithinARoutePass)
{
    EXPECT_THAT(passing({route("R"), waypoint("A"), waypoint("A"), endOfTransfer()}),
                ElementsAre("R:R", "w:A", "w:A", "-"));
}

TEST_F(RepeatFilter, LastRouteIsDroppedAtTheEndToo)
{
    EXPECT_THAT(passing({route("R"), waypoint("A"), route("R"), waypoint("A")}),
                ElementsAre("R:R", "w:A"));
}

} // namespace
