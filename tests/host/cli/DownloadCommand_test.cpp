// SPDX-License-Identifier: MIT

#include "host/cli/DownloadCommand.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "support/Signals.h"
#include "support/TemporaryFolder.h"

#include <platform/System/Log.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <thread>

#include <unistd.h>

namespace {

using gps::TransferKind;
using host::ExitStatus;
using support::allTransfers;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Status = gps::GPSPlugInProtocol::Status;

constexpr std::int64_t kLongAgo = 1000000000; // in 2001

class DownloadCommand : public testing::Test {
protected:
    /// Runs a download in which the driver makes these calls before its idle report.
    ExitStatus run(const std::function<void(const Status&)>& work)
    {
        driver_.acquire = [work](const Status& status,
                                 const gps::Dictionary&) -> std::optional<gps::Error> {
            work(status);
            status->gpsStateChange(0);
            return std::nullopt;
        };
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        const host::Console console{options_.quiet};
        host::StopSignals stop;
        const auto status =
            host::runDownload(driver_, host::downloadRequest(options_), options_, stop, console);
        out_ = testing::internal::GetCapturedStdout();
        err_ = testing::internal::GetCapturedStderr();
        return status;
    }

    void setOutput()
    {
        options_.output = folder_.path("trip.gpx");
        options_.format = host::findFormat("gpx");
    }

    support::TemporaryFolder folder_;
    support::AccountingDriver driver_;
    host::DownloadOptions options_;
    std::string out_;
    std::string err_;
};

void oldTrack(const Status& status)
{
    allTransfers(status);
    status->newTrack({});
    status->trackPoint({1, 2, 3, kLongAgo, 0}, {});
}

TEST_F(DownloadCommand, OptionsBecomeTheRequest)
{
    options_.routes = false;
    options_.debug = 3;
    options_.fixDates.weeks = 5;
    options_.driverOptions = gps::Dictionary{{"a", 1}};
    setOutput();
    const auto request = host::downloadRequest(options_);
    EXPECT_TRUE(request.kinds.waypoints);
    EXPECT_FALSE(request.kinds.routes);
    EXPECT_TRUE(request.kinds.tracks);
    EXPECT_EQ(request.debugLevel, 3);
    EXPECT_EQ(request.dateRule.weeks, 5);
    EXPECT_EQ(request.driverOptions, options_.driverOptions);
    ASSERT_TRUE(request.output);
    EXPECT_EQ(request.output->path, folder_.path("trip.gpx"));
    EXPECT_EQ(request.output->format, options_.format);
    options_.output.reset();
    EXPECT_FALSE(host::downloadRequest(options_).output);
}

TEST_F(DownloadCommand, CompleteFileIsWrittenWithoutMessages)
{
    setOutput();
    EXPECT_EQ(run(allTransfers), ExitStatus::kSuccess);
    EXPECT_THAT(folder_.read("trip.gpx"), HasSubstr("</gpx>"));
    EXPECT_THAT(out_, IsEmpty());
    EXPECT_THAT(err_, IsEmpty());
}

TEST_F(DownloadCommand, SummaryIsPrintedWithoutAFileOrOnRequest)
{
    EXPECT_EQ(run(allTransfers), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("Total "));
    setOutput();
    options_.summary = true;
    EXPECT_EQ(run(allTransfers), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("Total "));
}

TEST_F(DownloadCommand, SummaryIsNotPrintedIfNothingArrivedThatWasRequested)
{
    EXPECT_EQ(run([](const Status&) {}), ExitStatus::kFailed);
    EXPECT_THAT(out_, IsEmpty());
    EXPECT_THAT(err_, HasSubstr("Missing: waypoints, routes, tracks."));
}

TEST_F(DownloadCommand, SummaryOfNothingIsPrintedIfNothingWasRequested)
{
    options_.waypoints = options_.routes = options_.tracks = false;
    EXPECT_EQ(run([](const Status&) {}), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("Total "));
}

TEST_F(DownloadCommand, EventLinesEndWithTheResult)
{
    options_.events = true;
    driver_.capabilities.clear();
    EXPECT_EQ(run([](const Status&) {}), ExitStatus::kSuccess);
    EXPECT_EQ(out_, "{\"event\":\"gpsStateChange\",\"state\":0}\n"
                    "{\"event\":\"result\",\"error\":null}\n");
}

TEST_F(DownloadCommand, EventLinesHaveTheTimesAsReported)
{
    options_.events = true;
    options_.fixDates.weeks = 1;
    setOutput();
    EXPECT_EQ(run(oldTrack), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("\"time\":1000000000,"));
    EXPECT_THAT(folder_.read("trip.gpx"), HasSubstr("<time>2001-09-16T"));
}

TEST_F(DownloadCommand, LogIsAnErrorIfSomethingIsMissingThoughQuiet)
{
    options_.quiet = true;
    EXPECT_EQ(run([](const Status&) { gps::logLine("why"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("magellangps: log: why\n"));
}

TEST_F(DownloadCommand, LogIsNotRepeatedIfItWasPrintedAlready)
{
    options_.verbose = true;
    EXPECT_EQ(run([](const Status&) { gps::logLine("why"); }), ExitStatus::kFailed);
    EXPECT_THAT(err_, Not(HasSubstr("why")));
}

TEST_F(DownloadCommand, AdviceOnDatesFollowsTheSummaryOrIsANoteWithTheFile)
{
    EXPECT_EQ(run(oldTrack), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("\n\nThe dates look 1024 weeks too old"));
    EXPECT_THAT(err_, IsEmpty());
    setOutput();
    EXPECT_EQ(run(oldTrack), ExitStatus::kSuccess);
    EXPECT_THAT(err_, StartsWith("note: The dates look 1024 weeks too old"));
    EXPECT_THAT(out_, IsEmpty());
    options_.summary = true;
    EXPECT_EQ(run(oldTrack), ExitStatus::kSuccess);
    EXPECT_THAT(err_, Not(HasSubstr("1024"))) << "it is below the summary";
    EXPECT_THAT(out_, HasSubstr("\n\nThe dates look 1024 weeks too old"));
}

TEST_F(DownloadCommand, JsonIsOneDocumentInsteadOfTheSummary)
{
    options_.json = true;
    EXPECT_EQ(run(oldTrack), ExitStatus::kSuccess);
    EXPECT_THAT(out_, StartsWith("{\"status\":0,"));
    EXPECT_THAT(out_, testing::EndsWith("}\n"));
    EXPECT_EQ(std::count(out_.begin(), out_.end(), '\n'), 1);
    EXPECT_THAT(out_, HasSubstr("1024 weeks too old")) << "what is printed on stderr";
    EXPECT_THAT(err_, StartsWith("note: The dates look 1024 weeks too old"));
}

TEST_F(DownloadCommand, JsonHasTheStatusOfAFailure)
{
    options_.json = true;
    EXPECT_EQ(run([](const Status&) {}), ExitStatus::kFailed);
    EXPECT_THAT(out_, StartsWith("{\"status\":1,\"complete\":false,"));
}

TEST_F(DownloadCommand, StatusIsThatOfTheSignalThatStoppedIt)
{
    const support::DefaultSignals defaults;
    setOutput();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        driver_.isStopRequested = false;
        const auto exit = run([&](const Status& status) {
            status->startTransfer(TransferKind::kWaypoints);
            status->wayPoint({46, 7, 0, 0, 0}, {{"name", "A"}});
            ::kill(::getpid(), signal);
            while (!driver_.isStopRequested)
                std::this_thread::yield();
        });
        EXPECT_EQ(static_cast<int>(exit), 128 + signal);
        EXPECT_THAT(err_, HasSubstr("The download was stopped before its end."));
        EXPECT_THAT(err_, HasSubstr("trip.partial.gpx"));
        EXPECT_FALSE(std::filesystem::exists(folder_.path("trip.gpx")));
    }
}

TEST_F(DownloadCommand, DamagedLinesChangeTheStatusOnlyIfStrict)
{
    setOutput();
    gps::FileAccount total{.kind = "tracks"};
    total.lines = {.seen = 2, .accepted = 1};
    total.lines.skipped[static_cast<std::size_t>(gps::SkipReason::kWrongChecksum)] = 1;
    driver_.account.totals = {total};
    EXPECT_EQ(run(allTransfers), ExitStatus::kSuccess);
    EXPECT_EQ(err_, "note: 1 of 2 track points; 1 damaged\n");
    options_.strict = true;
    EXPECT_EQ(run(allTransfers), ExitStatus::kFailed);
    EXPECT_EQ(err_, "magellangps: 1 of 2 track points; 1 damaged\n");
    EXPECT_TRUE(std::filesystem::exists(folder_.path("trip.gpx"))) << "nothing else can be got";
}

TEST_F(DownloadCommand, OutputThatCannotBeOpenedIsAnErrorWithoutASummary)
{
    setOutput();
    options_.summary = true;
    options_.output = folder_.path("no/such/folder.gpx");
    EXPECT_EQ(run(allTransfers), ExitStatus::kFailed);
    EXPECT_THAT(out_, IsEmpty());
    EXPECT_THAT(err_, HasSubstr("no/such"));
}

} // namespace
