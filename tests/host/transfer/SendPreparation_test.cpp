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
    EXPECT_EQ(fittedName(SendFitting::kRoutePoints), "Long name ") << "as the device cuts it";
    EXPECT_EQ(fittedName(SendFitting::kAll), "Long name");
}

TEST_F(SendPreparation, TextChangesAreReported)
{
    const gps::Dictionary data{{"waypoint", gps::Array{camp(46, kLongName)}}};
    EXPECT_THAT(prepare(data).textChanges, SizeIs(1));
    EXPECT_THAT(prepare(data, SendFitting::kRoutePoints).textChanges, SizeIs(1));
    EXPECT_THAT(prepare(data, SendFitting::kNone).textChanges, IsEmpty());
}

TEST_F(SendPreparation, RoutePointsOfTheDeviceAreUsedUnlessNothingIsFitted)
{
    const auto routeOf = [](const gps::Dictionary& start, const gps::Dictionary& end) {
        return gps::Array{gps::Dictionary{{"name", "R"}, {"points", gps::Array{start, end}}}};
    };
    auto timed = camp(46);
    timed.set("point", gps::GPSPoint{.latitude = 46, .longitude = 7, .time = 1});
    driver_->records = {{"route", routeOf(camp(46), camp(47, "Old"))}};
    const gps::Dictionary data{{"route", routeOf(timed, camp(48, "New"))}};
    const gps::Dictionary fitted{{"route", routeOf(camp(46), camp(48, "New"))}};
    EXPECT_EQ(prepare(data, SendFitting::kNone).request.data, data);
    EXPECT_EQ(prepare(data, SendFitting::kRoutePoints).request.data, fitted);
    EXPECT_EQ(prepare(data, SendFitting::kAll).request.data, fitted);
}

TEST_F(SendPreparation, RecordsThatTheDataHoldsTwiceAreSentOnceUnlessNothingIsFitted)
{
    const gps::Dictionary data{{"waypoint", gps::Array{camp(46), camp(46)}}};
    for (const auto fitting : {SendFitting::kRoutePoints, SendFitting::kAll}) {
        const auto send = prepare(data, fitting);
        EXPECT_EQ(send.repeated, (host::RecordCounts{.waypoints = 1}));
        EXPECT_THAT(*send.request.data->findArray("waypoint"), SizeIs(1));
    }
    const auto asItIs = prepare(data, SendFitting::kNone);
    EXPECT_TRUE(asItIs.repeated.isEmpty());
    EXPECT_THAT(*asItIs.request.data->findArray("waypoint"), SizeIs(2));
}

TEST_F(SendPreparation, RecordsThatWouldBeReplacedAreNamed)
{
    driver_->plan = [](const gps::Dictionary&) {
        return gps::SendPlan{{{"/a", Action::kMerge, "", {}, "waypoints"}}};
    };
    driver_->files = {{"/a", "", {}}};
    driver_->records = {{"waypoint", gps::Array{camp(47), camp(48, "Long name ")}}};
    driver_->decode = [this](std::string_view, std::string_view) { return driver_->records; };
    const auto replaced = [this](const char* name, SendFitting fitting) {
        std::vector<std::string> names;
        for (const auto& record :
             prepare(gps::Dictionary{{"waypoint", gps::Array{camp(46, name)}}}, fitting).replaced)
            names.push_back(record.name);
        return names;
    };
    for (const auto fitting : {SendFitting::kNone, SendFitting::kRoutePoints, SendFitting::kAll})
        EXPECT_THAT(replaced("Camp", fitting), ElementsAre("Camp"));
    EXPECT_THAT(replaced(kLongName, SendFitting::kNone), ElementsAre("Long name "))
        << "as the device stores it";
    EXPECT_THAT(replaced(kLongName, SendFitting::kAll), IsEmpty()) << "it gets another name";
}

// A driver that keeps points that no route uses.
struct RoutePointDriver final : support::FakeFileDriver, gps::GPSUnusedRoutePoints {
    void visitUnusedRoutePointsIn(
        std::string_view path, std::string_view /*content*/,
        const std::function<void(const gps::Dictionary& record)>& visit) const override
    {
        if (path == "/r")
            visit(camp(46, "Stop"));
    }
};

TEST_F(SendPreparation, NamesOfPointsThatNoRouteUsesAreTaken)
{
    const auto pointName = [this](double latitude) {
        const gps::Dictionary route{{"name", "R"}, {"points", gps::Array{camp(latitude, "Stop")}}};
        const auto send = prepare(gps::Dictionary{{"route", gps::Array{route}}});
        const auto& sent = *send.request.data->findArray("route")->front().as<gps::Dictionary>();
        return *sent.findArray("points")->front().as<gps::Dictionary>()->findString("name");
    };
    EXPECT_EQ(pointName(47), "Stop") << "a driver without the interface has none";
    driver_ = std::make_shared<RoutePointDriver>();
    driver_->files = {{"/r", "", {}}};
    EXPECT_EQ(pointName(47), "Stop 2");
    EXPECT_EQ(pointName(46), "Stop") << "the same point";
    driver_->files.front().error = gps::makeFileError(gps::FileErrorCode::kReadNotAscii, "/r");
    EXPECT_EQ(pointName(47), "Stop") << "a file that cannot be read has none";
}

// Two segments of a track, a waypoint and another one that the device holds, and a track that it
// holds.
gps::Dictionary mixedData()
{
    const auto track = [](int segment, double latitude) {
        gps::Dictionary record{{"name", "Day"}};
        if (segment > 0)
            record.set(host::kSegmentKey, segment);
        record.set("points", gps::Array{camp(latitude)});
        return record;
    };
    return {{"waypoint", gps::Array{camp(46, "Hut"), camp(46)}},
            {"track", gps::Array{track(1, 47), track(2, 48), track(0, 49)}}};
}

class PresentData : public SendPreparation {
protected:
    PresentData()
    {
        driver_->records = {{"waypoint", gps::Array{camp(46)}}};
        driver_->tracks = [this](gps::GPSOutputReceiver& status) {
            ++readings_;
            status.newTrack({});
            status.trackPoint({.latitude = 49, .longitude = 7}, {});
        };
    }

    int readings_ = 0;
};

TEST_F(PresentData, IsNotSentAgain)
{
    for (const auto fitting : {SendFitting::kRoutePoints, SendFitting::kAll}) {
        const auto send = prepare(mixedData(), fitting);
        EXPECT_EQ(send.present,
                  (host::RecordCounts{.waypoints = 1, .tracks = 1, .trackPoints = 1}));
        EXPECT_EQ(send.request.data->findArray("waypoint")->size(), 1U);
        EXPECT_EQ(send.request.data->findArray("track")->size(), 2U);
    }
    EXPECT_EQ(readings_, 2);
}

TEST_F(PresentData, IsSentAgainOnRequest)
{
    const auto send =
        host::prepareSend({driver_, "/device"}, {.data = mixedData(), .sendsPresent = true});
    EXPECT_TRUE(send.present.isEmpty());
    EXPECT_EQ(send.request.data->findArray("waypoint")->size(), 2U);
    EXPECT_EQ(send.request.data->findArray("track")->size(), 3U);
    EXPECT_EQ(readings_, 0);
}

TEST_F(PresentData, IsNotLookedForIfNothingIsFitted)
{
    const auto send = prepare(mixedData(), SendFitting::kNone);
    EXPECT_EQ(send.request.data, mixedData());
    EXPECT_TRUE(send.present.isEmpty());
    EXPECT_THAT(send.segmentedTracks, IsEmpty());
    EXPECT_EQ(readings_, 0);
}

TEST_F(PresentData, TracksAreNotReadFromADeviceToWhichNothingMayBeSent)
{
    driver_->failures = {gps::makeFileError(gps::FileErrorCode::kReadUnknown, "/device/unit")};
    EXPECT_TRUE(prepare(mixedData()).obstacle);
    EXPECT_EQ(readings_, 0);
}

TEST_F(SendPreparation, SegmentsBecomeTracksUnlessTheyAreJoined)
{
    const auto split = prepare(mixedData());
    EXPECT_THAT(split.segmentedTracks, ElementsAre(host::SegmentedTrack{"Day", 2}));
    EXPECT_EQ(split.request.data->findArray("track")->size(), 3U);
    const auto joined = host::prepareSend(
        {driver_, "/device"}, {.data = mixedData(), .segmentRule = host::SegmentRule::kJoin});
    EXPECT_THAT(joined.segmentedTracks, ElementsAre(host::SegmentedTrack{"Day", 2}));
    EXPECT_EQ(joined.request.data->findArray("track")->size(), 2U);
}

TEST_F(SendPreparation, ExactNamesThatBecomeOneAreAnObstacle)
{
    const gps::Dictionary data{
        {"waypoint", gps::Array{camp(46, "Long name 1"), camp(47, "Long name 2")}}};
    const auto send = prepare(data, SendFitting::kRoutePoints);
    ASSERT_TRUE(send.obstacle);
    EXPECT_EQ(send.obstacle->description(), "The waypoints \"Long name 1\" and \"Long name 2\" "
                                            "would both be stored as \"Long name \"");
    EXPECT_FALSE(prepare(data, SendFitting::kAll).obstacle);
    EXPECT_FALSE(prepare(data, SendFitting::kNone).obstacle);
}

TEST_F(SendPreparation, RecordThatNoPlannedFileHoldsIsAnObstacleForExactNamesOnly)
{
    const gps::Dictionary data{{"waypoint", gps::Array{camp(46)}}};
    const auto send = prepare(data, SendFitting::kRoutePoints);
    ASSERT_TRUE(send.obstacle);
    EXPECT_EQ(send.obstacle->description(), "The waypoint \"Camp\" would not be on the device, "
                                            "because another one would get its name");
    EXPECT_FALSE(prepare(data, SendFitting::kAll).obstacle);
    driver_->plan = [](const gps::Dictionary&) {
        return gps::SendPlan{{{"/a", Action::kSkip, "", {}}}};
    };
    EXPECT_FALSE(prepare(data, SendFitting::kRoutePoints).obstacle) << "it cannot be written";
}

TEST_F(SendPreparation, RecordsWithoutPointsAreLeftOutUnlessNothingIsFitted)
{
    const gps::Dictionary data{{"track", gps::Array{gps::Dictionary{{"name", "T"}}}}};
    const auto send = prepare(data, SendFitting::kRoutePoints);
    EXPECT_EQ(send.request.data, gps::Dictionary{});
    EXPECT_EQ(send.leftOut(), host::RecordCounts{.tracks = 1});
    const auto exact = prepare(data, SendFitting::kNone);
    EXPECT_EQ(exact.request.data, data);
    EXPECT_EQ(exact.leftOut(), host::RecordCounts{});
}

TEST_F(SendPreparation, SegmentsAreFittedEvenWithoutAPlan)
{
    const auto send = host::prepareSend({std::make_shared<support::FakeDriver>(), "/device"},
                                        {.data = mixedData()});
    EXPECT_THAT(send.segmentedTracks, SizeIs(1));
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
