// SPDX-License-Identifier: MIT

#include "host/cli/Summary.h"

#include "host/formats/Written.h"

#include <gmock/gmock.h>

namespace {

using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;

std::string summaryOf(const std::vector<host::Event>& events)
{
    support::Written written;
    host::Summary summary{written.output()};
    for (const auto& event : events)
        summary.event(event);
    EXPECT_FALSE(summary.close());
    return written.text();
}

TEST(Summary, HasARowForEachCollectionAndTheTotals)
{
    const auto degree = [](double latitude, std::int64_t time) {
        return gps::GPSPoint{latitude, 0, 0, time, 0};
    };
    EXPECT_EQ(summaryOf({wayPoint({}, {{"name", "A"}}), wayPoint({}, {{"name", "B"}}),
                         wayPoint({}, {{"symbol", "Geocache"}}), newRoute({{"name", "Loop"}}),
                         wayPoint(degree(0, 0)), wayPoint(degree(1, 0)),
                         newTrack({{"name", "Day"}}), trackPoint(degree(0, 1717236060)),
                         trackPoint(degree(1, 1717236000)), trackPoint(degree(2, 0))}),
              "Kind       Name  Points  First (UTC)          Last (UTC)           Length km\n"
              "Waypoints             2\n"
              "Geocaches             1\n"
              "Route      Loop       2                                               111.20\n"
              "Track      Day        3  2024-06-01 10:00:00  2024-06-01 10:01:00     222.39\n"
              "Total                 8  2024-06-01 10:00:00  2024-06-01 10:01:00     222.39\n"
              "\nTrack \"Day\" jumps 111.20 km in 60 s, up to 2024-06-01 10:00:00. No receiver can "
              "record that; one of the two points is wrong.\n");
}

/// A track of two points, and the jumps that its summary names.
std::string jumpsBetween(const gps::GPSPoint& a, const gps::GPSPoint& b)
{
    const auto text = summaryOf({newTrack({{"name", "T"}}), trackPoint(a), trackPoint(b)});
    const auto at = text.find("\n\n");
    return at == std::string::npos ? std::string{} : text.substr(at + 2);
}

TEST(Summary, JumpIsFasterThanAThousandKnots)
{
    // A minute of latitude is 1.853 km on the sphere that lengths are measured on.
    const gps::GPSPoint start{0, 0, 0, 1717236000, 0};
    EXPECT_EQ(jumpsBetween(start, {1.0 / 60, 0, 0, 1717236004, 0}), "");
    EXPECT_THAT(jumpsBetween(start, {1.0 / 60, 0, 0, 1717236003, 0}),
                testing::HasSubstr("jumps 1.85 km in 3 s"));
    EXPECT_THAT(jumpsBetween(start, {1.0 / 60, 0, 0, 1717236000, 0}),
                testing::HasSubstr("jumps 1.85 km in 1 s"));
}

TEST(Summary, NoJumpIsNamedWithoutTimestampsOrBetweenTracks)
{
    EXPECT_EQ(jumpsBetween({0, 0, 0, 0, 0}, {9, 0, 0, 0, 0}), "");
    EXPECT_THAT(summaryOf({newTrack({}), trackPoint({0, 0, 0, 1717236000, 0}), newTrack({}),
                           trackPoint({9, 0, 0, 1717236001, 0})}),
                testing::Not(testing::HasSubstr("jumps")));
}

TEST(Summary, ThreeJumpsAreNamedAndMoreAreCounted)
{
    std::vector<host::Event> events{newTrack({})};
    for (int i = 0; i < 4; ++i)
        events.push_back(trackPoint({static_cast<double>(i), 0, 0, 1717236000 + i, 0}));
    EXPECT_THAT(summaryOf(events), testing::Not(testing::HasSubstr("more such")));
    events.push_back(trackPoint({4, 0, 0, 1717236004, 0}));
    EXPECT_THAT(summaryOf(events), testing::EndsWith("And 1 more such jump.\n"));
}

TEST(Summary, NamesAreCutAndMadeHarmless)
{
    const auto text = summaryOf({newTrack({{"name", std::string(50, 'x')}}),
                                 newTrack({{"name", "a\x1b[0m"}}), newTrack({})});
    EXPECT_THAT(text, testing::HasSubstr(std::string(39, 'x') + "…  "));
    EXPECT_THAT(text, testing::HasSubstr("a\xEF\xBF\xBD[0m "));
}

} // namespace
