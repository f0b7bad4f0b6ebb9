// SPDX-License-Identifier: MIT

#include "host/transfer/Download.h"

#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <platform/System/DetachedThread.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>
#include <filesystem>

namespace {

using gps::TransferKind;
using host::ExitStatus;
using support::FakeDriver;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
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

    // Lets the driver's worker make these calls between its busy and its idle report, and finishes
    // the download.
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
    host::DownloadOptions options_;
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
    EXPECT_THAT(
        err_,
        HasSubstr("The output file was not written; what arrived is kept beside its place. Path: " +
                  folder_.path("trip.partial.gpx")));
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
    EXPECT_EQ(download([](const Status& status) { transfer(status, TransferKind::kWaypoints); }),
              ExitStatus::kSuccess);
}

TEST_F(Download, TransferThatTheDriverCannotMakeIsNotMissed)
{
    driver_.capabilities = "waypoints";
    EXPECT_EQ(download([](const Status& status) { transfer(status, TransferKind::kWaypoints); }),
              ExitStatus::kSuccess);
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

TEST_F(Download, ErrorOfASerialDriverComesWithWhatIsTheMatterWithThePort)
{
    driver_.serial = true;
    driver_.setLocations({folder_.path("gone")});
    EXPECT_EQ(download([](const Status& status) {
                  status->error({"some", -1, {{gps::kErrorDescriptionKey, "Closed"}}});
              }),
              ExitStatus::kFailed);
    EXPECT_THAT(err_, StartsWith("magellangps: Closed.\nmagellangps: The port is gone."));
    EXPECT_THAT(err_, HasSubstr("Path: " + folder_.path("gone")));
    EXPECT_FALSE(isReplaced());
}

TEST_F(Download, WordlessErrorOfASerialDriverGetsWords)
{
    driver_.serial = true;
    EXPECT_EQ(download([](const Status& status) {
                  status->startTransfer(TransferKind::kWaypoints);
                  status->error({"some", -4});
              }),
              ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("The connection to the receiver broke off (error -4)."));
    EXPECT_TRUE(hasPartial());
}

TEST_F(Download, SerialLineOnWhichNothingWasHeardIsAFailureThatKeepsTheOlderFile)
{
    driver_.serial = true;
    driver_.setLocations({"/dev/some"});
    EXPECT_EQ(download(allTransfers), ExitStatus::kFailed);
    EXPECT_FALSE(isReplaced());
    EXPECT_FALSE(hasPartial());
    EXPECT_EQ(err_, "magellangps: No receiver answered at /dev/some. Check that it is on and "
                    "connected there, and try again.\n");
}

TEST_F(Download, LogOfASerialSessionIsShownOnlyWhenSomethingIsMissing)
{
    driver_.serial = true;
    (void)download([](const Status& status) {
        gps::logLine(" -- a sentence");
        allTransfers(status);
    });
    EXPECT_THAT(err_, Not(HasSubstr("sentence")));
    EXPECT_EQ(download([](const Status&) { gps::logLine(" -- a sentence"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("log:  -- a sentence"));
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
    EXPECT_EQ(err_, "note: 1 point without valid coordinates was left out\n");
}

TEST_F(Download, EventsEndWithTheResultThoughItFailedAtItsStart)
{
    options_.events = true;
    EXPECT_EQ(run([](const Status& status, const gps::Dictionary&) -> std::optional<gps::Error> {
                  status->gpsStateChange(0);
                  return gps::Error{"some", -1};
              }),
              ExitStatus::kFailed);
    EXPECT_EQ(out_, "{\"event\":\"gpsStateChange\",\"state\":0}\n{\"event\":\"result\",\"error\":{"
                    "\"domain\":\"some\",\"code\":-1,"
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

TEST_F(Download, SummaryOfNothingIsPrintedWhereNothingWasAskedFor)
{
    options_.output.reset();
    options_.waypoints = options_.routes = options_.tracks = false;
    EXPECT_EQ(download([](const Status&) {}), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("Total "));
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

std::int64_t weeksAgo(int weeks)
{
    return std::time(nullptr) - weeks * std::int64_t{604800};
}

std::function<void(const Status&)> trackAt(std::int64_t time)
{
    return [time](const Status& status) {
        transfer(status, TransferKind::kWaypoints);
        transfer(status, TransferKind::kRoutes);
        status->startTransfer(TransferKind::kTracks);
        status->newTrack({});
        status->trackPoint({1, 2, 3, time, 0}, {});
        status->endTransfer(TransferKind::kTracks);
    };
}

TEST_F(Download, DatesThatLookOldAreToldOfWithTheFileAndWithTheSummary)
{
    EXPECT_EQ(download(trackAt(weeksAgo(1025))), ExitStatus::kSuccess);
    EXPECT_THAT(err_, testing::StartsWith("note: The dates look 1024 weeks old"));
    EXPECT_THAT(out_, IsEmpty());
    options_.output.reset();
    EXPECT_EQ(download(trackAt(weeksAgo(1025))), ExitStatus::kSuccess);
    EXPECT_THAT(err_, IsEmpty());
    EXPECT_THAT(out_, HasSubstr("\n\nThe dates look 1024 weeks old"));
    EXPECT_THAT(out_, HasSubstr("--fix-dates"));
}

TEST_F(Download, DatesThatAreYoungerAreNothingToTellOf)
{
    options_.summary = true;
    EXPECT_EQ(download(trackAt(weeksAgo(1020))), ExitStatus::kSuccess);
    EXPECT_THAT(err_, IsEmpty());
    EXPECT_THAT(out_, Not(HasSubstr("The dates")));
}

TEST_F(Download, DatesAreMendedInTheFileAndTheSummaryButNotInTheEventLines)
{
    options_.fixDates = {.weeks = 1};
    options_.summary = true;
    EXPECT_EQ(download(trackAt(1717236000)), ExitStatus::kSuccess);
    EXPECT_THAT(folder_.read("trip.gpx"), HasSubstr("<time>2024-06-08T10:00:00Z</time>"));
    EXPECT_THAT(out_, HasSubstr("2024-06-08 10:00:00"));
    options_.summary = false;
    options_.events = true;
    EXPECT_EQ(download(trackAt(1717236000)), ExitStatus::kSuccess);
    EXPECT_THAT(folder_.read("trip.gpx"), HasSubstr("<time>2024-06-08T10:00:00Z</time>"));
    EXPECT_THAT(out_, HasSubstr("\"time\":1717236000,"));
}

} // namespace
