// SPDX-License-Identifier: MIT

#include "host/cli/Download.h"

#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>

#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <platform/System/DetachedThread.h>
#include <platform/System/Log.h>

namespace {

using gps::TransferKind;
using host::ExitStatus;
using support::FakeDriver;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Status = gps::GPSPlugInProtocol::Status;

void transfer(const Status& status, TransferKind kind)
{
    status->startTransfer(kind);
    status->endTransfer(kind);
}

gps::Error errorAbout(const std::string& path)
{
    return {"some", -3, {{gps::kErrorDescriptionKey, "Unreadable"}, {gps::kErrorPathKey, path}}};
}

class Download : public testing::Test {
protected:
    Download()
    {
        options_.output = folder_.path("trip.gpx");
        options_.format = host::findFormat("gpx");
        folder_.put("trip.gpx", "old");
    }

    // Lets the driver's worker make these calls between its busy and its idle report, and finishes the download.
    ExitStatus download(const std::function<void(const Status&)>& work)
    {
        return run([work](const Status& status, const gps::Dictionary&) {
            return gps::detachNewThread([status, work] {
                status->gpsStateChange(1);
                work(status);
                status->gpsStateChange(0);
            });
        });
    }

    ExitStatus run(const FakeDriver::Acquire& acquire)
    {
        driver_.acquire = acquire;
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        const auto status = [&] {
            const host::Console console{options_.quiet};
            host::Download download{options_, console};
            EXPECT_FALSE(download.open());
            download.run(driver_, host::driverOptions(options_));
            return download.finish();
        }();
        out_ = testing::internal::GetCapturedStdout();
        err_ = testing::internal::GetCapturedStderr();
        return status;
    }

    bool isReplaced() const { return folder_.read("trip.gpx") != "old"; }
    bool hasPartial() const { return std::filesystem::exists(folder_.path("trip.partial.gpx")); }

    support::TemporaryFolder folder_;
    host::Options options_;
    FakeDriver driver_;
    std::string out_;
    std::string err_;
};

void allTransfers(const Status& status)
{
    for (const auto kind : {TransferKind::kWaypoints, TransferKind::kRoutes, TransferKind::kTracks})
        transfer(status, kind);
}

TEST_F(Download, WholeOneReplacesTheOlderFileInSilence)
{
    EXPECT_EQ(download(allTransfers), ExitStatus::kSuccess);
    EXPECT_TRUE(isReplaced());
    EXPECT_FALSE(hasPartial());
    EXPECT_THAT(err_, IsEmpty());
    EXPECT_THAT(out_, IsEmpty());
}

TEST_F(Download, TransferThatNeverCameLeavesAPartialFile)
{
    EXPECT_EQ(download([](const Status& status) {
                  transfer(status, TransferKind::kWaypoints);
                  gps::logLine("what the plug-in thinks of it");
              }),
              ExitStatus::kFailed);
    EXPECT_FALSE(isReplaced());
    EXPECT_TRUE(hasPartial());
    EXPECT_THAT(err_, HasSubstr("Missing: routes, tracks."));
    EXPECT_THAT(err_, HasSubstr("log: what the plug-in thinks of it"));
    EXPECT_THAT(err_, HasSubstr("trip.partial.gpx"));
}

TEST_F(Download, LogIsShownWithAMissingTransferThoughQuiet)
{
    options_.quiet = true;
    EXPECT_EQ(download([](const Status&) { gps::logLine("why"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("log: why"));
}

TEST_F(Download, TransferThatWasNotAskedForIsNotMissed)
{
    options_.routes = options_.tracks = false;
    EXPECT_EQ(download([](const Status& status) { transfer(status, TransferKind::kWaypoints); }), ExitStatus::kSuccess);
}

TEST_F(Download, TransferThatTheDriverCannotMakeIsNotMissed)
{
    driver_.capabilities = "waypoints";
    EXPECT_EQ(download([](const Status& status) { transfer(status, TransferKind::kWaypoints); }), ExitStatus::kSuccess);
}

TEST_F(Download, NothingThatArrivedLeavesNoPartialFile)
{
    EXPECT_EQ(download([](const Status&) {}), ExitStatus::kFailed);
    EXPECT_FALSE(isReplaced());
    EXPECT_FALSE(hasPartial());
}

TEST_F(Download, AnsweredErrorIsToldOnceAndLeavesTheOlderFile)
{
    EXPECT_EQ(run([](const Status& status, const gps::Dictionary&) -> std::optional<gps::Error> {
                  status->gpsStateChange(0);
                  gps::logError("Fake", errorAbout("/some/path"));
                  return errorAbout("/some/path");
              }),
              ExitStatus::kFailed);
    EXPECT_FALSE(isReplaced());
    EXPECT_EQ(err_, "magellangps: Unreadable. Path: /some/path\n");
}

TEST_F(Download, ReportedErrorLeavesAPartialFile)
{
    EXPECT_EQ(download([](const Status& status) {
                  allTransfers(status);
                  status->error({"some", -4});
              }),
              ExitStatus::kFailed);
    EXPECT_FALSE(isReplaced());
    EXPECT_TRUE(hasPartial());
    EXPECT_THAT(err_, HasSubstr("Error -4 of the domain some."));
}

TEST_F(Download, FileThatCouldNotBeReadFailsButTheRestIsKeptUnderTheFinalName)
{
    EXPECT_EQ(download([](const Status& status) {
                  allTransfers(status);
                  gps::logError("Fake", errorAbout("/some/file"));
              }),
              ExitStatus::kFailed);
    EXPECT_TRUE(isReplaced());
    EXPECT_FALSE(hasPartial());
    EXPECT_EQ(err_, "magellangps: Unreadable. Path: /some/file\n");
}

TEST_F(Download, FolderThatWasReadAsAFileIsNothing)
{
    EXPECT_EQ(download([&](const Status& status) {
                  allTransfers(status);
                  gps::logError("Fake", errorAbout(folder_.path()));
              }),
              ExitStatus::kSuccess);
    EXPECT_THAT(err_, IsEmpty());
}

TEST_F(Download, FolderThatEndedTheWaypointsWasTheEnd)
{
    options_.routes = options_.tracks = false;
    EXPECT_EQ(download([&](const Status& status) {
                  status->startTransfer(TransferKind::kWaypoints);
                  gps::logError("Fake", errorAbout(folder_.path()));
                  status->endTransfer(TransferKind::kWaypoints);
              }),
              ExitStatus::kFailed);
    EXPECT_FALSE(isReplaced());
    EXPECT_TRUE(hasPartial());
}

TEST_F(Download, ManyUnreadableFilesAreTenLinesAndACount)
{
    EXPECT_EQ(download([](const Status& status) {
                  allTransfers(status);
                  for (int i = 0; i < 1500; ++i)
                      gps::logError("Fake", errorAbout("/some/file"));
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(std::count(err_.begin(), err_.end(), '\n'), 11);
    EXPECT_THAT(err_, HasSubstr("And 1490 more that could not be read."));
}

TEST_F(Download, OtherLogLinesAreNotesUnlessQuiet)
{
    const auto work = [](const Status& status) {
        allTransfers(status);
        for (int i = 0; i < 12; ++i)
            gps::logLine("line");
    };
    EXPECT_EQ(download(work), ExitStatus::kSuccess);
    EXPECT_EQ(std::count(err_.begin(), err_.end(), '\n'), 11);
    EXPECT_THAT(err_, HasSubstr("note: and 2 more\n"));
    options_.quiet = true;
    EXPECT_EQ(download(work), ExitStatus::kSuccess);
    EXPECT_THAT(err_, IsEmpty());
}

TEST_F(Download, PointsLeftOutOfTheFileAreANote)
{
    EXPECT_EQ(download([](const Status& status) {
                  status->wayPoint({91, 0, 0, 0, 0}, {});
                  allTransfers(status);
              }),
              ExitStatus::kSuccess);
    EXPECT_EQ(err_, "note: 1 point was left out: no place on the globe\n");
}

TEST_F(Download, EventsEndWithTheResultThoughItFailedAtItsStart)
{
    options_.events = true;
    EXPECT_EQ(run([](const Status& status, const gps::Dictionary&) -> std::optional<gps::Error> {
                  status->gpsStateChange(0);
                  return gps::Error{"some", -1};
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(out_,
              "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":{\"domain\":\"some\",\"code\":-1,"
              "\"description\":null,\"suggestion\":null,\"path\":null}}\n");
}

TEST_F(Download, SummaryIsPrintedOnlyOfWhatArrived)
{
    options_.output.reset();
    EXPECT_EQ(download(allTransfers), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("Total "));
    EXPECT_EQ(download([](const Status&) {}), ExitStatus::kFailed);
    EXPECT_THAT(out_, IsEmpty());
}

TEST_F(Download, HundredThousandPointsComeThroughTheQueue)
{
    EXPECT_EQ(download([](const Status& status) {
                  status->startTransfer(TransferKind::kTracks);
                  status->newTrack({{"name", "Long"}});
                  for (int i = 0; i < 100000; ++i)
                      status->trackPoint({0.5, 0.5, 0, i, 0}, {});
                  allTransfers(status);
              }),
              ExitStatus::kSuccess);
    const auto gpx = folder_.read("trip.gpx");
    EXPECT_EQ(std::count(gpx.begin(), gpx.end(), '\n'), 2 + 1 + 100000 + 1 + 1);
}

} // namespace
