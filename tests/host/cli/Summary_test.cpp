// SPDX-License-Identifier: MIT

#include "host/cli/Summary.h"

#include "host/formats/Written.h"

#include <gmock/gmock.h>

namespace {

using support::newRoute;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;

using host::Summary;

std::string summaryOf(const std::vector<host::Event>& events,
                      Summary::Rows rows = Summary::Rows::kCollections,
                      Summary::Clock clock = Summary::Clock::kLocal)
{
    support::Written written;
    Summary summary{written.output(), rows, clock};
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
              "Kind       Name  Points  First                Last                 Time zone  "
              "Length km  Where\n"
              "Waypoints             2\n"
              "Geocaches             1\n"
              "Route      Loop       2                                                       "
              "   111.20\n"
              "Track      Day        3  2024-06-01 10:00:00  2024-06-01 10:01:00  UTC        "
              "   222.39\n"
              "Total                 8  2024-06-01 10:00:00  2024-06-01 10:01:00  UTC        "
              "   222.39\n"
              "\nTrack \"Day\" jumps 111.20 km in 60 s, up to 2024-06-01 10:00:00. No receiver can "
              "record that; one of the two points is wrong.\n");
}

/// A track from Wanaka at a time, and one from Naters half a year later.
std::vector<host::Event> journey()
{
    return {newTrack({{"name", "A"}}), trackPoint({-44.7, 169.13, 0, 1717236000, 0}),
            newTrack({{"name", "B"}}), trackPoint({46.325, 7.988, 0, 1733047200, 0})};
}

TEST(Summary, TimesAreThoseOfThePlaceWhereARecordBegins)
{
    EXPECT_EQ(
        summaryOf(journey()),
        "Kind       Name  Points  First                Last                 Time zone         "
        "Length km  Where\n"
        "Waypoints             0\n"
        "Geocaches             0\n"
        "Track      A          1  2024-06-01 22:00:00  2024-06-01 22:00:00  Auckland          "
        "     0.00  near Wanaka\n"
        "Track      B          1  2024-12-01 11:00:00  2024-12-01 11:00:00  Zurich            "
        "     0.00  near Naters\n"
        "Total                 2  2024-06-01 22:00:00  2024-12-01 11:00:00  Auckland, Zurich  "
        "     0.00\n");
}

TEST(Summary, TimesAreInUtcIfRequested)
{
    EXPECT_THAT(summaryOf(journey(), Summary::Rows::kCollections, Summary::Clock::kUtc),
                testing::AllOf(
                    testing::StartsWith("Kind       Name  Points  First (UTC)          Last (UTC)  "
                                        "         Length km  Where\n"),
                    testing::HasSubstr("Track      A          1  2024-06-01 10:00:00  2024-06-01 "
                                       "10:00:00       0.00  near Wanaka\n")));
}

TEST(Summary, AListHasTheTimeAndThePlaceOfEachPoint)
{
    EXPECT_THAT(summaryOf({wayPoint({-44.7, 169.13, 0, 1717236000, 0}, {{"name", "Hut"}})},
                          Summary::Rows::kAll),
                testing::HasSubstr("Waypoint  Hut        1  2024-06-01 22:00:00  2024-06-01 "
                                   "22:00:00  Auckland              near Wanaka\n"));
}

TEST(Summary, ARecordIsWhereItsFirstPointWithValidCoordinatesIs)
{
    EXPECT_THAT(summaryOf({newTrack({{"name", "A"}}), trackPoint({91, 0, 0, 1717236000, 0}),
                           trackPoint({-44.7, 169.13, 0, 1717236001, 0}),
                           trackPoint({46.325, 7.988, 0, 1717236002, 0})}),
                testing::HasSubstr("2024-06-01 22:00:00  2024-06-01 22:00:02  Auckland"));
}

TEST(Summary, AJumpHasTheTimeOfItsTrack)
{
    EXPECT_THAT(summaryOf({newTrack({}), trackPoint({-44.7, 169.13, 0, 1717236000, 0}),
                           trackPoint({-45.7, 169.13, 0, 1717236001, 0})}),
                testing::HasSubstr("in 1 s, up to 2024-06-01 22:00:01."));
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
