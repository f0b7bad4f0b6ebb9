// SPDX-License-Identifier: MIT

#include "host/transfer/Sending.h"

#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <platform/System/DetachedThread.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using Action = gps::PlannedFile::Action;
using gps::TransferKind;
using host::ExitStatus;
using support::FakeFileDriver;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Status = gps::GPSPlugInProtocol::Status;

constexpr char kData[] =
    R"({"waypoint":[{"name":"A","point":{"latitude":46.5,"longitude":7.25}}]})";

class Sending : public testing::Test {
protected:
    Sending()
    {
        options_.data = folder_.put("d.json", kData);
        options_.backupFolder = folder_.path("kept");
        driver_.setLocations({folder_.makeFolder("device")});
        driver_.folders = {folder_.makeFolder("device/Points")};
        driver_.plan = [this](const gps::Dictionary&) { return plan_; };
        driver_.acquire = [](const Status& status,
                             const gps::Dictionary&) -> std::optional<gps::Error> {
            status->wayPoint({.latitude = 46.5, .longitude = 7.25}, {});
            status->gpsStateChange(0);
            return std::nullopt;
        };
        planFile(Action::kCreate);
    }

    void planFile(Action action, std::optional<gps::Error> error = {})
    {
        plan_.files = {{path_, action, "new", std::move(error)}};
    }

    // Sends through a worker that does this between the brackets.
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

    ExitStatus run(const FakeFileDriver::Send& send, gps::GPSPlugInProtocol* driver = nullptr)
    {
        driver_.send = [this, send](const gps::Dictionary* data, const Status& status,
                                    const gps::Dictionary& options) {
            ++sends_;
            return send(data, status, options);
        };
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        const auto status = [&] {
            const host::Console console{options_.quiet};
            host::Sending sending{options_, console};
            EXPECT_FALSE(sending.open());
            return sending.run(driver != nullptr ? *driver : driver_);
        }();
        out_ = testing::internal::GetCapturedStdout();
        err_ = testing::internal::GetCapturedStderr();
        return status;
    }

    void write() const { folder_.put("device/Points/p", "new"); }
    bool hasBackup() const { return std::filesystem::exists(folder_.path("kept/42")); }

    support::TemporaryFolder folder_;
    std::string path_ = folder_.path("device/Points/p");
    host::SendOptions options_;
    FakeFileDriver driver_;
    gps::SendPlan plan_;
    int sends_ = 0;
    std::string out_;
    std::string err_;
};

TEST_F(Sending, WholeOneIsSuccessAfterABackup)
{
    EXPECT_EQ(send([this] {
                  EXPECT_TRUE(hasBackup());
                  write();
              }),
              ExitStatus::kSuccess);
    EXPECT_EQ(
        out_,
        "make: Points/p\nsent: 1 waypoint, 0 routes, 0 tracks; 1 file written and read back\n");
    EXPECT_THAT(err_, HasSubstr("note: The device's files are kept in the backup " +
                                folder_.path("kept/42/")));
}

TEST_F(Sending, FileThatIsNotWrittenIsAFailure)
{
    EXPECT_EQ(send([] { gps::logLine("why"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("Path: " + path_));
    EXPECT_THAT(err_, HasSubstr("log: why"));
    EXPECT_THAT(out_, Not(HasSubstr("sent:")));
}

TEST_F(Sending, FileWithAnotherContentIsAFailure)
{
    EXPECT_EQ(send([this] { folder_.put("device/Points/p", "ne"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("does not hold what was sent"));
}

TEST_F(Sending, LoggedErrorIsShownOnceAndAFailure)
{
    EXPECT_EQ(send([this] {
                  gps::logError("plug-in",
                                gps::makeFileError(gps::FileErrorCode::kWriteNoSpace, path_));
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(err_.find(path_), err_.rfind(path_)) << err_;
}

TEST_F(Sending, FileThatWasNotThereBeforeIsNoFailure)
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

TEST_F(Sending, RecordThatIsNowhereIsAFailure)
{
    driver_.acquire = [](const Status& status,
                         const gps::Dictionary&) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        return std::nullopt;
    };
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("The waypoint \"A\" is not on the device."));
}

TEST_F(Sending, BracketThatNeverCameIsAFailure)
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

TEST_F(Sending, ErrorThatIsReportedOrAnsweredIsAFailure)
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

TEST_F(Sending, DryRunSaysWhatWouldBeAndDoesNothing)
{
    options_.dryRun = true;
    plan_.remarks = {"Something will not fit."};
    EXPECT_EQ(send([] {}), ExitStatus::kSuccess);
    EXPECT_EQ(sends_, 0);
    EXPECT_EQ(out_, "make: Points/p\nSomething will not fit.\nDry run: nothing was sent.\n");
    EXPECT_THAT(err_, IsEmpty());
    EXPECT_FALSE(hasBackup());
}

TEST_F(Sending, NothingIsSentWithoutABackup)
{
    options_.backupFolder = folder_.put("a file", "");
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    EXPECT_EQ(sends_, 0);
    EXPECT_EQ(out_, "make: Points/p\n");
    EXPECT_THAT(err_, HasSubstr("--no-backup"));
    options_.backup = false;
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
}

TEST_F(Sending, NothingToWriteNeedsNoBackup)
{
    options_.data = folder_.put("empty.json", "{}");
    plan_.files.clear();
    send([] {});
    EXPECT_FALSE(hasBackup());
}

TEST_F(Sending, PresentFileThatCannotBeReadIsWarnedOfBeforeTheSend)
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
    EXPECT_THAT(err_, Not(HasSubstr("Error 1"))) << "told already";
    EXPECT_THAT(out_, HasSubstr("sent: 1 waypoint")) << "and what was sent has arrived";
    options_.backup = false;
    send([this] { write(); });
    EXPECT_THAT(err_, HasSubstr("No backup keeps a copy."));
    options_.dryRun = true;
    EXPECT_EQ(send([] {}), ExitStatus::kFailed) << "a dry run shows it, too";
}

TEST_F(Sending, FileThatHasToBeLeftIsAFailure)
{
    planFile(Action::kSkip, gps::makeFileError(gps::FileErrorCode::kNoSuchFolder, path_));
    EXPECT_EQ(send([] {}), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("Path: " + path_));
}

TEST_F(Sending, EventsHaveTheStandardOutputForThemselves)
{
    options_.events = true;
    EXPECT_EQ(send([this] { write(); }), ExitStatus::kSuccess);
    EXPECT_EQ(
        out_,
        "{\"event\":\"startSending\",\"label\":\"Waypoints\",\"kind\":3}\n{\"event\":"
        "\"endSending\",\"kind\":3}\n"
        "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":null}\n");
    EXPECT_THAT(err_, HasSubstr("make: Points/p\n"));
    options_.quiet = true;
    send([this] { write(); });
    EXPECT_THAT(err_, IsEmpty());
}

TEST_F(Sending, NullSendsNoDataDictionary)
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

TEST_F(Sending, DataFileArrivesAsItStands)
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

TEST_F(Sending, NamesOfGpxAreFittedUnlessTheyAreToBeExact)
{
    options_.data.reset();
    options_.files = {folder_.put("t.gpx", "<gpx version=\"1.1\"><wpt lat=\"46.5\" "
                                           "lon=\"7.25\"><name>Grüne Hütte</name></wpt></gpx>")};
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
    run(look);
    EXPECT_EQ(name, "Grüne Hütte");
    EXPECT_THAT(out_, Not(HasSubstr("becomes")));
}

TEST_F(Sending, DriverThatTellsNothingBeforeStillSends)
{
    support::FakeDriver serial;
    serial.send = [](const gps::Dictionary*, const Status& status,
                     const gps::Dictionary&) -> std::optional<gps::Error> {
        status->startSending("Waypoints", TransferKind::kWaypoints);
        status->endSending(TransferKind::kWaypoints);
        status->gpsStateChange(0);
        return std::nullopt;
    };
    EXPECT_EQ(run({}, &serial), ExitStatus::kSuccess);
    EXPECT_THAT(err_, HasSubstr("no backup"));
    EXPECT_EQ(out_,
              "to send: 1 waypoint, 0 routes, 0 tracks\nsent: 1 waypoint, 0 routes, 0 tracks\n");
    EXPECT_FALSE(hasBackup());
}

TEST_F(Sending, DriverThatCannotSendIsRunAllTheSameAndNothingArrives)
{
    driver_.capabilities = "tracks,waypoints";
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
                    "disk, or name its place with "
                    "--device. Missing: waypoints.\n");
    EXPECT_FALSE(hasBackup());
}

} // namespace
