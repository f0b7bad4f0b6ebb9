// SPDX-License-Identifier: MIT

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "host/cli/Commands.h"
#include "support/Signals.h"
#include "support/TemporaryFolder.h"
#include "support/Variable.h"

#include <platform/System/DetachedThread.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

#include <unistd.h>

namespace {

using Action = gps::PlannedFile::Action;
using gps::TransferKind;
using host::ExitStatus;
using support::FakeFileDriver;
using support::waypointAt;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Status = gps::GPSPlugInProtocol::Status;

constexpr char kData[] = R"({"waypoint":[{"name":"A","point":{"latitude":46.5,"longitude":7}}]})";

class SendCommand : public testing::Test {
protected:
    SendCommand()
    {
        options_.data = folder_.put("d.json", kData);
        options_.backupFolder = folder_.path("kept");
        driver_->setLocations({folder_.makeFolder("device")});
        driver_->folders = {folder_.makeFolder("device/Points")};
        driver_->plan = [this](const gps::Dictionary&) { return plan_; };
        driver_->decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
            return {{"waypoint", gps::Array{waypointAt(content == "new" ? 46.5 : 1)}}};
        };
        planFile(Action::kCreate);
    }

    void planFile(Action action, std::optional<gps::Error> error = {})
    {
        plan_.files = {{path_, action, "new", std::move(error)}};
    }

    // Sends with a worker that calls `work` between the status calls.
    ExitStatus send(const std::function<void()>& work)
    {
        return run([work](const gps::Dictionary*, const Status& status, const gps::Dictionary&) {
            return gps::detachNewThread([status, work] {
                status->startSending("Waypoints", TransferKind::kWaypoints);
                work();
                status->endSending(TransferKind::kWaypoints);
                status->gpsStateChange(0);
            });
        });
    }

    ExitStatus run(const FakeFileDriver::Send& send)
    {
        driver_->send = [this, send](const gps::Dictionary* data, const Status& status,
                                     const gps::Dictionary& options) {
            ++sends_;
            return send(data, status, options);
        };
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        const auto status =
            host::runSend({.drivers = drivers_}, options_, host::Console{options_.quiet});
        out_ = testing::internal::GetCapturedStdout();
        err_ = testing::internal::GetCapturedStderr();
        return status;
    }

    void write() const { folder_.put("device/Points/p", "new"); }
    bool hasBackup() const { return std::filesystem::exists(folder_.path("kept/42")); }

    support::TemporaryFolder folder_;
    std::string path_ = folder_.path("device/Points/p");
    host::SendOptions options_;
    std::shared_ptr<FakeFileDriver> driver_ = std::make_shared<FakeFileDriver>();
    std::vector<host::Driver> drivers_{driver_};
    gps::SendPlan plan_;
    int sends_ = 0;
    std::string out_;
    std::string err_;
};

TEST_F(SendCommand, CompleteSendIsASuccessAfterABackup)
{
    EXPECT_EQ(send([this] {
                  EXPECT_TRUE(hasBackup());
                  write();
              }),
              ExitStatus::kSuccess);
    EXPECT_EQ(out_, "create: Points/p\nsent: 1 waypoint; 1 file written and read back\n");
    EXPECT_THAT(err_, HasSubstr("note: The device's files are kept in the backup " +
                                folder_.path("kept/42/")));
}

TEST_F(SendCommand, WithJsonTheStandardOutputIsOneDocument)
{
    options_.json = true;
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
    auto document = nlohmann::json::parse(out_);
    EXPECT_EQ(document["status"], 0);
    EXPECT_EQ(document["sent"]["waypoints"], 1);
    EXPECT_EQ(document["files"][0]["result"], "written");
    EXPECT_EQ(document["backup"]["name"].get<std::string>().size(), 16U);
    EXPECT_THAT(err_, HasSubstr(document["messages"][0]["text"].get<std::string>()));

    folder_.put("device/Points/p", "old");
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    document = nlohmann::json::parse(out_);
    EXPECT_EQ(document["status"], 1);
    EXPECT_EQ(document["sent"], nullptr);
    EXPECT_EQ(document["messages"].back()["error"], true);
}

TEST_F(SendCommand, WithJsonADryRunAndAFileThatCannotBeReadHaveADocument)
{
    options_.json = true;
    options_.dryRun = true;
    EXPECT_EQ(send([] {}), ExitStatus::kSuccess);
    EXPECT_EQ(nlohmann::json::parse(out_)["dryRun"], true);
    options_.data = folder_.path("missing.json");
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    const auto document = nlohmann::json::parse(out_);
    EXPECT_EQ(document["status"], 1);
    EXPECT_EQ(document["device"], nullptr);
    EXPECT_EQ(sends_, 0);
}

TEST_F(SendCommand, SignalWhileTheDeviceIsReadEndsTheProgramWithOneMessage)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const support::DefaultSignals defaults;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        driver_->onSnapshot = [signal] {
            ::kill(::getpid(), signal);
            for (;;)
                ::pause(); // a device that does not answer
        };
        const auto send = [this] {
            ::dup2(STDERR_FILENO, STDOUT_FILENO);
            (void)host::runSend({.drivers = drivers_}, options_, host::Console{true});
        };
        EXPECT_EXIT(send(), testing::ExitedWithCode(128 + signal),
                    "^magellangps: The send was stopped before anything was written: every file of "
                    "the device is as it was.\n$");
    }
    EXPECT_FALSE(hasBackup());
}

TEST_F(SendCommand, DocumentOfASendThatASignalEndedSaysSo)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const support::DefaultSignals defaults;
    options_.json = true;
    driver_->onSnapshot = [] {
        ::kill(::getpid(), SIGINT);
        for (;;)
            ::pause();
    };
    const auto send = [this] {
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        (void)host::runSend({.drivers = drivers_}, options_, host::Console{true});
    };
    EXPECT_EXIT(send(), testing::ExitedWithCode(128 + SIGINT),
                "\n\\{\"status\":130,\"complete\":false,\"interrupted\":true,.*\n$");
}

// A signal that comes while the driver is writing.
TEST_F(SendCommand, SignalDuringTheSendIsARequest)
{
    const support::DefaultSignals defaults;
    EXPECT_EQ(send([] {
                  ::kill(::getpid(), SIGTERM);
                  sigset_t pending;
                  do { // until the thread that waits for signals has it
                      std::this_thread::yield();
                      ::sigpending(&pending);
                  } while (::sigismember(&pending, SIGTERM) == 1);
              }),
              host::statusAfterSignal(SIGTERM));
    EXPECT_THAT(err_, HasSubstr("The send was stopped before anything was written"));
    EXPECT_EQ(sends_, 1);
}

TEST_F(SendCommand, FileThatIsNotWrittenIsAFailure)
{
    EXPECT_EQ(send([] { gps::logLine("why"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("Path: " + path_));
    EXPECT_THAT(err_, HasSubstr("log: why"));
    EXPECT_THAT(out_, Not(HasSubstr("sent:")));
}

TEST_F(SendCommand, FileWithAnotherContentIsAFailure)
{
    EXPECT_EQ(send([this] { folder_.put("device/Points/p", "ne"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("does not hold what was sent"));
}

TEST_F(SendCommand, ChangeByAnotherProgramIsPlannedAgain)
{
    int plans = 0;
    driver_->plan = [&](const gps::Dictionary&) {
        if (++plans == 1)
            folder_.put("device/Points/other", "of another program");
        return plan_;
    };
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
    EXPECT_EQ(plans, 2);
    EXPECT_EQ(out_, "create: Points/p\ncreate: Points/p\nsent: 1 waypoint; 1 file written and read "
                    "back\n");
    EXPECT_THAT(err_, testing::StartsWith("note: Another program has changed the device since it "
                                          "was read. The send is planned again:\n"));
}

TEST_F(SendCommand, NothingIsSentToADeviceThatChangesThreeTimes)
{
    for (const int changes : {2, 3}) {
        int plans = 0;
        driver_->plan = [&](const gps::Dictionary&) {
            if (++plans <= changes)
                folder_.put("device/Points/other" + std::to_string(plans), "new");
            return plan_;
        };
        std::filesystem::remove(folder_.path("device/Points/other1"));
        std::filesystem::remove(folder_.path("device/Points/other2"));
        sends_ = 0;
        EXPECT_EQ(send([this] { write(); }),
                  changes == 2 ? ExitStatus::kSuccess : ExitStatus::kFailed);
        EXPECT_EQ(plans, 3);
        EXPECT_EQ(sends_, changes == 2 ? 1 : 0);
    }
    EXPECT_THAT(err_,
                testing::EndsWith("Let it finish, and send again. Path: " + folder_.path("device") +
                                  "\nmagellangps: Nothing was sent.\n"));
}

TEST_F(SendCommand, DataThatCannotBeReadAgainIsNotSent)
{
    driver_->plan = [this](const gps::Dictionary&) {
        folder_.put("device/Points/other", "of another program");
        std::filesystem::remove(folder_.path("d.json"));
        return plan_;
    };
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    EXPECT_EQ(sends_, 0);
    EXPECT_THAT(err_, HasSubstr("There is no such file"));
    EXPECT_THAT(err_, testing::EndsWith("Nothing was sent.\n"));
}

TEST_F(SendCommand, LoggedErrorIsShownOnceAndAFailure)
{
    EXPECT_EQ(send([this] {
                  gps::logError("plug-in",
                                gps::makeFileError(gps::FileErrorCode::kWriteNoSpace, path_));
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(err_.find(path_), err_.rfind(path_)) << err_;
}

TEST_F(SendCommand, ReadErrorForAFileThatDidNotExistIsNotAFailure)
{
    EXPECT_EQ(
        send([this] {
            const auto missing = gps::makeFileError(gps::FileErrorCode::kReadNoSuchFile, path_);
            gps::logError("plug-in",
                          gps::Error{"some", 1, {{gps::kErrorPathKey, path_}}}.causedBy(missing));
            write();
        }),
        ExitStatus::kSuccess);
}

TEST_F(SendCommand, RecordThatIsInNoFileIsAFailure)
{
    driver_->decode = [](std::string_view, std::string_view) -> gps::Dictionary {
        return {{"waypoint", gps::Array{waypointAt(47)}}};
    };
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("The waypoint \"A\" is not on the device."));
    EXPECT_THAT(out_, Not(HasSubstr("sent:")));
}

TEST_F(SendCommand, KindThatWasNeverSentIsAFailure)
{
    EXPECT_EQ(run([this](const gps::Dictionary*, const Status& status,
                         const gps::Dictionary&) -> std::optional<gps::Error> {
                  write();
                  status->gpsStateChange(0);
                  return std::nullopt;
              }),
              ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("Missing: waypoints."));
}

TEST_F(SendCommand, ErrorThatIsReportedOrReturnedIsAFailure)
{
    const gps::Error error{"some", -3, {{gps::kErrorDescriptionKey, "Refused"}}};
    EXPECT_EQ(run([&](const gps::Dictionary*, const Status& status,
                      const gps::Dictionary&) -> std::optional<gps::Error> {
                  status->gpsStateChange(0);
                  return error;
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(err_.find("Refused."), err_.rfind("Refused.")) << err_;
    EXPECT_EQ(run([&](const gps::Dictionary*, const Status& status,
                      const gps::Dictionary&) -> std::optional<gps::Error> {
                  write();
                  status->startSending("Waypoints", TransferKind::kWaypoints);
                  status->error(error);
                  status->endSending(TransferKind::kWaypoints);
                  status->gpsStateChange(0);
                  return std::nullopt;
              }),
              ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("Refused."));
}

TEST_F(SendCommand, DryRunPrintsThePlanAndDoesNothing)
{
    options_.dryRun = true;
    plan_.remarks = {"Something will not fit."};
    EXPECT_EQ(send([] {}), ExitStatus::kSuccess);
    EXPECT_EQ(sends_, 0);
    EXPECT_EQ(out_, "create: Points/p\nSomething will not fit.\nDry run: nothing was sent.\n");
    EXPECT_THAT(err_, IsEmpty());
    EXPECT_FALSE(hasBackup());
}

TEST_F(SendCommand, NothingIsSentWithoutABackup)
{
    options_.backupFolder = folder_.put("a file", "");
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    EXPECT_EQ(sends_, 0);
    EXPECT_EQ(out_, "create: Points/p\n");
    EXPECT_THAT(err_, HasSubstr("--no-backup"));
    options_.backup = false;
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
}

TEST_F(SendCommand, SendThatWritesNothingNeedsNoBackup)
{
    options_.data = folder_.put("empty.json", "{}");
    plan_.files.clear();
    send([] {});
    EXPECT_FALSE(hasBackup());
}

TEST_F(SendCommand, UnreadablePresentFileIsReportedBeforeTheSend)
{
    planFile(Action::kMerge, gps::makeFileError(gps::FileErrorCode::kReadNotAscii, path_));
    EXPECT_EQ(send([this] {
                  const auto unreadable =
                      gps::makeFileError(gps::FileErrorCode::kReadNotAscii, path_);
                  gps::logError(
                      "plug-in",
                      gps::Error{"some", 1, {{gps::kErrorPathKey, path_}}}.causedBy(unreadable));
                  write();
              }),
              ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("a send replaces it. The backup keeps a copy. Path: " + path_));
    EXPECT_THAT(err_, Not(HasSubstr("Error 1"))) << "the plan had it";
    EXPECT_THAT(out_, HasSubstr("sent: 1 waypoint")) << "what was sent has arrived";
    options_.backup = false;
    send([this] { write(); });
    EXPECT_THAT(err_, HasSubstr("No backup keeps a copy."));
    options_.dryRun = true;
    EXPECT_EQ(send([] {}), ExitStatus::kFailed) << "a dry run, too";
}

TEST_F(SendCommand, FileThatCannotBeWrittenIsAFailure)
{
    planFile(Action::kSkip, gps::makeFileError(gps::FileErrorCode::kNoSuchFolder, path_));
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("Path: " + path_));
}

TEST_F(SendCommand, EventLinesHaveTheStandardOutputToThemselves)
{
    options_.events = true;
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
    EXPECT_EQ(
        out_,
        "{\"event\":\"startSending\",\"label\":\"Waypoints\",\"kind\":3}\n{\"event\":"
        "\"endSending\",\"kind\":3}\n"
        "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":null}\n");
    EXPECT_THAT(err_, HasSubstr("create: Points/p\n"));
    options_.quiet = true;
    send([this] { write(); });
    EXPECT_THAT(err_, IsEmpty());
}

TEST_F(SendCommand, NullMeansNoDataDictionary)
{
    options_.data = folder_.put("null.json", "null");
    EXPECT_EQ(run([](const gps::Dictionary* data, const Status& status,
                     const gps::Dictionary&) -> std::optional<gps::Error> {
                  EXPECT_EQ(data, nullptr);
                  status->gpsStateChange(0);
                  return std::nullopt;
              }),
              ExitStatus::kSuccess);
    EXPECT_EQ(sends_, 1);
    EXPECT_FALSE(hasBackup());
}

TEST_F(SendCommand, DataFileIsSentUnchanged)
{
    options_.data =
        folder_.put("long.json", R"({"waypoint":[{"name":"Hütte mit einem langen Namen"}]})");
    options_.debug = 3;
    run([](const gps::Dictionary* data, const Status& status,
           const gps::Dictionary& options) -> std::optional<gps::Error> {
        EXPECT_EQ(*data,
                  (gps::Dictionary{{"waypoint", gps::Array{gps::Dictionary{
                                                    {"name", "Hütte mit einem langen Namen"}}}}}));
        EXPECT_EQ(options, (gps::Dictionary{{"debug", 3}}));
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_EQ(sends_, 1);
}

TEST_F(SendCommand, NamesFromGpxAreFittedUnlessExactNamesAreRequested)
{
    options_.data.reset();
    options_.files = {folder_.put("t.gpx", "<gpx version=\"1.1\"><wpt lat=\"46.5\" "
                                           "lon=\"7\"><name>Grüne Hütte</name></wpt></gpx>")};
    std::string name;
    const auto look = [&](const gps::Dictionary* data, const Status& status,
                          const gps::Dictionary&) -> std::optional<gps::Error> {
        name = *data->find("waypoint")
                    ->as<gps::Array>()
                    ->front()
                    .as<gps::Dictionary>()
                    ->findString("name");
        status->gpsStateChange(0);
        return std::nullopt;
    };
    run(look);
    EXPECT_EQ(name, "Grune Hutt");
    EXPECT_THAT(out_, HasSubstr("waypoint name: \"Grüne Hütte\" becomes \"Grune Hutt\"\n"));
    options_.exactNames = true;
    driver_->decode = [](std::string_view, std::string_view) -> gps::Dictionary {
        auto hut = waypointAt(46.5);
        hut.set("name", "Grne Htte");
        return {{"waypoint", gps::Array{hut}}};
    };
    run(look);
    EXPECT_EQ(name, "Grne Htte") << "what the device stores of it";
    EXPECT_THAT(out_, HasSubstr("\"Grüne Hütte\" becomes \"Grne Htte\", without \"üü\"\n"));
}

TEST_F(SendCommand, DriverThatCannotPlanStillSends)
{
    const auto serial = std::make_shared<support::FakeDriver>();
    serial->send = [](const gps::Dictionary*, const Status& status,
                      const gps::Dictionary&) -> std::optional<gps::Error> {
        status->startSending("Waypoints", TransferKind::kWaypoints);
        status->endSending(TransferKind::kWaypoints);
        status->gpsStateChange(0);
        return std::nullopt;
    };
    drivers_ = {serial};
    EXPECT_EQ(run({}), ExitStatus::kSuccess);
    EXPECT_THAT(err_, HasSubstr("no backup"));
    EXPECT_EQ(out_, "to send: 1 waypoint\nsent: 1 waypoint\n");
    EXPECT_FALSE(hasBackup());
}

TEST_F(SendCommand, DriverThatCannotSendIsStillRun)
{
    driver_->capabilities = "tracks,waypoints";
    EXPECT_EQ(run([](const gps::Dictionary*, const Status& status,
                     const gps::Dictionary&) -> std::optional<gps::Error> {
                  status->gpsStateChange(0);
                  return std::nullopt;
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(sends_, 1);
    EXPECT_THAT(out_, IsEmpty());
    EXPECT_EQ(err_, "note: The driver fake cannot send: nothing will be written to the device.\n"
                    "magellangps: The driver fake cannot send. Connect a receiver that mounts as a "
                    "disk, or name its location with --device. Missing: waypoints.\n");
    EXPECT_FALSE(hasBackup());
}

TEST_F(SendCommand, DamagedInputIsFoundBeforeTheDriverIsUsed)
{
    driver_->ready = false; // reported only if the input is valid
    for (const auto& file : {folder_.put("cut.gpx", "<gpx><wpt"), folder_.makeFolder("folder"),
                             folder_.path("missing.gpx")}) {
        options_.data.reset();
        options_.files = {file};
        EXPECT_EQ(send([] {}), ExitStatus::kFailed) << file;
        EXPECT_THAT(err_, HasSubstr(file));
    }
    options_.data = folder_.put("d.json", kData);
    EXPECT_EQ(send([] {}), ExitStatus::kNothingToWorkOn);
    EXPECT_EQ(sends_, 0);
}

TEST_F(SendCommand, WithoutAHomeFolderTheSendNeedsABackupFolder)
{
    options_.backupFolder.reset();
    const support::Variable state{"XDG_STATE_HOME", nullptr};
    const support::Variable home{"HOME", nullptr};
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    EXPECT_EQ(sends_, 0);
    EXPECT_THAT(err_, HasSubstr("There is no folder for backups"));
    EXPECT_THAT(err_, HasSubstr("--no-backup"));
    options_.backup = false;
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
}

} // namespace
