// SPDX-License-Identifier: MIT

#include "host/records/NewRecords.h"

#include "host/Records.h"
#include "host/records/RecordKeeper.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <vector>

namespace {

using host::TickedRecords;
using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::track;
using support::waypoint;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kSomeDay = 1717236000; // in 2024

class NewRecordsTest : public testing::Test {
protected:
    /// A download of only what is new.
    void download(const std::vector<host::Event>& events)
    {
        host::KnownRecords known{folder_.path("known.txt")};
        ASSERT_EQ(known.load(), std::nullopt);
        host::NewRecordFilter filter{known};
        host::RecordKeeper keeper;
        const auto sink = [&](const host::Event& event) { keeper.event(event); };
        for (const auto& event : events)
            filter.event(event, sink);
        filter.finish(sink);
        ASSERT_FALSE(keeper.close());
        set_ = keeper.take();
        news_ = {.list = folder_.path("known.txt"), .keys = filter.takePassed()};
    }

    support::TemporaryFolder folder_;
    host::RecordSet set_;
    host::NewRecords news_;
};

const std::vector<host::Event>& everything()
{
    static const std::vector events{
        waypoint("A"), cache("C"),    endOfTransfer(),   route("R"),
        waypoint("1"), route("S"),    waypoint("2"),     endOfTransfer(),
        track("T"),    fix(kSomeDay), track("U"),        fix(kSomeDay, 47),
        track("V"),    track("W"),    fix(kSomeDay + 9), endOfTransfer()};
    return events;
}

TEST_F(NewRecordsTest, AreThoseThatWereNotNotedBefore)
{
    download(everything());
    ASSERT_THAT(set_.points, SizeIs(2));
    ASSERT_THAT(set_.tracks, SizeIs(4));
    EXPECT_FALSE(noteAsSaved(news_, TickedRecords::all(set_)));
    download(everything());
    EXPECT_TRUE(set_.isEmpty());
}

TEST_F(NewRecordsTest, ThatWereNotTickedAreNewAgain)
{
    download(everything());
    EXPECT_FALSE(noteAsSaved(news_, {{true, false}, {false, true}, {true, false, true, true}}));
    download(everything());
    ASSERT_THAT(set_.points, SizeIs(1));
    EXPECT_EQ(*set_.points[0].record.findString("name"), "C");
    ASSERT_THAT(set_.routes, SizeIs(1));
    EXPECT_EQ(*set_.routes[0].record.findString("name"), "R");
    ASSERT_THAT(set_.tracks, SizeIs(1));
    EXPECT_EQ(set_.tracks[0].points[0].latitude, 47);
}

TEST_F(NewRecordsTest, OfTwoDownloadsAreNotedTogether)
{
    download({waypoint("A")});
    const auto first = news_;
    download({waypoint("B")});
    EXPECT_FALSE(noteAsSaved(first, {{true}, {}, {}}));
    EXPECT_FALSE(noteAsSaved(news_, {{true}, {}, {}}));
    download({waypoint("A"), waypoint("B"), waypoint("C")});
    EXPECT_THAT(set_.points, SizeIs(1));
}

TEST_F(NewRecordsTest, WithoutAsManyKeysAsRecordsAreNotNoted)
{
    download({waypoint("A"), waypoint("B")});
    EXPECT_THAT(keysOf(news_, {{true}, {}, {}}), IsEmpty());
    EXPECT_THAT(keysOf(news_, {{true, true}, {}, {}}), SizeIs(2));
}

TEST_F(NewRecordsTest, ThatCannotBeNotedAreReported)
{
    download({waypoint("A")});
    news_.list = "/dev/null/known.txt";
    EXPECT_TRUE(noteAsSaved(news_, {{true}, {}, {}}));
}

} // namespace
