// SPDX-License-Identifier: MIT

#include "host/transfer/ChoiceFilter.h"

#include "host/Records.h"

#include <gmock/gmock.h>

namespace {

using host::RecordChoice;
using host::RecordCounts;
using host::TimeRange;
using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::segment;
using support::track;
using support::waypoint;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t kChosenFirst = 1717236000;
constexpr std::int64_t kChosenLast = kChosenFirst + 2;

const RecordChoice kTimes{.times = TimeRange{kChosenFirst, kChosenLast}};

struct Chosen {
    std::vector<std::string> passed; ///< in short
    host::LeftOutRecords leftOut;
};

Chosen choose(const RecordChoice& choice, const std::vector<host::Event>& events)
{
    Chosen chosen;
    host::ChoiceFilter filter{choice};
    const auto sink = [&](const host::Event& event) {
        chosen.passed.push_back(support::shortText(event));
    };
    for (const auto& event : events)
        filter.event(event, sink);
    filter.finish(sink);
    chosen.leftOut = filter.leftOut();
    return chosen;
}

/// A track point so many seconds after kChosenFirst.
host::Event at(std::int64_t seconds)
{
    auto point = fix(kChosenFirst + seconds);
    point.record = {{"trackName", std::to_string(seconds)}};
    return point;
}

/// "f:" and the time, as `passed` has the point of at().
std::string passed(std::int64_t seconds)
{
    return "f:" + std::to_string(kChosenFirst + seconds) + std::to_string(seconds);
}

host::Event timedWaypoint(const char* name, std::int64_t time)
{
    auto event = waypoint(name);
    event.point.time = time;
    return event;
}

TEST(ChoiceFilter, EverythingPassesByDefault)
{
    EXPECT_TRUE(RecordChoice{}.isEverything());
    const auto chosen = choose({}, {waypoint("A"), cache("B"), endOfTransfer(), route("R"),
                                    waypoint("A"), endOfTransfer(), track("T"), at(0), segment(),
                                    at(1), track("U"), endOfTransfer()});
    EXPECT_THAT(chosen.passed, ElementsAre("w:A", "w:B", "-", "R:R", "w:A", "-", "T:T", passed(0),
                                           "|", passed(1), "T:U", "-"));
    EXPECT_EQ(chosen.leftOut.untimed, RecordCounts{});
}

TEST(ChoiceFilter, BothEndsOfTheTimesAreIncluded)
{
    const auto chosen = choose(kTimes, {track("T"), at(-1), at(0), at(2), at(3)});
    EXPECT_THAT(chosen.passed, ElementsAre("T:T", passed(0), passed(2)));
    EXPECT_EQ(chosen.leftOut.byTime, RecordCounts{.trackPoints = 2});
    const auto points =
        choose(kTimes, {timedWaypoint("A", kChosenFirst - 1), timedWaypoint("B", kChosenFirst),
                        timedWaypoint("C", kChosenLast), timedWaypoint("D", kChosenLast + 1)});
    EXPECT_THAT(points.passed, ElementsAre("w:B", "w:C"));
    EXPECT_EQ(points.leftOut.byTime, RecordCounts{.waypoints = 2});
    EXPECT_EQ(points.leftOut.untimed, RecordCounts{});
}

TEST(ChoiceFilter, TrackOutsideOfTheTimesLeavesNoTrace)
{
    const auto chosen = choose(kTimes, {track("T"), at(-2), at(-1), track("U"), at(1)});
    EXPECT_THAT(chosen.passed, ElementsAre("T:U", passed(1)));
    EXPECT_EQ(chosen.leftOut.byTime, (RecordCounts{.tracks = 1, .trackPoints = 2}));
}

TEST(ChoiceFilter, WhatHasNoTimeIsKeptAndCounted)
{
    const auto chosen =
        choose(kTimes, {waypoint("A"), cache("B"), endOfTransfer(), route("R"), waypoint("A"),
                        endOfTransfer(), track("T"), fix(0), fix(100), track("Empty")});
    EXPECT_THAT(chosen.passed, ElementsAre("w:A", "w:B", "-", "R:R", "w:A", "-", "T:T", "f:0",
                                           "f:100", "T:Empty"));
    EXPECT_EQ(chosen.leftOut.untimed, (RecordCounts{.waypoints = 1,
                                                    .geocaches = 1,
                                                    .routes = 1,
                                                    .routePoints = 1,
                                                    .tracks = 2,
                                                    .trackPoints = 2}));
    EXPECT_EQ(chosen.leftOut.byTime, RecordCounts{});
}

TEST(ChoiceFilter, PointWithoutATimeIsTreatedLikeThePointBefore)
{
    const auto chosen = choose(kTimes, {track("T"), fix(5), at(0), fix(6), at(3), fix(7)});
    EXPECT_THAT(chosen.passed, ElementsAre("T:T", "f:5", passed(0), "f:6"));
    EXPECT_EQ(chosen.leftOut.untimed, RecordCounts{.trackPoints = 2});
    EXPECT_EQ(chosen.leftOut.byTime, RecordCounts{.trackPoints = 2});
    EXPECT_THAT(choose(kTimes, {track("T"), at(3), track("U"), fix(5)}).passed,
                ElementsAre("T:U", "f:5"))
        << "but not like one of another track";
}

TEST(ChoiceFilter, PointsLeftOutWithinATrackAreAGap)
{
    EXPECT_THAT(choose(kTimes, {track("T"), at(0), at(5), at(6), at(1), at(2)}).passed,
                ElementsAre("T:T", passed(0), "|", passed(1), passed(2)));
    EXPECT_THAT(choose(kTimes, {track("T"), at(-1), segment(), at(0), segment(), at(5)}).passed,
                ElementsAre("T:T", passed(0)))
        << "no gap before the first point, nor behind the last";
}

TEST(ChoiceFilter, TrackWithoutAHeadGetsNone)
{
    EXPECT_THAT(choose(kTimes, {at(-1), at(0), endOfTransfer(), at(1)}).passed,
                ElementsAre(passed(0), "-", passed(1)));
}

TEST(ChoiceFilter, NamesAreShellPatternsForTracksOnly)
{
    const std::vector events{waypoint("A"),   endOfTransfer(), route("R"), waypoint("B"),
                             endOfTransfer(), track("Day 1"),  at(0),      track("Day 10"),
                             at(1),           track("day 1"),  track("")};
    const auto passedBy = [&](std::vector<std::string> names) {
        return choose({.trackNames = std::move(names)}, events).passed;
    };
    const auto with = [](std::vector<std::string> tracks) {
        std::vector<std::string> all{"w:A", "-", "R:R", "w:B", "-"};
        all.insert(all.end(), tracks.begin(), tracks.end());
        return all;
    };
    EXPECT_EQ(passedBy({"Day 1"}), with({"T:Day 1", passed(0)}));
    EXPECT_EQ(passedBy({"Day ?"}), with({"T:Day 1", passed(0)}));
    EXPECT_EQ(passedBy({"Day *"}), with({"T:Day 1", passed(0), "T:Day 10", passed(1)}));
    EXPECT_EQ(passedBy({"[dD]ay 1"}), with({"T:Day 1", passed(0), "T:day 1"}));
    EXPECT_EQ(passedBy({"Day 10", "day 1"}), with({"T:Day 10", passed(1), "T:day 1"}));
    EXPECT_EQ(passedBy({""}), with({"T:"}));
}

TEST(ChoiceFilter, EqualNameMatchesAlthoughItIsAPatternForOthers)
{
    const std::vector events{track("Day [1]"), at(0), track("Day 1"), at(1),
                             track("Day \\1"), at(2)};
    const auto tracksFor = [&](const char* name) {
        return choose({.trackNames = {name}}, events).passed;
    };
    EXPECT_THAT(tracksFor("Day [1]"), ElementsAre("T:Day [1]", passed(0), "T:Day 1", passed(1)));
    EXPECT_THAT(tracksFor("Day [[]1]"), ElementsAre("T:Day [1]", passed(0)));
    EXPECT_THAT(tracksFor("Day \\1"), ElementsAre("T:Day 1", passed(1), "T:Day \\1", passed(2)));
    EXPECT_THAT(tracksFor("Day [2]"), IsEmpty());
}

TEST(ChoiceFilter, PatternsWithoutAMatchAreReported)
{
    const auto chosen =
        choose({.trackNames = {"A*", "X", "AB"}}, {track("AB"), at(0), track("C"), at(0), at(1)});
    EXPECT_THAT(chosen.leftOut.unmatchedNames, ElementsAre("X"));
    EXPECT_EQ(chosen.leftOut.byName, (RecordCounts{.tracks = 1, .trackPoints = 2}));
    EXPECT_EQ(chosen.leftOut.byTime, RecordCounts{});
}

TEST(ChoiceFilter, GeocachesAreLeftOutButNotWhereARouteLeadsToThem)
{
    const auto chosen = choose({.geocaches = false}, {waypoint("A"), cache("B"), endOfTransfer(),
                                                      route("R"), cache("B"), endOfTransfer()});
    EXPECT_THAT(chosen.passed, ElementsAre("w:A", "-", "R:R", "w:B", "-"));
    EXPECT_EQ(chosen.leftOut.geocaches, RecordCounts{.geocaches = 1});
}

TEST(ChoiceFilter, RecordCountsOnceIfTwoChoicesLeaveItOut)
{
    auto both = kTimes;
    both.trackNames = {"X"};
    const auto chosen = choose(both, {track("T"), at(-1)});
    EXPECT_THAT(chosen.passed, IsEmpty());
    EXPECT_EQ(chosen.leftOut.byName, (RecordCounts{.tracks = 1, .trackPoints = 1}));
    EXPECT_EQ(chosen.leftOut.byTime, RecordCounts{});
}

} // namespace
