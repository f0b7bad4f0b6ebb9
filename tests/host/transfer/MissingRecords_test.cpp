// SPDX-License-Identifier: MIT

#include "host/transfer/MissingRecords.h"

#include "host/FakeDriver.h"

#include <gmock/gmock.h>

namespace {

using Action = gps::PlannedFile::Action;
using testing::IsEmpty;
using testing::SizeIs;

gps::Dictionary at(double latitude, double longitude)
{
    return {{"name", "A"}, {"point", gps::GPSPoint{.latitude = latitude, .longitude = longitude}}};
}

gps::Array withPoints(gps::Array points)
{
    return {gps::Dictionary{{"points", std::move(points)}}};
}

// A plan of two files: one of waypoints and one of routes and tracks.
class MissingRecords : public testing::Test {
protected:
    MissingRecords()
    {
        plan_.files.push_back({"/points", Action::kCreate, "", {}});
        plan_.files.push_back({"/lines", Action::kMerge, "", {}});
        driver_.decode = [](const gps::PlannedFile& file) -> gps::Dictionary {
            if (file.path == "/points")
                return {{"waypoint", gps::Array{at(46.5, -7.25)}}};
            return {{"route", withPoints({at(1, 2)})}, {"track", withPoints({at(3, 4)})}};
        };
    }

    std::vector<host::MissingRecord> missing(const char* key, gps::Array records)
    {
        return host::missingRecords({{key, std::move(records)}}, plan_, driver_);
    }

    support::FakeFileDriver driver_;
    gps::SendPlan plan_;
};

TEST_F(MissingRecords, RecordIsFoundWithinThePrecisionOfADevice)
{
    constexpr double kUnit = 1e-5 / 60;
    EXPECT_THAT(missing("waypoint", {at(46.5 + 0.5 * kUnit, -7.25 - 0.5 * kUnit)}), IsEmpty());
    EXPECT_THAT(missing("waypoint", {at(46.5 + 2 * kUnit, -7.25)}), SizeIs(1));
    EXPECT_THAT(missing("waypoint", {at(46.5, -7.25 + 2 * kUnit)}), SizeIs(1));
}

TEST_F(MissingRecords, MissingRecordHasItsKindAndItsName)
{
    const auto records = missing("waypoint", {at(0, 0), gps::Dictionary{}});
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].kind, "waypoint");
    EXPECT_EQ(records[0].name, "A");
    EXPECT_EQ(records[1].name, std::nullopt);
}

TEST_F(MissingRecords, RecordThatCannotBeWrittenIsMissing)
{
    EXPECT_THAT(missing("waypoint", {at(96.5, 7), gps::Dictionary{}, "text"}), SizeIs(3));
}

TEST_F(MissingRecords, EachKindIsLookedForInItsOwnFiles)
{
    EXPECT_THAT(missing("waypoint", {at(1, 2), at(3, 4)}), SizeIs(2));
    const auto routePoints = missing("route", withPoints({at(1, 2), at(46.5, -7.25), at(3, 4)}));
    ASSERT_THAT(routePoints, SizeIs(2));
    EXPECT_EQ(routePoints[0].kind, "route point");
    const auto trackPoints = missing("track", withPoints({at(1, 2), at(46.5, -7.25), at(3, 4)}));
    ASSERT_THAT(trackPoints, SizeIs(2));
    EXPECT_EQ(trackPoints[0].kind, "track point");
}

TEST_F(MissingRecords, FilesThatAreSkippedHoldNothing)
{
    plan_.files.front().action = Action::kSkip;
    EXPECT_THAT(missing("waypoint", {at(46.5, -7.25)}), SizeIs(1));
    EXPECT_THAT(missing("route", withPoints({at(1, 2)})), IsEmpty());
}

} // namespace
