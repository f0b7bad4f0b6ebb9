// SPDX-License-Identifier: MIT

#include "host/operations/DateFix.h"

#include "host/formats/Written.h"

#include <gps/Value.h>

#include <gmock/gmock.h>

namespace {

using host::DateFix;
using host::DateRule;
using host::readDateRule;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kWeek = 7 * kDay;
constexpr std::int64_t kCount = 1024 * kWeek;
constexpr std::int64_t kNow = 1788000000; // a day in 2026
constexpr std::int64_t kYoungestOld = kNow + kDay - kCount;
constexpr DateRule kOff{};
constexpr DateRule kAuto{.isAuto = true};

host::Event trackPointAt(std::int64_t time)
{
    return trackPoint({1, 2, 3, time, 4});
}

std::vector<std::int64_t> timesOf(DateRule rule, const std::vector<host::Event>& events)
{
    DateFix fix{rule, kNow};
    std::vector<std::int64_t> times;
    for (const auto& event : events) {
        const auto& adjusted = fix.adjusted(event);
        EXPECT_EQ(adjusted.kind, event.kind);
        if (event.kind == host::EventKind::kTrackPoint || event.kind == host::EventKind::kWayPoint)
            times.push_back(adjusted.point.time);
    }
    return times;
}

using Times = std::vector<std::int64_t>;

// The second segment alone would not look old.
TEST(DateFix, SegmentsOfATrackAreAdjustedAlike)
{
    const std::vector<host::Event> events{newTrack({}), trackPointAt(kYoungestOld),
                                          support::newSegment(), trackPointAt(kYoungestOld + 1)};
    EXPECT_EQ(timesOf(kAuto, events), (Times{kYoungestOld + kCount, kYoungestOld + 1 + kCount}));
}

TEST(DateFix, RuleIsAWordOrAWholeNumberOfWeeks)
{
    struct Row {
        const char* text;
        bool isAuto;
        std::int32_t weeks;
    };
    for (const auto& [text, isAuto, weeks] : {Row{"auto", true, 0},
                                              {"off", false, 0},
                                              {"0", false, 0},
                                              {"1024", false, 1024},
                                              {"+1024", false, 1024},
                                              {"-1024", false, -1024},
                                              {"5218", false, 5218},
                                              {"-5218", false, -5218}}) {
        const auto rule = readDateRule(text);
        ASSERT_TRUE(rule) << text;
        EXPECT_EQ(rule->isAuto, isAuto) << text;
        EXPECT_EQ(rule->weeks, weeks) << text;
    }
    for (const char* text : {"", "Auto", "on", "5219", "-5219", "99999999999999", "-2147483648",
                             "1024w", " 1", "1 ", "1.5", "+-1", "--1", "++1", "+", "-", "0x10"})
        EXPECT_FALSE(readDateRule(text)) << text;
}

TEST(DateFix, OffChangesNothing)
{
    DateFix fix{kOff, kNow};
    const auto event = trackPointAt(kYoungestOld);
    EXPECT_EQ(&fix.adjusted(event), &event);
}

TEST(DateFix, AutoAdjustsTimesThatDoNotPassTomorrow)
{
    EXPECT_EQ(timesOf(kAuto, {trackPointAt(kYoungestOld)}), Times{kNow + kDay});
    EXPECT_EQ(timesOf(kAuto, {trackPointAt(kYoungestOld + 1)}), Times{kYoungestOld + 1});
    EXPECT_EQ(timesOf(kAuto, {trackPointAt(kNow)}), Times{kNow});
}

TEST(DateFix, AutoJudgesATrackByItsFirstTime)
{
    EXPECT_EQ(timesOf(kAuto, {newTrack({}), trackPointAt(kYoungestOld),
                              trackPointAt(kYoungestOld + 10), newTrack({}),
                              trackPointAt(kYoungestOld + 1), trackPointAt(kYoungestOld - 10)}),
              (Times{kNow + kDay, kNow + kDay + 10, kYoungestOld + 1, kYoungestOld - 10}));
    EXPECT_EQ(timesOf(kAuto, {newTrack({}), trackPointAt(0), trackPointAt(kYoungestOld),
                              trackPointAt(0), trackPointAt(kYoungestOld + 10)}),
              (Times{0, kNow + kDay, 0, kNow + kDay + 10}));
}

TEST(DateFix, AutoJudgesEachWayPointByItself)
{
    const auto waypoint = [](std::int64_t time) { return wayPoint({0, 0, 0, time, 0}); };
    EXPECT_EQ(timesOf(kAuto, {waypoint(kYoungestOld), waypoint(kNow), support::newRoute({}),
                              waypoint(kYoungestOld - 5), trackPointAt(kNow)}),
              (Times{kNow + kDay, kNow, kNow + kDay - 5, kNow}));
}

TEST(DateFix, WeeksAreAddedToAllTimes)
{
    EXPECT_EQ(timesOf({.weeks = -1}, {trackPointAt(kNow), wayPoint({0, 0, 0, kNow, 0})}),
              (Times{kNow - kWeek, kNow - kWeek}));
    EXPECT_EQ(timesOf({.weeks = 2}, {trackPointAt(kNow)}), Times{kNow + 2 * kWeek});
}

TEST(DateFix, MissingTimeAndTimeWithoutADateStay)
{
    for (const DateRule rule : {kAuto, DateRule{.weeks = 1024}}) {
        EXPECT_EQ(timesOf(rule, {trackPointAt(0), trackPointAt(3600), trackPointAt(315532799),
                                 trackPointAt(-5)}),
                  (Times{0, 3600, 315532799, -5}));
        EXPECT_EQ(timesOf(rule, {trackPointAt(315532800)}), Times{315532800 + kCount});
    }
}

TEST(DateFix, BoxedPointIsAdjustedTooAndNothingElse)
{
    DateFix fix{kAuto, kNow};
    const gps::GPSPoint point{1, 2, 3, kYoungestOld, 4};
    const gps::GPSPoint later{1, 2, 3, kNow + kDay, 4};
    const auto& adjusted =
        fix.adjusted(wayPoint(point, {{"name", "A"}, {"datePlaced", "010107"}, {"point", point}}));
    EXPECT_EQ(adjusted.point, later);
    EXPECT_EQ(adjusted.record,
              (gps::Dictionary{{"name", "A"}, {"datePlaced", "010107"}, {"point", later}}));
    const auto text = wayPoint(point, {{"point", "a text"}});
    EXPECT_EQ(fix.adjusted(text).record, text.record);
}

std::optional<std::int64_t> suspectNewest(DateRule rule, const Times& times)
{
    DateFix fix{rule, kNow};
    for (const auto time : times)
        (void)fix.adjusted(trackPointAt(time));
    return fix.suspectNewest();
}

TEST(DateFix, NewestTimeIsSuspectIfEvenItLooksOld)
{
    EXPECT_EQ(suspectNewest(kOff, {kYoungestOld - kWeek, kYoungestOld, 0}), kYoungestOld);
    EXPECT_EQ(suspectNewest(kOff, {kYoungestOld, kYoungestOld - kWeek}), kYoungestOld);
    EXPECT_EQ(suspectNewest(kOff, {kYoungestOld, kYoungestOld + 1}), std::nullopt);
    EXPECT_EQ(suspectNewest(kOff, {}), std::nullopt);
    EXPECT_EQ(suspectNewest(kOff, {0, 3600}), std::nullopt);
}

TEST(DateFix, NothingIsSuspectIfARuleAdjustsIt)
{
    EXPECT_EQ(suspectNewest(kAuto, {kYoungestOld}), std::nullopt);
    EXPECT_EQ(suspectNewest({.weeks = 1}, {kYoungestOld}), std::nullopt);
    EXPECT_EQ(suspectNewest({.weeks = 0}, {kYoungestOld}), kYoungestOld);
}

TEST(DateFix, AdjustedTimesAreCounted)
{
    DateFix fix{kAuto, kNow};
    for (const auto time : {kYoungestOld, kNow, std::int64_t{0}, kYoungestOld - 1}) {
        (void)fix.adjusted(newTrack({}));
        (void)fix.adjusted(trackPointAt(time));
    }
    EXPECT_EQ(fix.adjustedCount(), 2U);
}

} // namespace
