// SPDX-License-Identifier: MIT

#include "host/transfer/SendPreparation.h"

#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <platform/System/FileError.h>

#include <gmock/gmock.h>

namespace {

using Action = gps::PlannedFile::Action;
using host::SendFitting;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kLongName[] = "Long name of a hut"; // the fake device stores ten characters

gps::Dictionary camp(double latitude, const char* name = "Camp")
{
    return {{"name", name}, {"point", gps::GPSPoint{.latitude = latitude, .longitude = 7}}};
}

class SendPreparation : public testing::Test {
protected:
    SendPreparation()
    {
        driver_->plan = [](const gps::Dictionary& data) {
            gps::SendPlan plan;
            plan.files.push_back({"/a", Action::kCreate, "", {}});
            plan.remarks = {data.findString("mark") != nullptr ? *data.findString("mark") : ""};
            return plan;
        };
    }

    [[nodiscard]] host::PreparedSend prepare(std::optional<gps::Dictionary> data,
                                             SendFitting fitting = SendFitting::kAll)
    {
        phases_.clear();
        return host::prepareSend({driver_, "/device"},
                                 {.data = std::move(data),
                                  .fitting = fitting,
                                  .progress = [this](const host::TransferProgress& progress) {
                                      phases_.push_back(progress.phase);
                                  }});
    }

    // The name of the first waypoint after the preparation.
    [[nodiscard]] std::string fittedName(SendFitting fitting)
    {
        const auto send =
            prepare(gps::Dictionary{{"waypoint", gps::Array{camp(46, kLongName)}}}, fitting);
        const auto& waypoint =
            *send.request.data->findArray("waypoint")->front().as<gps::Dictionary>();
        return *waypoint.findString("name");
    }

    std::shared_ptr<support::FakeFileDriver> driver_ = std::make_shared<support::FakeFileDriver>();
    std::vector<host::TransferPhase> phases_;
};

TEST_F(SendPreparation, PlanIsMadeFromTheData)
{
    const auto send = prepare(gps::Dictionary{{"mark", "x"}});
    EXPECT_TRUE(send.canSend);
    EXPECT_TRUE(send.isPlanned());
    EXPECT_THAT(send.plan.files, SizeIs(1));
    EXPECT_THAT(send.plan.remarks, ElementsAre("x"));
    EXPECT_THAT(phases_,
                ElementsAre(host::TransferPhase::kReadingDevice, host::TransferPhase::kFinished));
}

TEST_F(SendPreparation, WithoutDataThereIsNoPlan)
{
    const auto send = prepare(std::nullopt);
    EXPECT_TRUE(send.canSend);
    EXPECT_FALSE(send.isPlanned());
    EXPECT_THAT(phases_, IsEmpty());
}

TEST_F(SendPreparation, DriverThatCannotSendIsNotAskedForAPlan)
{
    driver_->capabilities = "tracks,waypoints";
    const auto send = prepare(gps::Dictionary{});
    EXPECT_FALSE(send.canSend);
    EXPECT_EQ(send.files, nullptr);
    EXPECT_FALSE(send.isPlanned());
}

TEST_F(SendPreparation, DriverWithoutFilesHasNoPlan)
{
    const auto send = host::prepareSend({std::make_shared<support::FakeDriver>(), "/device"},
                                        {.data = gps::Dictionary{}});
    EXPECT_TRUE(send.canSend);
    EXPECT_EQ(send.files, nullptr);
    EXPECT_FALSE(send.isPlanned());
}

TEST_F(SendPreparation, NamesAreFittedOnlyIfEverythingIs)
{
    EXPECT_EQ(fittedName(SendFitting::kNone), kLongName);
    EXPECT_EQ(fittedName(SendFitting::kRoutePoints), kLongName);
    EXPECT_EQ(fittedName(SendFitting::kAll), "Long name");
}

TEST_F(SendPreparation, TextChangesAreReported)
{
    const gps::Dictionary data{{"waypoint", gps::Array{camp(46, kLongName)}}};
    EXPECT_THAT(prepare(data).textChanges, SizeIs(1));
    EXPECT_THAT(prepare(data, SendFitting::kRoutePoints).textChanges, IsEmpty());
}

TEST_F(SendPreparation, RoutePointsOfTheDeviceAreUsedUnlessNothingIsFitted)
{
    const auto routeOf = [](const gps::Dictionary& point) {
        return gps::Array{gps::Dictionary{{"name", "R"}, {"points", gps::Array{point}}}};
    };
    auto timed = camp(46);
    timed.set("point", gps::GPSPoint{.latitude = 46, .longitude = 7, .time = 1});
    driver_->records = {{"route", routeOf(camp(46))}};
    const gps::Dictionary data{{"route", routeOf(timed)}};
    const gps::Dictionary present{{"route", routeOf(camp(46))}};
    EXPECT_EQ(prepare(data, SendFitting::kNone).request.data, data);
    EXPECT_EQ(prepare(data, SendFitting::kRoutePoints).request.data, present);
    EXPECT_EQ(prepare(data, SendFitting::kAll).request.data, present);
}

TEST_F(SendPreparation, WhatCouldNotBeReadIsAnObstacle)
{
    using enum gps::FileErrorCode;
    const gps::Dictionary data{{"mark", "x"}};
    EXPECT_EQ(prepare(data).obstacle, std::nullopt);
    for (const auto code : {kReadNotAscii, kReadNoSuchFile}) {
        driver_->files = {{"/device/a", "", gps::makeFileError(code, "/device/a")}};
        EXPECT_EQ(prepare(data).obstacle, std::nullopt);
    }
    for (const auto code : {kReadUnknown, kReadNoPermission}) {
        driver_->files = {{"/device/a", "", gps::makeFileError(code, "/device/a")}};
        EXPECT_EQ(prepare(data).obstacle, driver_->files[0].error);
    }
    driver_->failures = {gps::makeFileError(kReadUnknown, "/device/unit")};
    EXPECT_EQ(prepare(data).obstacle, driver_->failures[0]);
}

TEST_F(SendPreparation, DeviceIsLockedUntilTheSendEnds)
{
    const support::TemporaryFolder device;
    const auto prepareFor = [&](bool isDryRun) {
        return host::prepareSend({driver_, device.path()},
                                 {.data = gps::Dictionary{}, .isDryRun = isDryRun});
    };
    {
        const auto first = prepareFor(false);
        EXPECT_EQ(first.obstacle, std::nullopt);
        EXPECT_EQ(prepareFor(false).obstacle, host::deviceInUse(device.path()));
        EXPECT_EQ(prepareFor(true).obstacle, std::nullopt);
    }
    EXPECT_EQ(prepareFor(false).obstacle, std::nullopt);
}

TEST_F(SendPreparation, DeviceThatIsADataFolderItselfIsNotLocked)
{
    const support::TemporaryFolder device;
    driver_->folders = {device.path()};
    EXPECT_FALSE(host::prepareSend({driver_, device.path()}, {.data = gps::Dictionary{}}).lock);
}

TEST_F(SendPreparation, OnlyFilesThatAreNotSkippedAreCountedAsWrites)
{
    gps::SendPlan plan;
    EXPECT_EQ(host::plannedWrites(plan), 0U);
    plan.files.push_back({"/a", Action::kCreate, "", {}});
    plan.files.push_back({"/b", Action::kMerge, "", {}});
    plan.files.push_back({"/c", Action::kSkip, "", {}});
    EXPECT_EQ(host::plannedWrites(plan), 2U);
}

} // namespace
