// SPDX-License-Identifier: MIT

#include "host/fitting/TrackSegments.h"

#include <gmock/gmock.h>

namespace {

using gps::Array;
using gps::Dictionary;
using host::SegmentedTrack;
using host::SegmentRule;
using testing::ElementsAre;
using testing::IsEmpty;

Dictionary track(const char* name, int segment, Array points)
{
    Dictionary record{{"name", name}};
    if (segment > 0)
        record.set("segment", segment);
    record.set("points", std::move(points));
    return record;
}

class TrackSegments : public testing::Test {
protected:
    Dictionary data_{
        {"track", Array{track("A", 1, {1, 2}), track("A", 2, {3}), track("B", 0, {4}),
                        track("A", 1, {5}), track("A", 2, {6}), track("A", 3, {7, 8})}}};
};

TEST_F(TrackSegments, EachSegmentBecomesATrack)
{
    EXPECT_THAT(fitSegments(data_, SegmentRule::kSplit),
                ElementsAre(SegmentedTrack{"A", 2}, SegmentedTrack{"A", 3}));
    EXPECT_EQ(*data_.findArray("track"),
              (Array{track("A", 0, {1, 2}), track("A", 0, {3}), track("B", 0, {4}),
                     track("A", 0, {5}), track("A", 0, {6}), track("A", 0, {7, 8})}));
}

TEST_F(TrackSegments, SegmentsAreJoinedInTheirOrder)
{
    EXPECT_THAT(fitSegments(data_, SegmentRule::kJoin),
                ElementsAre(SegmentedTrack{"A", 2}, SegmentedTrack{"A", 3}));
    EXPECT_EQ(*data_.findArray("track"),
              (Array{track("A", 0, {1, 2, 3}), track("B", 0, {4}), track("A", 0, {5, 6, 7, 8})}));
}

TEST_F(TrackSegments, TrackWithoutANameHasAnEmptyOne)
{
    data_ = {{"track", Array{Dictionary{{"segment", 1}, {"points", Array{1}}},
                             Dictionary{{"segment", 2}, {"points", Array{2}}}}}};
    EXPECT_THAT(fitSegments(data_, SegmentRule::kJoin), ElementsAre(SegmentedTrack{"", 2}));
}

TEST_F(TrackSegments, DataWithoutSegmentsIsUnchanged)
{
    for (const auto& unchanged :
         {Dictionary{}, Dictionary{{"track", "text"}}, Dictionary{{"track", Array{1, "a"}}},
          Dictionary{{"track", Array{track("A", 0, {1})}}, {"waypoint", Array{1}}}}) {
        auto data = unchanged;
        EXPECT_THAT(fitSegments(data, SegmentRule::kJoin), IsEmpty());
        EXPECT_EQ(data, unchanged);
    }
}

TEST_F(TrackSegments, LaterSegmentWithoutAFirstOneIsATrack)
{
    data_ = {{"track", Array{track("A", 2, {1})}}};
    EXPECT_THAT(fitSegments(data_, SegmentRule::kJoin), IsEmpty());
    EXPECT_EQ(data_, (Dictionary{{"track", Array{track("A", 0, {1})}}}));
}

} // namespace
