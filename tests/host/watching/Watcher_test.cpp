// SPDX-License-Identifier: MIT

#include "host/watching/Watcher.h"

#include "host/FakeDriver.h"
#include "support/Signals.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <thread>

#include <unistd.h>

namespace {

using gps::TransferKind;
using host::OutputReport;
using host::Watcher;
using host::WatchEvent;
using support::FakeDriver;
using support::FakeFileDriver;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = host::WatchEvent::Kind;
using Status = gps::GPSPlugInProtocol::Status;

FakeDriver::Acquire delivering(const char* name)
{
    return [name](const Status& status, const gps::Dictionary&) -> std::optional<gps::Error> {
        for (const auto kind :
             {TransferKind::kWaypoints, TransferKind::kRoutes, TransferKind::kTracks}) {
            status->startTransfer(kind);
            if (kind == TransferKind::kWaypoints && *name != '\0')
                status->wayPoint({46, 7, 0, 0, 0}, {{"name", name}});
            status->endTransfer(kind);
        }
        status->gpsStateChange(0);
        return std::nullopt;
    };
}

/// Delivers a waypoint, but not the other kinds.
std::optional<gps::Error> breakingOff(const Status& status, const gps::Dictionary&)
{
    status->startTransfer(TransferKind::kWaypoints);
    status->wayPoint({46, 7, 0, 0, 0}, {{"name", "A"}});
    status->endTransfer(TransferKind::kWaypoints);
    status->gpsStateChange(0);
    return std::nullopt;
}

class WatcherTest : public testing::Test {
protected:
    WatcherTest()
    {
        request_.folder = folder_.path("out");
        request_.format = host::findFormat("gpx");
        driver_->acquire = delivering("A");
        driver_->setLocations({"/media/A"});
    }

    Watcher watcher()
    {
        return Watcher{{.drivers = drivers_}, request_, [this](const WatchEvent& event) {
                           events_.push_back(event);
                           return isGoingOn_;
                       }};
    }

    /// What one more look reports.
    std::vector<WatchEvent> look(Watcher& watcher)
    {
        events_.clear();
        watcher.look();
        return events_;
    }

    static std::vector<Kind> kindsOf(const std::vector<WatchEvent>& events)
    {
        std::vector<Kind> kinds;
        for (const auto& event : events)
            kinds.push_back(event.kind);
        return kinds;
    }

    /// The report of the only download in these events.
    static const host::DownloadReport& reportIn(const std::vector<WatchEvent>& events)
    {
        EXPECT_EQ(events.back().kind, Kind::kDownloaded);
        return events.back().report;
    }

    [[nodiscard]] std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator{folder_.path("out"), ignored})
            names.push_back(entry.path().filename().string());
        return names;
    }

    support::TemporaryFolder folder_;
    std::shared_ptr<FakeFileDriver> driver_ = std::make_shared<FakeFileDriver>();
    std::vector<host::Driver> drivers_{driver_};
    host::WatchRequest request_;
    std::vector<WatchEvent> events_;
    bool isGoingOn_ = true;
};

TEST_F(WatcherTest, DeviceIsSavedOnceWhileItStaysAndAgainWhenItComesBack)
{
    auto watcher = this->watcher();
    auto events = look(watcher);
    EXPECT_THAT(kindsOf(events), ElementsAre(Kind::kAppeared, Kind::kDownloaded));
    EXPECT_EQ(events[0].device.location, "/media/A");
    EXPECT_TRUE(reportIn(events).succeeded());
    EXPECT_EQ(reportIn(events).operations[0].location, "/media/A");
    EXPECT_THAT(look(watcher), IsEmpty());
    driver_->setLocations({});
    EXPECT_THAT(kindsOf(look(watcher)), ElementsAre(Kind::kGone));
    driver_->setLocations({"/media/A"});
    EXPECT_THAT(kindsOf(look(watcher)), ElementsAre(Kind::kAppeared, Kind::kDownloaded));
}

TEST_F(WatcherTest, LookReturnsWhetherADeviceAppeared)
{
    auto watcher = this->watcher();
    EXPECT_TRUE(watcher.look());
    EXPECT_FALSE(watcher.look());
}

TEST_F(WatcherTest, FileIsNamedByTheDeviceAndTheTime)
{
    auto watcher = this->watcher();
    const auto report = reportIn(look(watcher));
    EXPECT_THAT(report.output.path,
                testing::MatchesRegex(folder_.path("out") + "/42-[0-9]{8}T[0-9]{6}Z[.]gpx"));
    EXPECT_TRUE(std::filesystem::exists(report.output.path));
}

TEST_F(WatcherTest, DeviceWithoutASerialNumberIsNamedByItsLocation)
{
    driver_->identifier.reset();
    driver_->setLocations({"/media/My GPS"});
    auto watcher = this->watcher();
    EXPECT_THAT(reportIn(look(watcher)).output.path, testing::HasSubstr("/out/My_GPS-"));
}

TEST_F(WatcherTest, DevicesWithOneIdentifierGetFilesOfTheirOwn)
{
    driver_->setLocations({"/media/A", "/media/B"});
    auto watcher = this->watcher();
    EXPECT_THAT(kindsOf(look(watcher)), ElementsAre(Kind::kAppeared, Kind::kAppeared,
                                                    Kind::kDownloaded, Kind::kDownloaded));
    EXPECT_THAT(files(), SizeIs(2));
    EXPECT_EQ(driver_->picked, 1U) << "each device is selected before its download";
}

TEST_F(WatcherTest, DeviceWithoutRecordsMakesNoFile)
{
    driver_->acquire = delivering("");
    auto watcher = this->watcher();
    const auto report = reportIn(look(watcher));
    EXPECT_TRUE(report.succeeded());
    EXPECT_EQ(report.output.state, OutputReport::State::kNone);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(WatcherTest, FailedDownloadIsTriedAgainAndKeptPartiallyOnlyInTheEnd)
{
    driver_->acquire = breakingOff;
    auto watcher = this->watcher();
    for (std::size_t tries = 1; tries < Watcher::kMostTries; ++tries) {
        const auto events = look(watcher);
        EXPECT_TRUE(events.back().isRetried);
        EXPECT_EQ(reportIn(events).output.state, OutputReport::State::kNone);
        EXPECT_THAT(files(), IsEmpty());
    }
    const auto events = look(watcher);
    EXPECT_FALSE(events.back().isRetried);
    EXPECT_EQ(reportIn(events).output.state, OutputReport::State::kPartial);
    EXPECT_THAT(files(), SizeIs(1));
    EXPECT_THAT(look(watcher), IsEmpty());
}

TEST_F(WatcherTest, DownloadThatSucceedsInTheEndIsComplete)
{
    driver_->acquire = breakingOff;
    auto watcher = this->watcher();
    (void)look(watcher);
    driver_->acquire = delivering("A");
    const auto events = look(watcher);
    EXPECT_TRUE(reportIn(events).succeeded());
    EXPECT_THAT(files(), SizeIs(1));
}

TEST_F(WatcherTest, FolderThatCannotBeCreatedIsAnErrorAndTriedAgain)
{
    request_.folder = "/proc/none";
    auto watcher = this->watcher();
    const auto events = look(watcher);
    EXPECT_TRUE(events.back().error);
    EXPECT_TRUE(events.back().isRetried);
    EXPECT_THAT(events.back().report.operations, IsEmpty());
}

TEST_F(WatcherTest, FolderThatWasRemovedMeanwhileIsCreatedAgain)
{
    auto watcher = this->watcher();
    EXPECT_TRUE(reportIn(look(watcher)).succeeded()) << "nobody made the folder before";
}

TEST_F(WatcherTest, DeviceThatMayNotBeReadIsReportedButNotRead)
{
    driver_->devices =
        gps::Array{gps::Dictionary{{"location", "/media/A"}, {"name", "A"}, {"authorized", false}}};
    auto watcher = this->watcher();
    const auto events = look(watcher);
    EXPECT_THAT(kindsOf(events), ElementsAre(Kind::kAppeared));
    EXPECT_FALSE(events[0].device.isReadable);
}

TEST_F(WatcherTest, OnlyNewRecordsAreSavedIfKnownOnesAreRemembered)
{
    request_.knownRecordsFolder = folder_.path("known");
    auto watcher = this->watcher();
    EXPECT_EQ(reportIn(look(watcher)).written.waypoints, 1U);
    EXPECT_TRUE(std::filesystem::exists(folder_.path("known/42.txt")));

    auto second = this->watcher();
    auto report = reportIn(look(second));
    EXPECT_EQ(report.received.waypoints, 1U);
    EXPECT_TRUE(report.written.isEmpty());
    EXPECT_EQ(report.output.state, OutputReport::State::kNone);

    driver_->acquire = delivering("B");
    auto third = this->watcher();
    EXPECT_EQ(reportIn(look(third)).written.waypoints, 1U);
}

TEST_F(WatcherTest, RecordsOfAPartialFileAreNotRemembered)
{
    request_.knownRecordsFolder = folder_.path("known");
    driver_->acquire = breakingOff;
    auto watcher = this->watcher();
    for (std::size_t tries = 0; tries < Watcher::kMostTries; ++tries)
        (void)look(watcher);
    EXPECT_THAT(files(), SizeIs(1));
    EXPECT_FALSE(std::filesystem::exists(folder_.path("known/42.txt")));
}

TEST_F(WatcherTest, DamagedListIsReportedBeforeTheDownload)
{
    request_.knownRecordsFolder = folder_.path("known");
    folder_.put("known/42.txt", "damage");
    auto watcher = this->watcher();
    const auto events = look(watcher);
    EXPECT_THAT(kindsOf(events),
                ElementsAre(Kind::kAppeared, Kind::kListUnusable, Kind::kDownloaded));
    EXPECT_TRUE(events[1].error);
    EXPECT_EQ(reportIn(events).written.waypoints, 1U);
}

TEST_F(WatcherTest, ListThatCannotBeReadIsReportedOnceAndEverythingIsSaved)
{
    request_.knownRecordsFolder = folder_.path("known");
    folder_.makeFolder("known/42.txt");
    auto watcher = this->watcher();
    const auto events = look(watcher);
    EXPECT_THAT(kindsOf(events),
                ElementsAre(Kind::kAppeared, Kind::kListUnusable, Kind::kDownloaded));
    EXPECT_TRUE(events[1].error);
    EXPECT_EQ(reportIn(events).written.waypoints, 1U);
    EXPECT_FALSE(events.back().error);
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("known/42.txt")));
}

TEST_F(WatcherTest, ListThatCannotBeWrittenIsAnErrorBesideTheFile)
{
    request_.knownRecordsFolder = "/proc/none";
    auto watcher = this->watcher();
    const auto events = look(watcher);
    EXPECT_EQ(reportIn(events).output.state, OutputReport::State::kComplete);
    EXPECT_TRUE(events.back().error);
}

TEST_F(WatcherTest, SerialPortsAreAskedOnlyOnRequestAndOnce)
{
    driver_->serial = true;
    auto without = watcher();
    EXPECT_THAT(look(without), IsEmpty());

    request_.isSerialIncluded = true;
    auto with = watcher();
    const auto events = look(with);
    EXPECT_THAT(kindsOf(events), ElementsAre(Kind::kAppeared, Kind::kDownloaded));
    EXPECT_EQ(reportIn(events).operations[0].voice, gps::LineVoice::kNothing);
    EXPECT_FALSE(events.back().isRetried);
    EXPECT_THAT(look(with), IsEmpty());
}

TEST_F(WatcherTest, NamedDriverIsTheOnlyOneThatIsWatched)
{
    const auto other = std::make_shared<FakeFileDriver>();
    other->name = "Other";
    other->setLocations({"/media/O"});
    drivers_.push_back(other);
    request_.driver = "other";
    auto watcher = this->watcher();
    const auto events = look(watcher);
    EXPECT_THAT(kindsOf(events), ElementsAre(Kind::kAppeared, Kind::kDownloaded));
}

TEST_F(WatcherTest, NothingIsReadAfterTheCallbackHasEndedIt)
{
    isGoingOn_ = false;
    auto watcher = this->watcher();
    EXPECT_THAT(kindsOf(look(watcher)), ElementsAre(Kind::kAppeared));
}

TEST_F(WatcherTest, SignalStopsTheRunningDownloadAndKeepsWhatCame)
{
    const support::DefaultSignals defaults;
    const auto driver = std::make_shared<support::AccountingDriver>();
    driver->setLocations({"/media/B"});
    driver->acquire = [&](const Status& status,
                          const gps::Dictionary&) -> std::optional<gps::Error> {
        status->startTransfer(TransferKind::kWaypoints);
        status->wayPoint({46, 7, 0, 0, 0}, {{"name", "A"}});
        ::kill(::getpid(), SIGTERM);
        while (!driver->isStopRequested)
            std::this_thread::yield();
        status->gpsStateChange(0);
        return std::nullopt;
    };
    drivers_ = {driver};
    const host::StopSignals stop;
    auto watcher = this->watcher();
    EXPECT_FALSE(watcher.run(stop));
    EXPECT_TRUE(reportIn(events_).isInterrupted());
    EXPECT_FALSE(events_.back().isRetried);
    EXPECT_EQ(reportIn(events_).output.state, OutputReport::State::kPartial);
    EXPECT_THAT(files(), ElementsAre(testing::EndsWith(".partial.gpx")));
}

TEST_F(WatcherTest, RunEndsWhenTheCallbackSaysSo)
{
    isGoingOn_ = false;
    request_.driver = "missing";
    const host::StopSignals stop;
    EXPECT_EQ(watcher().run(stop), std::nullopt);
    EXPECT_THAT(kindsOf(events_), ElementsAre(Kind::kStarted, Kind::kDriverMissing));
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path("out")));
}

TEST_F(WatcherTest, RunNeedsItsFolder)
{
    request_.folder = "/proc/none";
    const host::StopSignals stop;
    EXPECT_TRUE(watcher().run(stop));
    EXPECT_THAT(events_, IsEmpty());
}

} // namespace
