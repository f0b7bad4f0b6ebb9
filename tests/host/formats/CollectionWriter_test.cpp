// SPDX-License-Identifier: MIT
// The order in which a CollectionWriter calls its operations, for every order of events.

#include "host/formats/CollectionWriter.h"

#include "host/formats/Written.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host::Event;
using host::EventKind;
using support::newRoute;
using support::newSegment;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;

// Writes down each call as one word.
class CallWriter final : public host::CollectionWriter {
public:
    [[nodiscard]] const std::string& calls() const { return calls_; }

private:
    void wayPoint(const gps::GPSPoint&, const gps::Dictionary&) override { calls_ += "waypoint "; }
    void beginRoute(const gps::Dictionary&) override { calls_ += "route( "; }
    void routePoint(const gps::GPSPoint&, const gps::Dictionary&) override { calls_ += "routept "; }
    void endRoute() override { calls_ += ")route "; }
    void beginTrack(const gps::Dictionary&) override { calls_ += "track( "; }
    void trackPoint(const gps::GPSPoint&) override { calls_ += "trackpt "; }
    void newSegment() override { calls_ += "| "; }
    void endTrack() override { calls_ += ")track "; }
    [[nodiscard]] std::optional<gps::Error> finish() override
    {
        calls_ += "finish";
        return std::nullopt;
    }

    std::string calls_;
};

std::string callsFor(const std::vector<Event>& events)
{
    CallWriter writer;
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    return writer.calls();
}

TEST(CollectionWriter, WithoutEventsItIsOnlyFinished)
{
    EXPECT_EQ(callsFor({}), "finish");
}

TEST(CollectionWriter, WaypointAfterANewRouteIsItsPoint)
{
    EXPECT_EQ(callsFor({wayPoint({}), newRoute({}), wayPoint({}), wayPoint({})}),
              "waypoint route( routept routept )route finish");
}

TEST(CollectionWriter, EachNewCollectionClosesTheOneBefore)
{
    EXPECT_EQ(callsFor({newRoute({}), newRoute({}), newTrack({}), newTrack({}), newRoute({})}),
              "route( )route route( )route track( )track track( )track route( )route finish");
}

TEST(CollectionWriter, TrackPointOutsideATrackOpensOne)
{
    EXPECT_EQ(callsFor({trackPoint({}), trackPoint({})}), "track( trackpt trackpt )track finish");
    EXPECT_EQ(callsFor({newRoute({}), trackPoint({})}),
              "route( )route track( trackpt )track finish");
}

TEST(CollectionWriter, SegmentBeginsOnlyWithinATrack)
{
    EXPECT_EQ(callsFor({newTrack({}), trackPoint({}), newSegment(), trackPoint({})}),
              "track( trackpt | trackpt )track finish");
    EXPECT_EQ(callsFor({newSegment(), newRoute({}), newSegment(), wayPoint({})}),
              "route( routept )route finish");
}

TEST(CollectionWriter, WaypointClosesATrack)
{
    EXPECT_EQ(callsFor({newTrack({}), trackPoint({}), wayPoint({}), trackPoint({})}),
              "track( trackpt )track waypoint track( trackpt )track finish");
}

TEST(CollectionWriter, EveryOtherEventClosesARoute)
{
    for (const auto kind :
         {EventKind::kStateChange, EventKind::kStartTransfer, EventKind::kEndTransfer,
          EventKind::kStartSending, EventKind::kEndSending, EventKind::kError})
        EXPECT_EQ(callsFor({newRoute({}), support::ofKind(kind), wayPoint({})}),
                  "route( )route waypoint finish");
}

} // namespace
