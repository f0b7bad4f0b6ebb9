// SPDX-License-Identifier: MIT

#include "host/transfer/MissingRecords.h"

#include "host/FakeDriver.h"

#include <gmock/gmock.h>

namespace {

using Action = gps::PlannedFile::Action;
using testing::ElementsAre;
using testing::IsEmpty;

gps::Dictionary at(double latitude, double longitude)
{
    return {{"name", "A"}, {"point", gps::GPSPoint{.latitude = latitude, .longitude = longitude}}};
}

class MissingRecords : public testing::Test {
protected:
    MissingRecords()
    {
        plan_.files.push_back({"/points", Action::kCreate, "", {}});
        driver_.acquire = [this](const FakeStatus& status,
                                 const gps::Dictionary& options) -> std::optional<gps::Error> {
            const auto* const path = options.findString("sourcePath");
            imported_.push_back(path != nullptr ? *path : "");
            if (path != nullptr)
                status->wayPoint({.latitude = 46.5, .longitude = -7.25}, {});
            else
                status->newRoute({}), status->wayPoint({.latitude = 1, .longitude = 2}, {});
            status->gpsStateChange(0);
            return std::nullopt;
        };
    }
    using FakeStatus = gps::GPSPlugInProtocol::Status;

    std::vector<std::string> missing(const char* key, gps::Array records)
    {
        return host::missingRecords(driver_, {{key, std::move(records)}}, plan_);
    }

    support::FakeFileDriver driver_;
    gps::SendPlan plan_;
    std::vector<std::string> imported_;
};

TEST_F(MissingRecords, RecordIsThereWithinWhatADeviceCanWrite)
{
    constexpr double kUnit = 1e-5 / 60;
    EXPECT_THAT(missing("waypoint", {at(46.5 + 0.5 * kUnit, -7.25 - 0.5 * kUnit)}), IsEmpty());
    EXPECT_THAT(missing("waypoint", {at(46.5 + 2 * kUnit, -7.25)}),
                ElementsAre("The waypoint \"A\" is not on the device."));
    EXPECT_THAT(missing("waypoint", {at(46.5, -7.25 + 2 * kUnit)}), testing::SizeIs(1));
}

TEST_F(MissingRecords, RecordWithoutAPossiblePlaceIsMissing)
{
    EXPECT_THAT(missing("waypoint", {at(96.5, 7)}), testing::SizeIs(1));
    EXPECT_THAT(missing("waypoint", {gps::Dictionary{}, "text"}),
                ElementsAre("The waypoint without a name is not on the device.",
                            "The waypoint without a name is not on the device."));
}

TEST_F(MissingRecords, KindsAreKeptApart)
{
    EXPECT_THAT(missing("track", {gps::Dictionary{{"points", gps::Array{at(46.5, -7.25)}}}}),
                ElementsAre("The track point \"A\" is not on the device."));
    EXPECT_THAT(
        missing("route", {gps::Dictionary{{"points", gps::Array{at(1, 2), at(46.5, -7.25)}}}}),
        testing::SizeIs(1));
}

TEST_F(MissingRecords, FilesThatAreLeftAreNotReadBack)
{
    plan_.files.front().action = Action::kSkip;
    EXPECT_THAT(missing("waypoint", {at(46.5, -7.25)}), testing::SizeIs(1));
    EXPECT_THAT(imported_, IsEmpty());
}

TEST_F(MissingRecords, OfManyTheFirstTenAreNamed)
{
    EXPECT_THAT(missing("waypoint", gps::Array(10, at(0, 0))), testing::SizeIs(10));
    EXPECT_EQ(missing("waypoint", gps::Array(12, at(0, 0))).back(),
              "And 2 more records are not on the device.");
}

} // namespace
