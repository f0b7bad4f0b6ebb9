// SPDX-License-Identifier: MIT

#include "host/watching/NewOnly.h"

#include "Records.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kDay = 1717236000; // in 2024

class NewOnlyTest : public testing::Test {
protected:
    /// What reaches the writer of these reports.
    std::vector<std::string> passed(const std::vector<host::Event>& events)
    {
        told_.clear();
        host::NewOnly filter{std::make_unique<Told>(told_, closed_), known_};
        for (const auto& event : events)
            filter.event(event);
        (void)filter.close();
        seen_ = filter.seen();
        return told_;
    }

    /// Saves what these reports hold.
    void know(const std::vector<host::Event>& events)
    {
        (void)passed(events);
        ASSERT_EQ(known_.add(seen_), std::nullopt);
    }

    support::TemporaryFolder folder_;
    host::KnownRecords known_{folder_.path("known.txt")};
    std::vector<std::string> told_;
    int closed_ = 0;
    host::RecordKeys seen_;
};

TEST_F(NewOnlyTest, WithoutKnowledgeEverythingGoesThroughInOrder)
{
    EXPECT_THAT(
        passed({place("A"), cache("B"), endOfTransfer(), route("R"), place("A"), endOfTransfer(),
                track("T"), fix(kDay), fix(kDay + 1, 47), track("U"), endOfTransfer()}),
        ElementsAre("w:A", "w:B", "-", "R:R", "w:A", "-", "T:T", "f:1717236000", "f:1717236001",
                    "T:U", "-"));
    EXPECT_THAT(seen_, SizeIs(5));
}

TEST_F(NewOnlyTest, KnownRecordsAreLeftOutAndOtherReportsAreNot)
{
    const std::vector<host::Event> all{place("A"),    cache("B"),      endOfTransfer(), route("R"),
                                       place("A"),    endOfTransfer(), track("T"),      fix(kDay),
                                       fix(kDay + 1), track("U"),      endOfTransfer()};
    know(all);
    EXPECT_THAT(passed(all), ElementsAre("-", "-", "-"));
    EXPECT_THAT(seen_, SizeIs(5));
}

TEST_F(NewOnlyTest, ChangedWaypointIsNew)
{
    know({place("A"), place("B")});
    EXPECT_THAT(passed({place("A"), place("B", 47), place("C")}), ElementsAre("w:B", "w:C"));
}

TEST_F(NewOnlyTest, RouteWithAnyOtherPointIsNew)
{
    know({route("R"), place("A"), place("B")});
    EXPECT_THAT(passed({route("R"), place("A"), place("B"), route("R"), place("A"), route("R"),
                        place("B"), place("A")}),
                ElementsAre("R:R", "w:A", "R:R", "w:B", "w:A"));
}

TEST_F(NewOnlyTest, PointOfARouteIsNoWaypointOfItsOwn)
{
    know({route("R"), place("A")});
    EXPECT_THAT(passed({route("R"), place("A"), endOfTransfer(), place("A")}),
                ElementsAre("-", "w:A"));
}

TEST_F(NewOnlyTest, TrackIsKnownByItsFirstTimeAndItsLengthWhateverItsName)
{
    know({track("T"), fix(kDay), fix(kDay + 1)});
    EXPECT_THAT(passed({track("U"), fix(kDay), fix(kDay + 9)}), IsEmpty());
    EXPECT_THAT(passed({track("T"), fix(kDay + 1), fix(kDay + 2)}),
                ElementsAre("T:T", "f:1717236001", "f:1717236002"));
}

TEST_F(NewOnlyTest, TrackThatHasGrownComesWholeWithItsExtras)
{
    know({track("T"), fix(kDay), fix(kDay + 1)});
    EXPECT_THAT(
        passed({track("T"), fix(kDay, 46, "a"), fix(kDay + 1, 46, "a"), fix(kDay + 2, 46, "b")}),
        ElementsAre("T:T", "f:1717236000a", "f:1717236001a", "f:1717236002b"));
    EXPECT_THAT(passed({track("T"), fix(kDay)}), ElementsAre("T:T", "f:1717236000"));
}

TEST_F(NewOnlyTest, TrackWithoutATimeIsKnownByItsContent)
{
    know({track("T"), fix(0, 46), fix(0, 47)});
    EXPECT_THAT(passed({track("T"), fix(0, 46), fix(0, 47)}), IsEmpty());
    EXPECT_THAT(passed({track("T"), fix(0, 46), fix(0, 48)}), ElementsAre("T:T", "f:0", "f:0"));
}

TEST_F(NewOnlyTest, EmptyTrackIsKnownByItsHead)
{
    know({track("T")});
    EXPECT_THAT(passed({track("T"), track("U")}), ElementsAre("T:U"));
}

TEST_F(NewOnlyTest, PointsWithoutAHeadAreATrack)
{
    know({fix(kDay)});
    EXPECT_THAT(passed({fix(kDay), endOfTransfer(), fix(kDay + 1)}),
                ElementsAre("-", "f:1717236001"));
}

TEST_F(NewOnlyTest, HeldRecordsCountAtTheCloseToo)
{
    know({track("T"), fix(kDay)});
    EXPECT_THAT(passed({track("T"), fix(kDay), fix(kDay)}),
                ElementsAre("T:T", "f:1717236000", "f:1717236000"));
    EXPECT_THAT(passed({route("R"), place("A")}), ElementsAre("R:R", "w:A"));
}

TEST_F(NewOnlyTest, AlikeRecordsOfOneRunAllComeThrough)
{
    EXPECT_THAT(passed({place("A"), place("A")}), ElementsAre("w:A", "w:A"));
}

TEST_F(NewOnlyTest, WriterBehindItAnswersForIt)
{
    host::NewOnly filter{std::make_unique<Told>(told_, closed_), known_};
    filter.result(std::nullopt);
    EXPECT_THAT(told_, ElementsAre("succeeded"));
    EXPECT_EQ(filter.remark(), "remark");
    EXPECT_TRUE(filter.close());
    EXPECT_EQ(closed_, 1);
}

} // namespace
