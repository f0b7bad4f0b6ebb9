// SPDX-License-Identifier: MIT
// Downloads from a receiver's folders: order, options, failures, and the start of the worker.

#include "SampleSentences.h"

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/ActingReceiver.h>
#include <support/LogCapture.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace magellan {
namespace {

using support::kGeoCache;
using support::kTrackPoint;
using support::kWayPoint;
using support::sentence;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

using Calls = std::vector<std::string>;

const std::string kRoute = sentence("PMGNRTE,1,1,c,1,R,A,a");

constexpr char kWayPointCall[] =
    "wayPoint (46, 7.5, 500, 0, 0) {name = \"A\", comment = \"\", symbol = \"Residence\"}";
constexpr char kTrackCall[] = "newTrack {name = \"T\"}";
constexpr char kTrackPointCall[] = "trackPoint (46, 7.5, 500, 1204286400, 0) {trackName = \"T\"}";

/// The calls of a download without any records.
const Calls kFourEmptyKinds{"gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                            "startTransfer 3",  "endTransfer 3",   "startTransfer 2",
                            "endTransfer 2",    "startTransfer 1", "endTransfer 1",
                            "gpsStateChange 0"};

class AcquireDriverTest : public testing::Test {
protected:
    AcquireDriverTest() { receiver_.unitFile("12345"); }

    /// One record of each kind.
    void fill() const
    {
        receiver_.put("My POIs/a.upt", {kWayPoint});
        receiver_.put("Geocaches/g.gs", {kGeoCache});
        receiver_.put("Routes/r.rte", {kWayPoint, kRoute});
        receiver_.put("Track Logs/t.log", {kTrackPoint});
    }

    /// A driver with the receiver selected.
    [[nodiscard]] static std::shared_ptr<MagellanGPSPlugin> makeDriver()
    {
        return MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    }

    /// The calls of an acquire, from start to end.
    Calls acquire(const gps::Dictionary& options = {})
    {
        status_ = std::make_shared<support::RecordingReceiver>();
        EXPECT_EQ(makeDriver()->gpsRunAcquire(status_, options), std::nullopt);
        EXPECT_TRUE(status_->waitUntilIdle());
        return status_->calls();
    }

    /// Only the calls that begin or end something.
    Calls brackets(const gps::Dictionary& options = {})
    {
        Calls calls;
        for (auto& call : acquire(options)) {
            if (call.find("ransfer") != std::string::npos ||
                call.find("State") != std::string::npos)
                calls.push_back(std::move(call));
        }
        return calls;
    }

    support::ReceiverFolder receiver_;
    support::TestFolders folders_{{receiver_.path()}};
    std::shared_ptr<support::RecordingReceiver> status_ =
        std::make_shared<support::RecordingReceiver>();
};

TEST_F(AcquireDriverTest, AllKindsAreReadInTheirOrderEachBetweenItsPairOfCalls)
{
    fill();
    EXPECT_THAT(acquire(),
                ElementsAre("gpsStateChange 1", "startTransfer 3", kWayPointCall, "endTransfer 3",
                            "startTransfer 3",
                            "wayPoint (46, 7.5, 500, 0, 0) {name = \"G\", comment = \"\", "
                            "geocacheOwner = \"\", geocacheHint = \"\", "
                            "geocacheType = \"\", "
                            "datePlaced = \"\", dateFound = \"\", difficulty = \"\", terrain = "
                            "\"\", symbol = \"Geocache\"}",
                            "endTransfer 3", "startTransfer 2",
                            "newRoute {name = \"R\", lastIndex = 1}",
                            "wayPoint (46, 7.5, 500, 0, 0) {name = \"A\", comment = \"\", symbol = "
                            "\"Residence\", point = (46, 7.5, 500, 0, 0)}",
                            "endTransfer 2", "startTransfer 1", kTrackCall, kTrackPointCall,
                            "endTransfer 1", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, FilesOfAKindAreReadInByteOrderOfTheirPathsWhateverTheirExtension)
{
    receiver_.put("Track Logs/b",
                  {sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,2,290208")});
    receiver_.put("Track Logs/a/x.txt",
                  {sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,1,290208")});
    receiver_.put("Track Logs/B.log",
                  {sentence("PMGNTRK,4600.000,N,00730.000,E,00500,M,120000,A,0,290208")});
    receiver_.put("Track Logs/.hidden.log", {kTrackPoint});
    Calls tracks;
    for (auto& call : acquire()) {
        if (call.rfind("newTrack", 0) == 0)
            tracks.push_back(std::move(call));
    }
    EXPECT_THAT(tracks, ElementsAre("newTrack {name = \"0\"}", "newTrack {name = \"1\"}",
                                    "newTrack {name = \"2\"}"));
}

TEST_F(AcquireDriverTest, FalseWaypointsSwitchOffOnlyWaypointsAndGeocaches)
{
    fill();
    EXPECT_THAT(brackets({{"waypoints", false}}),
                ElementsAre("gpsStateChange 1", "startTransfer 2", "endTransfer 2",
                            "startTransfer 1", "endTransfer 1", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, EachKindHasItsSwitch)
{
    EXPECT_THAT(brackets({{"routes", 0}, {"tracks", "no"}}),
                ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                            "startTransfer 3", "endTransfer 3", "gpsStateChange 0"));
    EXPECT_THAT(brackets({{"waypoints", 0}, {"routes", false}, {"tracks", 0.0}}),
                ElementsAre("gpsStateChange 1", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, ASwitchThatIsNeitherANumberNorATextCountsAsAbsent)
{
    EXPECT_EQ(brackets({{"waypoints", gps::Array{}},
                        {"routes", gps::Dictionary{}},
                        {"tracks", gps::GPSPoint{}}}),
              kFourEmptyKinds);
}

TEST_F(AcquireDriverTest, AnAbsentSwitchMeansOn)
{
    EXPECT_EQ(brackets({{"tracks", true}}), kFourEmptyKinds);
    EXPECT_EQ(brackets({{"geocaches", false}}), kFourEmptyKinds);
    EXPECT_EQ(brackets({{"waypoints", 7}, {"routes", "YES"}}), kFourEmptyKinds);
}

TEST_F(AcquireDriverTest, AMissingDataFolderIsAnnouncedAndYieldsNothing)
{
    EXPECT_EQ(acquire(), kFourEmptyKinds);
}

TEST_F(AcquireDriverTest, AFirstWaypointFileThatCannotBeReadEndsTheAcquireAfterItsPairOfCalls)
{
    fill();
    receiver_.folder().put("My POIs/0.upt", "\xC3\xA9");
    const support::LogCapture log;
    EXPECT_THAT(acquire(), ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                                       "gpsStateChange 0"));
    ASSERT_THAT(log.errors(), SizeIs(1));
    EXPECT_EQ(log.errors().front().code(), -3);
}

TEST_F(AcquireDriverTest, AFolderAmongTheWaypointFilesEndsTheAcquireAndOneAmongTheTracksDoesNot)
{
    fill();
    receiver_.folder().makeFolder("My POIs/b");
    EXPECT_THAT(acquire(), ElementsAre("gpsStateChange 1", "startTransfer 3", kWayPointCall,
                                       "endTransfer 3", "gpsStateChange 0"));
    std::filesystem::remove(receiver_.path("My POIs/b"));
    receiver_.folder().makeFolder("Track Logs/sub");
    receiver_.folder().makeFolder("Routes/sub");
    EXPECT_EQ(brackets(), kFourEmptyKinds);
}

TEST_F(AcquireDriverTest,
       AFifoAmongTheWaypointFilesEndsTheAcquireAtOnceAndOneAmongTheTracksIsSkipped)
{
    fill();
    ASSERT_EQ(::mkfifo(receiver_.path("Track Logs/a").c_str(), 0600), 0);
    EXPECT_THAT(acquire(), Contains(kTrackPointCall));
    ASSERT_EQ(::mkfifo(receiver_.path("Geocaches/a").c_str(), 0600), 0);
    EXPECT_THAT(brackets(), ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                                        "startTransfer 3", "endTransfer 3", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, ALoopOfLinksEnds)
{
    fill();
    std::filesystem::create_directory_symlink(receiver_.path("Track Logs"),
                                              receiver_.path("Track Logs/loop"));
    std::filesystem::create_symlink("self", receiver_.path("Track Logs/self"));
    EXPECT_THAT(acquire(), Contains(kTrackPointCall).Times(1));
}

TEST_F(AcquireDriverTest, ASentenceThatIsTooShortEndsTheAcquireAsAReadErrorDoes)
{
    fill();
    receiver_.put("Routes/a.rte", {sentence("PMGNRTE,1,1")});
    const support::LogCapture log;
    EXPECT_THAT(brackets(), ElementsAre("gpsStateChange 1", "startTransfer 3", "endTransfer 3",
                                        "startTransfer 3", "endTransfer 3", "startTransfer 2",
                                        "endTransfer 2", "gpsStateChange 0"));
    ASSERT_THAT(log.errors(), SizeIs(1));
    EXPECT_EQ(log.errors().front().path(), receiver_.path("Routes/a.rte"));
}

TEST_F(AcquireDriverTest, PointsBeforeATruncatedSentenceAreReported)
{
    receiver_.put("Track Logs/t.log", {kTrackPoint, sentence("PMGNTRK")});
    EXPECT_THAT(acquire(), Contains(kTrackPointCall));
    EXPECT_EQ(status_->calls().back(), "gpsStateChange 0");
}

TEST_F(AcquireDriverTest, TheLanguageFileNamesTheFolders)
{
    receiver_.languageFile({"MyPOIs=Orte/alle", "TrackLogs=Spuren"});
    receiver_.put("Orte/alle/a.upt", {kWayPoint});
    receiver_.put("Spuren/t.log", {kTrackPoint});
    receiver_.put("Track Logs/t.log", {kTrackPoint});
    EXPECT_THAT(acquire(),
                ElementsAre("gpsStateChange 1", "startTransfer 3", kWayPointCall, "endTransfer 3",
                            "startTransfer 3", "endTransfer 3", "startTransfer 2", "endTransfer 2",
                            "startTransfer 1", kTrackCall, kTrackPointCall, "endTransfer 1",
                            "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, AKindWhoseFolderKeyIsMissingYieldsNothing)
{
    fill();
    receiver_.put("stray.upt", {kWayPoint});
    receiver_.languageFile({"Language=English"});
    EXPECT_EQ(acquire(), kFourEmptyKinds);
}

TEST_F(AcquireDriverTest, AFolderNameThatIsEmptyOrLeadsOutOfTheVolumeYieldsNothing)
{
    const support::TemporaryFolder outside;
    outside.put("a.upt", kWayPoint);
    receiver_.put("stray.upt", {kWayPoint});
    const auto name = "../" + std::filesystem::path{outside.path()}.filename().string();
    receiver_.languageFile(
        {"MyPOIs=" + name, "Geocaches=", "Routes=..", "TrackLogs=Routes/../../x"});
    EXPECT_EQ(acquire(), kFourEmptyKinds);
}

TEST_F(AcquireDriverTest, AFolderNameThatLeadsOutOfTheVolumeAtANulByteYieldsNothing)
{
    const support::TemporaryFolder outside;
    outside.put("a.upt", kWayPoint + "\r\n");
    outside.put("GPS/USBTRANS/UNIT_ID.DAT", "Serial Number=1\r\n");
    outside.put("GPS/USBTRANS/LANGUAGE.DAT", std::string_view{"MyPOIs=..\0\r\n", 12});
    support::TestFolders::set({outside.path("GPS")});
    EXPECT_EQ(acquire(), kFourEmptyKinds);
}

TEST_F(AcquireDriverTest, AFolderNameThatBeginsWithASlashIsBelowTheVolume)
{
    receiver_.languageFile({"MyPOIs=/x", "TrackLogs=/" + receiver_.path()});
    receiver_.put("x/a.upt", {kWayPoint});
    EXPECT_THAT(acquire(), Contains(kWayPointCall).Times(1));
    EXPECT_THAT(status_->calls(), Not(Contains(StartsWith("newTrack"))));
}

TEST_F(AcquireDriverTest, ADataFolderThatIsAFileYieldsNothingAndIsLogged)
{
    receiver_.put("My POIs", {kWayPoint});
    const support::LogCapture log;
    EXPECT_EQ(acquire(), kFourEmptyKinds);
    EXPECT_THAT(log.lines(), SizeIs(1));
}

TEST_F(AcquireDriverTest, TheWorkerIsASingleThreadOtherThanTheHosts)
{
    fill();
    (void)acquire();
    EXPECT_THAT(status_->threads(), SizeIs(1));
    EXPECT_THAT(status_->threads(), Not(Contains(std::this_thread::get_id())));
}

/// A host that blocks the worker in its first call.
class HeldReceiver : public support::RecordingReceiver {
public:
    void gpsStateChange(std::int32_t state) override
    {
        if (state == 1) {
            std::unique_lock lock{mutex_};
            (void)released_.wait_for(lock, std::chrono::seconds{30},
                                     [this] { return isReleased_; });
        }
        RecordingReceiver::gpsStateChange(state);
    }

    void release()
    {
        const std::lock_guard lock{mutex_};
        isReleased_ = true;
        released_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable released_;
    bool isReleased_ = false;
};

TEST_F(AcquireDriverTest, TheWorkerKeepsTheDriverAliveAndFinishesWhateverTheHostDoes)
{
    fill();
    const auto status = std::make_shared<HeldReceiver>();
    auto driver = makeDriver();
    const std::weak_ptr<MagellanGPSPlugin> alive = driver;
    ASSERT_EQ(driver->gpsRunAcquire(status, {}), std::nullopt);
    EXPECT_THAT(status->calls(), IsEmpty()); // it returned at once
    driver->gpsCancel();
    driver->setFsDevice(std::nullopt);
    support::TestFolders::set({});
    EXPECT_FALSE(driver->refreshDeviceList());
    driver.reset();
    EXPECT_FALSE(alive.expired());
    status->release();
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(), Contains(kTrackPointCall));
    EXPECT_THAT(status->calls(), Contains(kWayPointCall));
}

/// A host whose receiver is unplugged at the first waypoint.
class PullingReceiver : public support::RecordingReceiver {
public:
    explicit PullingReceiver(std::string volume) : volume_(std::move(volume)) {}

    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override
    {
        std::filesystem::remove_all(volume_);
        RecordingReceiver::wayPoint(point, extra);
    }

private:
    std::string volume_;
};

TEST_F(AcquireDriverTest, AVolumeThatVanishesInTheMiddleEndsTheAcquire)
{
    fill();
    receiver_.put("My POIs/b.upt", {kWayPoint});
    const auto status = std::make_shared<PullingReceiver>(receiver_.path());
    ASSERT_EQ(makeDriver()->gpsRunAcquire(status, {}), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 1", "startTransfer 3", kWayPointCall,
                                             "endTransfer 3", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, WithoutADeviceErrorMinusOneIsReturnedAndTheOnlyCallIsIdle)
{
    support::TestFolders::set({});
    const support::LogCapture log;
    const auto error = makeDriver()->gpsRunAcquire(status_, {});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), "com.Orvane.GPSPlugin.ErrorDomain");
    EXPECT_EQ(error->code(), -1);
    EXPECT_EQ(error->description(), "No location was selected for Magellan device");
    EXPECT_EQ(error->suggestion(), "Please make sure your Magellan device is connected and mounted "
                                   "on the desktop, and try again");
    EXPECT_EQ(error->path(), std::nullopt);
    EXPECT_THAT(status_->calls(), ElementsAre("gpsStateChange 0"));
    EXPECT_THAT(status_->threads(), ElementsAre(std::this_thread::get_id()));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(AcquireDriverTest, ADeviceRecordWithoutALocationIsNotADevice)
{
    const auto driver = makeDriver();
    driver->setFsDevice(gps::Dictionary{{"name", "Magellan device 1"}, {"authorized", true}});
    const auto error = driver->gpsRunAcquire(status_, {});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), -1);
    driver->setFsDevice(gps::Dictionary{{"location", 7}});
    EXPECT_TRUE(driver->gpsRunAcquire(status_, {}));
    EXPECT_THAT(status_->calls(), ElementsAre("gpsStateChange 0", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, ASetUpErrorIsLoggedIfTheDebugLevelIsNotZero)
{
    support::TestFolders::set({});
    const support::LogCapture log;
    const auto error = makeDriver()->gpsRunAcquire(status_, {{"debug", 1}});
    ASSERT_TRUE(error);
    const auto logLine = "MagellanGPSPlugin: " + error->text();
    EXPECT_THAT(log.lines(), ElementsAre(logLine));
    (void)makeDriver()->gpsRunAcquire(status_, {{"debug", -1}});
    EXPECT_THAT(log.lines(), ElementsAre(logLine, logLine));
    (void)makeDriver()->gpsRunAcquire(status_, {{"debug", 0}});
    EXPECT_THAT(log.lines(), SizeIs(2));
}

TEST_F(AcquireDriverTest, ADebugOptionOfZeroResetsTheLevelAndAnAbsentOneKeepsIt)
{
    support::TestFolders::set({});
    const auto driver = makeDriver();
    EXPECT_EQ(driver->debugLevel(), 0);
    const auto levelAfter = [&](const gps::Dictionary& options) {
        (void)driver->gpsRunAcquire(status_, options);
        return driver->debugLevel();
    };
    EXPECT_EQ(levelAfter({{"debug", 3}}), 3);
    EXPECT_EQ(levelAfter({}), 3);
    EXPECT_EQ(levelAfter({{"debug", "2"}}), 2);
    EXPECT_EQ(levelAfter({{"debug", gps::Array{}}}), 2) << "neither a number nor a text";
    EXPECT_EQ(levelAfter({{"debug", 0}}), 0);
    EXPECT_EQ(levelAfter({{"debug", -1}, {"sourcePath", "x"}}), -1);
}

/// Makes the set-up accessible.
class OpenDriver : public MagellanGPSPlugin {
public:
    using MagellanGPSPlugin::setUpDictionaryForThreadingFromOptions;
};

TEST_F(AcquireDriverTest, TheWorkDictionaryIsTheOptionsWithFoldersAndTargetPathReplaced)
{
    receiver_.languageFile({"Routes=Wege"});
    OpenDriver driver;
    driver.setFsDevice(gps::Dictionary{{"location", receiver_.path()}});
    gps::Dictionary work;
    EXPECT_EQ(
        driver.setUpDictionaryForThreadingFromOptions(
            {{"folders", "the host's"}, {"targetPath", 7}, {"tracks", false}, {"own", "x"}}, work),
        std::nullopt);
    EXPECT_EQ(work, (gps::Dictionary{{"folders", gps::Dictionary{{"Routes", "Wege"}}},
                                     {"targetPath", receiver_.path()},
                                     {"tracks", false},
                                     {"own", "x"}}));
}

TEST_F(AcquireDriverTest, TheWorkDictionaryIsUntouchedAfterAFailedSetUp)
{
    const OpenDriver driver;
    gps::Dictionary work{{"old", 1}};
    EXPECT_TRUE(driver.setUpDictionaryForThreadingFromOptions({{"own", "x"}}, work));
    EXPECT_EQ(gps::describe(work), "{old = 1}");
}

TEST_F(AcquireDriverTest, HostOptionsNamedAsWorkKeysDoNotReachTheWorker)
{
    fill();
    EXPECT_THAT(acquire({{"folders", 7}, {"targetPath", 7}, {"output", 7}}),
                Contains(kTrackPointCall));
}

TEST_F(AcquireDriverTest, ASecondAcquireReadsAnew)
{
    fill();
    const auto first = acquire();
    EXPECT_EQ(acquire(), first);
}

/// A host whose status object throws in one call. Its calls are available once the worker has let
/// go of it.
class ThrowingHost {
public:
    explicit ThrowingHost(const std::string& call, const std::function<void()>& raise)
        : status_{new support::ActingReceiver{call, raise},
                  [this](const support::ActingReceiver* status) {
                      calls_.set_value(status->calls());
                      delete status;
                  }}
    {}

    [[nodiscard]] MagellanGPSPlugin::Status status() { return std::move(status_); }

    /// The calls of the whole operation.
    [[nodiscard]] Calls calls()
    {
        auto calls = calls_.get_future();
        return calls.wait_for(std::chrono::seconds{30}) == std::future_status::ready ? calls.get()
                                                                                     : Calls{};
    }

private:
    std::promise<Calls> calls_;
    MagellanGPSPlugin::Status status_;
};

TEST_F(AcquireDriverTest, AStatusObjectThatThrowsEndsTheAcquireWithItsLastReport)
{
    fill();
    const auto whole = acquire();
    for (const auto& raise : std::vector<std::function<void()>>{
             [] { throw std::runtime_error{"the host's"}; }, [] { throw 42; },
             [] {
                 throw gps::RangeError{"PMGNWPL", 1, 1};
             }}) {
        for (std::size_t i = 0; i < whole.size(); ++i) {
            SCOPED_TRACE(whole[i]);
            const support::LogCapture log;
            ThrowingHost host{whole[i], raise};
            ASSERT_EQ(makeDriver()->gpsRunAcquire(host.status(), {}), std::nullopt);
            const auto first = std::find(whole.begin(), whole.end(), whole[i]);
            Calls expected{whole.begin(), first + 1};
            if (expected.back() != "gpsStateChange 0")
                expected.emplace_back("gpsStateChange 0");
            EXPECT_EQ(host.calls(), expected);
            EXPECT_THAT(log.errors(), IsEmpty()) << "the host's failure is not a file's";
            EXPECT_THAT(log.lines(), SizeIs(1));
        }
    }
}

TEST_F(AcquireDriverTest, WhatAStatusObjectThrowsInAnImportReachesTheHostAfterTheEnd)
{
    const auto file = receiver_.put("t.log", {kTrackPoint});
    const Calls whole{"startTransfer 1", kTrackCall, kTrackPointCall, "endTransfer 1",
                      "gpsStateChange 0"};
    for (std::size_t i = 0; i < whole.size(); ++i) {
        SCOPED_TRACE(whole[i]);
        const auto status = std::make_shared<support::ActingReceiver>(whole[i], [] { throw 42; });
        EXPECT_THROW((void)makeDriver()->gpsRunAcquire(status, {{"sourcePath", file}}), int);
        Calls expected{whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i) + 1};
        if (expected.back() != "gpsStateChange 0")
            expected.emplace_back("gpsStateChange 0");
        EXPECT_EQ(status->calls(), expected);
        EXPECT_EQ(gps::GPSStorageAuthorization::openAccessCount(), 0U);
    }
}

TEST_F(AcquireDriverTest, WhatAStatusObjectThrowsAtARefusalReachesTheHost)
{
    for (const gps::Value& path : {gps::Value{7}, gps::Value{"x"}}) {
        const auto status = std::make_shared<support::ActingReceiver>(
            "gpsStateChange", [] { throw std::runtime_error{"the host's"}; });
        EXPECT_THROW((void)makeDriver()->gpsRunAcquire(status, {{"sourcePath", path}}),
                     std::runtime_error);
        EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
    }
}

TEST_F(AcquireDriverTest, AStatusObjectThatThrowsEndsASendWithItsLastReport)
{
    const gps::Dictionary data{{"track", gps::Array{}}, {"route", gps::Array{}}};
    const Calls whole{"startSending Tracks 1", "endSending 1", "startSending Routes 2",
                      "endSending 2", "gpsStateChange 0"};
    for (std::size_t i = 0; i < whole.size(); ++i) {
        SCOPED_TRACE(whole[i]);
        ThrowingHost host{whole[i], [] { throw std::runtime_error{"the host's"}; }};
        ASSERT_EQ(makeDriver()->gpsRunSend(&data, host.status(), {}), std::nullopt);
        Calls expected{whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(i) + 1};
        if (expected.back() != "gpsStateChange 0")
            expected.emplace_back("gpsStateChange 0");
        EXPECT_EQ(host.calls(), expected);
    }
}

TEST_F(AcquireDriverTest, ASourcePathIsImportedOnTheHostsThreadWithoutABusyCall)
{
    const auto file = receiver_.put("elsewhere/t.log", {kTrackPoint});
    fill();
    const auto driver = makeDriver();
    EXPECT_EQ(driver->gpsRunAcquire(status_, {{"sourcePath", file}}), std::nullopt);
    EXPECT_THAT(status_->calls(), ElementsAre("startTransfer 1", kTrackCall, kTrackPointCall,
                                              "endTransfer 1", "gpsStateChange 0"));
    EXPECT_THAT(status_->threads(), ElementsAre(std::this_thread::get_id()));
    ASSERT_TRUE(driver->securityURL()); // access was opened on the device, not on the file
    EXPECT_EQ(driver->securityURL()->path(), receiver_.path());
}

TEST_F(AcquireDriverTest, TheErrorOfAnImportIsReturned)
{
    const auto error =
        makeDriver()->gpsRunAcquire(status_, {{"sourcePath", receiver_.path("none.upt")}});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), 260);
    EXPECT_THAT(status_->calls(),
                ElementsAre("startTransfer 3", "endTransfer 3", "gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, AnImportHoldsItsDriverAndItsStatusObjectUntilItReturns)
{
    auto driver = makeDriver();
    const std::weak_ptr<MagellanGPSPlugin> aliveDriver = driver;
    MagellanGPSPlugin::Status status;
    std::weak_ptr<gps::GPSOutputReceiver> aliveStatus;
    std::vector<bool> expired;
    status = std::make_shared<support::ActingReceiver>("startTransfer", [&] {
        driver.reset();
        status.reset();
        expired = {aliveDriver.expired(), aliveStatus.expired()};
    });
    aliveStatus = status;
    const auto file = receiver_.put("t.log", {kTrackPoint});
    EXPECT_EQ(driver->gpsRunAcquire(status, {{"sourcePath", file}}), std::nullopt);
    EXPECT_THAT(expired, ElementsAre(false, false));
    EXPECT_TRUE(aliveDriver.expired());
    EXPECT_TRUE(aliveStatus.expired());
}

TEST_F(AcquireDriverTest, AccessIsOpenDuringAnImportOnly)
{
    std::vector<std::size_t> open;
    const auto import = [&](const std::string& file) {
        const auto status = std::make_shared<support::ActingReceiver>("startTransfer", [&open] {
            open.push_back(gps::GPSStorageAuthorization::openAccessCount());
        });
        return makeDriver()->gpsRunAcquire(status, {{"sourcePath", file}});
    };
    EXPECT_EQ(import(receiver_.put("t.log", {kTrackPoint})), std::nullopt);
    EXPECT_EQ(gps::GPSStorageAuthorization::openAccessCount(), 0U);
    EXPECT_THROW((void)import(receiver_.put("u.log", {sentence("PMGNTRK,1")})), gps::RangeError);
    EXPECT_EQ(gps::GPSStorageAuthorization::openAccessCount(), 0U);
    EXPECT_THAT(open, ElementsAre(1U, 1U));
}

TEST_F(AcquireDriverTest, AnImportNeedsNoDevice)
{
    support::TestFolders::set({});
    const auto driver = makeDriver();
    EXPECT_EQ(
        driver->gpsRunAcquire(status_, {{"sourcePath", receiver_.put("t.log", {kTrackPoint})}}),
        std::nullopt);
    EXPECT_THAT(status_->calls(), Contains(kTrackPointCall));
    EXPECT_FALSE(driver->securityURL());
}

TEST_F(AcquireDriverTest, ASourcePathThatIsNotATextHasNoExtension)
{
    const auto error = makeDriver()->gpsRunAcquire(status_, {{"sourcePath", 7}});
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), -5);
    EXPECT_EQ(error->description(), "No extension exists on selected file");
    EXPECT_THAT(status_->calls(), ElementsAre("gpsStateChange 0"));
}

TEST_F(AcquireDriverTest, ARangeErrorOfAnImportReachesTheHostAfterTheEndWasReported)
{
    const auto file = receiver_.put("t.log", {kTrackPoint, sentence("PMGNTRK,1")});
    const auto driver = makeDriver();
    EXPECT_THROW((void)driver->gpsRunAcquire(status_, {{"sourcePath", file}}), gps::RangeError);
    EXPECT_THAT(status_->calls(), ElementsAre("startTransfer 1", kTrackCall, kTrackPointCall,
                                              "endTransfer 1", "gpsStateChange 0"));
}

} // namespace
} // namespace magellan
