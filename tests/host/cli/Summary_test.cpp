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
              "Total                 8  2024-06-01 10:00:00  2024-06-01 10:01:00     333.59\n");
}

TEST(Summary, NamesAreCutAndMadeHarmless)
{
    const auto text = summaryOf({newTrack({{"name", std::string(50, 'x')}}),
                                 newTrack({{"name", "a\x1b[0m"}}), newTrack({})});
    EXPECT_THAT(text, testing::HasSubstr(std::string(39, 'x') + "…  "));
    EXPECT_THAT(text, testing::HasSubstr("a\xEF\xBF\xBD[0m "));
}

} // namespace
