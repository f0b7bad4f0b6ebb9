// SPDX-License-Identifier: MIT

#include "host/records/RecordTicks.h"

#include <gtest/gtest.h>

namespace {

using host::RecordKind;

host::RecordSet oneTrackAndTwoPoints()
{
    host::RecordSet records;
    records.tracks.resize(1);
    records.points.resize(2);
    return records;
}

TEST(RecordTicks, AreAllSetAtFirst)
{
    const host::RecordTicks ticks{oneTrackAndTwoPoints()};
    EXPECT_EQ(ticks.count(), 3);
    EXPECT_EQ(ticks.total(), 3);
    EXPECT_TRUE(ticks.isTicked(RecordKind::kPoint, 1));
}

TEST(RecordTicks, OfNothingAreNone)
{
    EXPECT_EQ(host::RecordTicks{}.total(), 0);
    EXPECT_EQ(host::RecordTicks{host::RecordSet{}}.count(), 0);
}

TEST(RecordTicks, EachRecordCountsOnce)
{
    host::RecordTicks ticks{oneTrackAndTwoPoints()};
    ticks.tick(RecordKind::kPoint, 1, false);
    ticks.tick(RecordKind::kPoint, 1, false);
    EXPECT_EQ(ticks.count(), 2);
    EXPECT_FALSE(ticks.isTicked(RecordKind::kPoint, 1));
    EXPECT_TRUE(ticks.isTicked(RecordKind::kPoint, 0));
    EXPECT_TRUE(ticks.isTicked(RecordKind::kTrack, 0));
    ticks.tick(RecordKind::kPoint, 1, true);
    EXPECT_EQ(ticks.count(), 3);
}

TEST(RecordTicks, AreInTheListOfTheirKind)
{
    auto records = oneTrackAndTwoPoints();
    records.routes.resize(1);
    host::RecordTicks ticks{records};
    ticks.tick(RecordKind::kRoute, 0, false);
    ticks.tick(RecordKind::kTrack, 0, false);
    EXPECT_EQ(ticks.records().routes, std::vector<bool>{false});
    EXPECT_EQ(ticks.records().tracks, std::vector<bool>{false});
    EXPECT_EQ(ticks.records().points, (std::vector<bool>{true, true}));
}

} // namespace
