// SPDX-License-Identifier: MIT
// Where tracks begin in a run of points with and without names.

#include <plugin/common/TrackAnnouncer.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kCurrentTrack[] = "newTrack {name = \"Current Track\"}";
constexpr char kTrackA[] = "newTrack {name = \"A\"}";
constexpr char kTrackB[] = "newTrack {name = \"B\"}";

class TrackAnnouncerTest : public testing::Test {
protected:
    void point(std::string_view name) { announcer_.beforePoint({{"trackName", name}}); }
    void unnamedPoint() { announcer_.beforePoint({}); }

    support::RecordingReceiver status_;
    TrackAnnouncer announcer_{status_};
};

TEST_F(TrackAnnouncerTest, WithoutPointsThereIsNoTrack)
{
    EXPECT_THAT(status_.calls(), IsEmpty());
}

TEST_F(TrackAnnouncerTest, PointsBeforeAnyNameBelongToTheCurrentTrack)
{
    unnamedPoint();
    unnamedPoint();
    EXPECT_THAT(status_.calls(), ElementsAre(kCurrentTrack));
    point("A");
    EXPECT_THAT(status_.calls(), ElementsAre(kCurrentTrack, kTrackA));
}

TEST_F(TrackAnnouncerTest, ANameThatReturnsBeginsAnotherTrack)
{
    for (const auto* name : {"A", "A", "B", "A"})
        point(name);
    EXPECT_THAT(status_.calls(), ElementsAre(kTrackA, kTrackB, kTrackA));
}

TEST_F(TrackAnnouncerTest, AnUnnamedPointContinuesANamedTrack)
{
    point("A");
    unnamedPoint();
    point("A");
    EXPECT_THAT(status_.calls(), ElementsAre(kTrackA));
}

TEST_F(TrackAnnouncerTest, AnEmptyNameIsAName)
{
    point("");
    unnamedPoint();
    point("");
    EXPECT_THAT(status_.calls(), ElementsAre("newTrack {name = \"\"}"));
}

} // namespace
} // namespace magellan
