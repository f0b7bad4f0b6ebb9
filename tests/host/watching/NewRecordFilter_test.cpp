// SPDX-License-Identifier: MIT

#include "host/watching/NewRecordFilter.h"

#include "host/Records.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::segment;
using support::shortText;
using support::track;
using support::waypoint;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kSomeDay = 1717236000; // in 2024

class NewRecordFilterTest : public testing::Test {
protected:
    /// Which of these events pass, in short.
    std::vector<std::string> passed(const std::vector<host::Event>& events)
    {
        std::vector<std::string> passed;
        const auto sink = [&](const host::Event& event) { passed.push_back(shortText(event)); };
        host::NewRecordFilter filter{known_};
        for (const auto& event : events)
            filter.event(event, sink);
        filter.finish(sink);
        seen_ = filter.seen();
        leftOut_ = filter.leftOut();
        return passed;
    }

    /// Makes the records in these events known.
    void know(const std::vector<host::Event>& events)
    {
        (void)passed(events);
        ASSERT_EQ(known_.add(seen_), std::nullopt);
    }

    support::TemporaryFolder folder_;
    host::KnownRecords known_{folder_.path("known.txt")};
    host::RecordKeys seen_;
    host::RecordCounts leftOut_;
};

TEST_F(NewRecordFilterTest, WhatIsLeftOutIsCounted)
{
    const std::vector events{waypoint("A"),  cache("B"), endOfTransfer(), route("R"),
                             waypoint("A"),  track("T"), fix(kSomeDay),   fix(kSomeDay + 1, 47),
                             endOfTransfer()};
    know(events);
    EXPECT_EQ(leftOut_, host::RecordCounts{});
    (void)passed(events);
    EXPECT_EQ(leftOut_, (host::RecordCounts{.waypoints = 1,
                                            .geocaches = 1,
                                            .routes = 1,
                                            .routePoints = 1,
                                            .tracks = 1,
                                            .trackPoints = 2}));
}

TEST_F(NewRecordFilterTest, SegmentsStayWhereTheyAreAndDoNotMakeATrackNew)
{
    const std::vector events{track("T"), fix(kSomeDay), segment(), fix(kSomeDay + 1)};
    EXPECT_THAT(passed(events), ElementsAre("T:T", "f:1717236000", "|", "f:1717236001"));
    know({track("T"), fix(kSomeDay), fix(kSomeDay + 1)});
    EXPECT_THAT(passed(events), IsEmpty());
    // Another track from the same time is held back until its end.
    EXPECT_THAT(passed({track("T"), fix(kSomeDay), segment(), fix(kSomeDay + 2)}),
                ElementsAre("T:T", "f:1717236000", "|", "f:1717236002"));
}

TEST_F(NewRecordFilterTest, EverythingPassesInOrderIfNothingIsKnown)
{
    EXPECT_THAT(passed({waypoint("A"), cache("B"), endOfTransfer(), route("R"), waypoint("A"),
                        endOfTransfer(), track("T"), fix(kSomeDay), fix(kSomeDay + 1, 47),
                        track("U"), endOfTransfer()}),
                ElementsAre("w:A", "w:B", "-", "R:R", "w:A", "-", "T:T", "f:1717236000",
                            "f:1717236001", "T:U", "-"));
    EXPECT_THAT(seen_, SizeIs(5));
}

TEST_F(NewRecordFilterTest, KnownRecordsAreDroppedAndOtherEventsPass)
{
    const std::vector<host::Event> all{waypoint("A"), cache("B"),     endOfTransfer(),
                                       route("R"),    waypoint("A"),  endOfTransfer(),
                                       track("T"),    fix(kSomeDay),  fix(kSomeDay + 1),
                                       track("U"),    endOfTransfer()};
    know(all);
    EXPECT_THAT(passed(all), ElementsAre("-", "-", "-"));
    EXPECT_THAT(seen_, SizeIs(5));
}

TEST_F(NewRecordFilterTest, ChangedWaypointIsNew)
{
    know({waypoint("A"), waypoint("B")});
    EXPECT_THAT(passed({waypoint("A"), waypoint("B", 47), waypoint("C")}),
                ElementsAre("w:B", "w:C"));
}

TEST_F(NewRecordFilterTest, RouteWithAnyOtherPointIsNew)
{
    know({route("R"), waypoint("A"), waypoint("B")});
    EXPECT_THAT(passed({route("R"), waypoint("A"), waypoint("B"), route("R"), waypoint("A"),
                        route("R"), waypoint("B"), waypoint("A")}),
                ElementsAre("R:R", "w:A", "R:R", "w:B", "w:A"));
}

TEST_F(NewRecordFilterTest, PointOfARouteIsNotAWaypoint)
{
    know({route("R"), waypoint("A")});
    EXPECT_THAT(passed({route("R"), waypoint("A"), endOfTransfer(), waypoint("A")}),
                ElementsAre("-", "w:A"));
}

TEST_F(NewRecordFilterTest, TrackIsKnownByItsPointsWhateverItsName)
{
    know({track("T"), fix(kSomeDay), fix(kSomeDay + 1)});
    EXPECT_THAT(passed({track("U"), fix(kSomeDay, 46, "a"), fix(kSomeDay + 1)}), IsEmpty());
    EXPECT_THAT(passed({track("T"), fix(kSomeDay + 1), fix(kSomeDay + 2)}),
                ElementsAre("T:T", "f:1717236001", "f:1717236002"));
}

TEST_F(NewRecordFilterTest, TracksWithEqualFirstTimesAndLengthsAreToldApartByTheirPoints)
{
    know({track("T"), fix(kSomeDay), fix(kSomeDay + 1)});
    const std::vector<host::Event> two{track("T"), fix(kSomeDay, 46), fix(kSomeDay + 1, 46),
                                       track("U"), fix(kSomeDay, 46), fix(kSomeDay + 1, 47)};
    EXPECT_THAT(passed(two), ElementsAre("T:U", "f:1717236000", "f:1717236001"));
    know(two);
    EXPECT_THAT(passed(two), IsEmpty());
}

TEST_F(NewRecordFilterTest, ListOfAnOlderVersionKnowsOneTrackOfEachFirstTimeAndLength)
{
    ASSERT_EQ(known_.add({host::trackKey(kSomeDay, 2, {})}), std::nullopt);
    const std::vector<host::Event> all{track("T"), fix(kSomeDay), fix(kSomeDay + 1),
                                       track("U"), fix(kSomeDay), fix(kSomeDay + 9),
                                       track("T"), fix(kSomeDay), fix(kSomeDay + 1)};
    EXPECT_THAT(passed(all), ElementsAre("T:U", "f:1717236000", "f:1717236009"));
    know(all);
    EXPECT_THAT(passed(all), IsEmpty());
    EXPECT_THAT(passed({track("V"), fix(kSomeDay), fix(kSomeDay + 5)}), SizeIs(3));
}

TEST_F(NewRecordFilterTest, TrackThatHasGrownPassesWholeWithItsExtras)
{
    know({track("T"), fix(kSomeDay), fix(kSomeDay + 1)});
    EXPECT_THAT(passed({track("T"), fix(kSomeDay, 46, "a"), fix(kSomeDay + 1, 46, "a"),
                        fix(kSomeDay + 2, 46, "b")}),
                ElementsAre("T:T", "f:1717236000a", "f:1717236001a", "f:1717236002b"));
    EXPECT_THAT(passed({track("T"), fix(kSomeDay)}), ElementsAre("T:T", "f:1717236000"));
}

TEST_F(NewRecordFilterTest, TrackWithoutATimeIsKnownByItsContent)
{
    know({track("T"), fix(0, 46), fix(0, 47)});
    EXPECT_THAT(passed({track("T"), fix(0, 46), fix(0, 47)}), IsEmpty());
    EXPECT_THAT(passed({track("T"), fix(0, 46), fix(0, 48)}), ElementsAre("T:T", "f:0", "f:0"));
}

TEST_F(NewRecordFilterTest, EmptyTrackIsKnownByItsHead)
{
    know({track("T")});
    EXPECT_THAT(passed({track("T"), track("U")}), ElementsAre("T:U"));
}

TEST_F(NewRecordFilterTest, PointsWithoutAHeadAreATrack)
{
    know({fix(kSomeDay)});
    EXPECT_THAT(passed({fix(kSomeDay), endOfTransfer(), fix(kSomeDay + 1)}),
                ElementsAre("-", "f:1717236001"));
}

TEST_F(NewRecordFilterTest, HeldRecordsPassAtTheEnd)
{
    know({track("T"), fix(kSomeDay)});
    EXPECT_THAT(passed({track("T"), fix(kSomeDay), fix(kSomeDay)}),
                ElementsAre("T:T", "f:1717236000", "f:1717236000"));
    EXPECT_THAT(passed({route("R"), waypoint("A")}), ElementsAre("R:R", "w:A"));
}

TEST_F(NewRecordFilterTest, EqualRecordsWithinOneDownloadAllPass)
{
    EXPECT_THAT(passed({waypoint("A"), waypoint("A")}), ElementsAre("w:A", "w:A"));
}

} // namespace
