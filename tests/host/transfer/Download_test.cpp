// SPDX-License-Identifier: MIT

#include "host/transfer/Download.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "host/Records.h"
#include "support/TemporaryFolder.h"

#include <platform/System/DetachedThread.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <thread>

namespace {

using gps::TransferKind;
using host::DownloadReport;
using host::RecordCounts;
using host::TransferPhase;
using support::allTransfers;
using support::errorAbout;
using support::FakeDriver;
using support::transfer;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Status = gps::GPSPlugInProtocol::Status;
using State = host::OutputReport::State;

void oneWaypoint(const Status& status)
{
    status->wayPoint({46, 7, 0, 0, 0}, {{"name", "A"}});
    allTransfers(status);
}

/// Notes what reaches it, and how often it is flushed.
class NotingWriter final : public host::Writer {
public:
    void event(const host::Event& event) override
    {
        if (event.kind == host::EventKind::kTrackPoint)
            times.push_back(event.point.time);
    }
    void result(const std::optional<gps::Error>& error) override { results.push_back(error); }
    void flush() override { ++flushes; }
    [[nodiscard]] std::optional<gps::Error> close() override
    {
        ADD_FAILURE() << "closed by the download";
        return std::nullopt;
    }

    std::vector<std::int64_t> times;
    std::vector<std::optional<gps::Error>> results;
    int flushes = 0;
};

class Download : public testing::Test {
protected:
    Download()
    {
        request_.output = host::OutputRequest{.path = folder_.path("trip.gpx"),
                                              .format = host::findFormat("gpx")};
        folder_.put("trip.gpx", "old");
    }

    /// Downloads from a driver whose worker makes these calls between its busy and its idle report.
    DownloadReport download(const std::function<void(const Status&)>& work)
    {
        return run([work](const Status& status, const gps::Dictionary&) {
            return gps::detachNewThread([status, work] {
                status->gpsStateChange(1);
                work(status);
                status->gpsStateChange(0);
            });
        });
    }

    DownloadReport run(const FakeDriver::Acquire& acquire)
    {
        driver_.acquire = acquire;
        return host::download(driver_, request_);
    }

    [[nodiscard]] bool isReplaced() const { return folder_.read("trip.gpx") != "old"; }
    [[nodiscard]] bool hasPartial() const
    {
        return std::filesystem::exists(folder_.path("trip.partial.gpx"));
    }

    support::TemporaryFolder folder_;
    host::DownloadRequest request_;
    FakeDriver driver_;
};

TEST_F(Download, CompleteOneReplacesTheOlderFile)
{
    const auto report = download(oneWaypoint);
    EXPECT_TRUE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kComplete);
    EXPECT_EQ(report.output.path, folder_.path("trip.gpx"));
    EXPECT_TRUE(isReplaced());
    EXPECT_FALSE(hasPartial());
    EXPECT_EQ(report.received, (RecordCounts{.waypoints = 1}));
    EXPECT_EQ(report.written, (RecordCounts{.waypoints = 1}));
    ASSERT_THAT(report.operations, SizeIs(1));
    EXPECT_THAT(report.operations[0].received, SizeIs(3));
}

TEST_F(Download, TransferThatNeverCameLeavesAPartialFile)
{
    const auto report =
        download([](const Status& status) { transfer(status, TransferKind::kWaypoints); });
    EXPECT_FALSE(report.succeeded());
    EXPECT_THAT(report.operations[0].missing,
                ElementsAre(TransferKind::kRoutes, TransferKind::kTracks));
    EXPECT_EQ(report.output.state, State::kPartial);
    EXPECT_EQ(report.output.path, folder_.path("trip.partial.gpx"));
    EXPECT_FALSE(isReplaced());
    EXPECT_TRUE(hasPartial());
}

TEST_F(Download, NothingReceivedLeavesNoPartialFile)
{
    const auto report = download([](const Status&) {});
    EXPECT_FALSE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kNone);
    EXPECT_EQ(report.output.path, "");
    EXPECT_FALSE(isReplaced());
    EXPECT_FALSE(hasPartial());
}

TEST_F(Download, ReturnedErrorLeavesTheOlderFile)
{
    const auto report =
        run([](const Status& status, const gps::Dictionary&) -> std::optional<gps::Error> {
            status->gpsStateChange(0);
            return errorAbout("/some/path");
        });
    EXPECT_THAT(report.operations[0].errors, ElementsAre(errorAbout("/some/path")));
    EXPECT_FALSE(isReplaced());
    EXPECT_FALSE(hasPartial());
}

TEST_F(Download, ReportedErrorLeavesAPartialFile)
{
    const auto report = download([](const Status& status) {
        allTransfers(status);
        status->error({"some", -4});
    });
    EXPECT_FALSE(report.succeeded());
    EXPECT_FALSE(isReplaced());
    EXPECT_TRUE(hasPartial());
}

TEST_F(Download, UnreadableFileLeavesTheOlderFileAndAPartialOne)
{
    const auto report = download([](const Status& status) {
        allTransfers(status);
        gps::logError("Fake", errorAbout("/some/file"));
    });
    EXPECT_FALSE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kPartial);
    EXPECT_FALSE(isReplaced());
    EXPECT_TRUE(hasPartial());
}

TEST_F(Download, KindsThatNeverCameAreReadByOperationsOfTheirOwn)
{
    std::vector<std::string> requests;
    const auto report =
        run([&](const Status& status, const gps::Dictionary& options) -> std::optional<gps::Error> {
            std::string request;
            for (const char* kind : {"waypoints", "routes", "tracks"})
                request += options.find(kind)->boolReading() ? kind[0] : '-';
            requests.push_back(request);
            for (const auto& [letter, kind] :
                 {std::pair{'w', TransferKind::kWaypoints}, std::pair{'r', TransferKind::kRoutes},
                  std::pair{'t', TransferKind::kTracks}}) {
                const bool isBroken = request == "wrt" && kind != TransferKind::kWaypoints;
                if (request.find(letter) != std::string::npos && !isBroken)
                    transfer(status, kind);
            }
            status->gpsStateChange(0);
            return std::nullopt;
        });
    EXPECT_THAT(requests, ElementsAre("wrt", "-r-", "--t"));
    ASSERT_THAT(report.operations, SizeIs(3));
    EXPECT_THAT(report.operations[0].recovered,
                ElementsAre(TransferKind::kRoutes, TransferKind::kTracks));
    EXPECT_FALSE(report.isComplete()) << "the driver stopped among the waypoints";
    EXPECT_EQ(report.output.state, State::kPartial);
}

TEST_F(Download, KindsThatNeverCameAreNotReadOnRequestOrWithOptionsOrSerially)
{
    const auto operations = [this] {
        return download([](const Status& status) { transfer(status, TransferKind::kWaypoints); })
            .operations.size();
    };
    request_.readsMissingKinds = false;
    EXPECT_EQ(operations(), 1U);
    request_.readsMissingKinds = true;
    request_.driverOptions = gps::Dictionary{{"tracks", true}};
    EXPECT_EQ(operations(), 1U);
    request_.driverOptions.reset();
    EXPECT_EQ(operations(), 3U);
    driver_.serial = true;
    EXPECT_EQ(operations(), 1U);
}

TEST_F(Download, RepeatsAreDroppedFromASerialSessionOnlyAndNotFromVerbatimConsumers)
{
    const auto twice = [](const Status& status) {
        status->startTransfer(TransferKind::kTracks);
        for (int i = 0; i < 2; ++i)
            status->trackPoint({46, 7, 0, 1717236000, 0}, {});
        allTransfers(status);
    };
    EXPECT_EQ(download(twice).received.trackPoints, 2U);
    NotingWriter adjusted;
    NotingWriter verbatim;
    request_.consumers = {&adjusted};
    request_.verbatimConsumers = {&verbatim};
    driver_.serial = true;
    const auto report = download(twice);
    EXPECT_EQ(report.received.trackPoints, 1U);
    EXPECT_EQ(report.written.trackPoints, 1U);
    EXPECT_EQ(report.operations[0].repeats.trackPoints, 1U);
    EXPECT_THAT(adjusted.times, SizeIs(1));
    EXPECT_THAT(verbatim.times, SizeIs(2));
}

/// A download by a driver that keeps account of its operations.
class AccountedDownload : public testing::Test {
protected:
    AccountedDownload()
    {
        request_.output = host::OutputRequest{.path = folder_.path("trip.gpx"),
                                              .format = host::findFormat("gpx")};
        folder_.put("trip.gpx", "old");
    }

    /// A worker that delivers a waypoint and then ends only when it is asked to stop.
    void waitForAStop()
    {
        driver_->acquire = [this](const Status& status, const gps::Dictionary&) {
            return gps::detachNewThread([driver = driver_, status] {
                status->gpsStateChange(1);
                transfer(status, TransferKind::kWaypoints);
                status->wayPoint({46, 7, 0, 0, 0}, {{"name", "A"}});
                while (!driver->isStopRequested)
                    std::this_thread::yield();
                status->gpsStateChange(0);
            });
        };
    }

    support::TemporaryFolder folder_;
    host::DownloadRequest request_;
    std::shared_ptr<support::AccountingDriver> driver_ =
        std::make_shared<support::AccountingDriver>();
};

TEST_F(AccountedDownload, StopKeepsWhatCameAsAPartialFile)
{
    waitForAStop();
    request_.stopRequested = [] { return true; };
    const auto report = host::download(*driver_, request_);
    EXPECT_TRUE(report.isInterrupted());
    EXPECT_FALSE(report.operations[0].isAbandoned);
    EXPECT_EQ(report.output.state, State::kPartial);
    EXPECT_EQ(folder_.read("trip.gpx"), "old");
    EXPECT_THAT(folder_.read("trip.partial.gpx"), HasSubstr("<name>A</name>"));
    EXPECT_THAT(report.operations, SizeIs(1)) << "no further operation begins";
}

TEST_F(AccountedDownload, StoppedDownloadIsKeptEvenIfAFailedOneWouldNotBe)
{
    waitForAStop();
    request_.stopRequested = [] { return true; };
    request_.output->isKeptAfterFailure = false;
    EXPECT_EQ(host::download(*driver_, request_).output.state, State::kPartial);
}

TEST_F(AccountedDownload, NoImportBeginsAfterAStop)
{
    waitForAStop();
    request_.stopRequested = [] { return true; };
    request_.sourceFiles = {"a.upt", "b.upt"};
    EXPECT_THAT(host::download(*driver_, request_).operations, SizeIs(1));
}

TEST_F(AccountedDownload, LastRouteOfASerialSessionIsKept)
{
    driver_->serial = true;
    driver_->acquire = [](const Status& status,
                          const gps::Dictionary&) -> std::optional<gps::Error> {
        transfer(status, TransferKind::kWaypoints);
        status->newRoute({{"name", "R"}});
        status->wayPoint({46, 7, 0, 0, 0}, {{"name", "A"}});
        status->gpsStateChange(0);
        return std::nullopt;
    };
    EXPECT_EQ(host::download(*driver_, request_).written.routes, 1U);
    EXPECT_THAT(folder_.read("trip.partial.gpx"), HasSubstr("<name>R</name>"));
}

TEST_F(AccountedDownload, PhaseWithoutItsEndLeavesTheOlderFile)
{
    driver_->serial = true;
    driver_->account.phases = {{.kind = "tracks", .end = gps::PhaseEnd::kSilence}};
    driver_->acquire = [](const Status& status,
                          const gps::Dictionary&) -> std::optional<gps::Error> {
        allTransfers(status);
        status->gpsStateChange(0);
        return std::nullopt;
    };
    const auto report = host::download(*driver_, request_);
    EXPECT_FALSE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kPartial);
    EXPECT_EQ(folder_.read("trip.gpx"), "old");
}

TEST_F(Download, SilentReceiverKeepsTheOlderFileAndLeavesNoPartialOne)
{
    driver_.serial = true;
    request_.location = "/dev/some";
    const auto report = download(allTransfers);
    EXPECT_EQ(report.operations[0].voice, gps::LineVoice::kNothing);
    EXPECT_EQ(report.operations[0].location, "/dev/some");
    EXPECT_FALSE(isReplaced());
    EXPECT_FALSE(hasPartial());
}

TEST_F(Download, OutputThatIsNotKeptAfterAFailureIsNotCreatedByOne)
{
    request_.output->isKeptAfterFailure = false;
    (void)download([](const Status& status) { transfer(status, TransferKind::kWaypoints); });
    EXPECT_FALSE(hasPartial());
    const auto report = download([](const Status& status) {
        oneWaypoint(status);
        gps::logError("Fake", errorAbout("/some/file"));
    });
    EXPECT_EQ(report.output.state, State::kNone);
    EXPECT_FALSE(isReplaced());
    EXPECT_EQ(download(oneWaypoint).output.state, State::kComplete);
}

TEST_F(Download, OutputThatIsNotKeptEmptyIsCreatedOnlyWithARecord)
{
    request_.output->isKeptEmpty = false;
    const auto report = download(allTransfers);
    EXPECT_TRUE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kNone);
    EXPECT_FALSE(isReplaced());
    EXPECT_EQ(download(oneWaypoint).output.state, State::kComplete);
}

TEST_F(Download, OneWithoutRecordsKeepsALargerOlderFileAndFails)
{
    folder_.put("trip.gpx", std::string(1000, 'x'));
    const auto report = download(allTransfers);
    EXPECT_TRUE(report.isComplete());
    EXPECT_FALSE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kNone);
    EXPECT_EQ(report.output.error->description(),
              "No record arrived, so the output file was not written, and the older one is kept");
    EXPECT_EQ(folder_.read("trip.gpx"), std::string(1000, 'x'));
    EXPECT_EQ(download(oneWaypoint).output.state, State::kComplete);
}

TEST_F(Download, OneWithoutRecordsReplacesAnEmptyFileOfItsKind)
{
    std::filesystem::remove(folder_.path("trip.gpx"));
    EXPECT_EQ(download(allTransfers).output.state, State::kComplete);
    EXPECT_EQ(download(allTransfers).output.state, State::kComplete);
}

TEST_F(Download, OutputThatCannotBeOpenedIsReportedBeforeTheDriverIsAsked)
{
    request_.output->path = folder_.path("no/such/folder.gpx");
    const auto report = run([](const Status&, const gps::Dictionary&) -> std::optional<gps::Error> {
        ADD_FAILURE() << "asked";
        return gps::Error{"some", -1};
    });
    EXPECT_TRUE(report.output.error);
    EXPECT_THAT(report.operations, IsEmpty());
    EXPECT_FALSE(report.succeeded());
}

TEST_F(Download, OutputThatCannotBeWrittenIsReported)
{
    request_.output->path = "/dev/full";
    const auto report = download(oneWaypoint);
    EXPECT_TRUE(report.output.error);
    EXPECT_TRUE(report.isComplete());
    EXPECT_FALSE(report.succeeded());
    EXPECT_EQ(report.output.state, State::kNone);
}

TEST_F(Download, RemarkOfTheFormatIsReported)
{
    const auto report = download([](const Status& status) {
        status->wayPoint({91, 0, 0, 0, 0}, {});
        allTransfers(status);
    });
    EXPECT_THAT(report.output.remark, HasSubstr("1 point "));
}

TEST_F(Download, EachSourceFileIsAnOperationOfItsOwnIntoOneOutput)
{
    request_.sourceFiles = {"a.upt", "b.upt"};
    std::vector<std::string> imported;
    const auto report =
        run([&](const Status& status, const gps::Dictionary& options) -> std::optional<gps::Error> {
            imported.push_back(*options.findString("sourcePath"));
            const bool isFirst = imported.size() == 1;
            if (!isFirst)
                status->wayPoint({46, 7, 0, 0, 0}, {{"name", "B"}});
            transfer(status, TransferKind::kWaypoints);
            status->gpsStateChange(0);
            return isFirst ? std::optional{errorAbout("a.upt")} : std::nullopt;
        });
    EXPECT_THAT(imported, ElementsAre("a.upt", "b.upt"));
    ASSERT_THAT(report.operations, SizeIs(2));
    EXPECT_EQ(report.operations[0].sourceFile, "a.upt");
    EXPECT_FALSE(report.operations[0].isComplete());
    EXPECT_TRUE(report.operations[1].isComplete()) << "a failure does not stop the others";
    EXPECT_EQ(report.output.state, State::kPartial);
    EXPECT_THAT(folder_.read("trip.partial.gpx"), HasSubstr("<name>B</name>"));
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

TEST_F(Download, DatesAreAdjustedForTheFileAndConsumersButNotForVerbatimOnes)
{
    NotingWriter adjusted;
    NotingWriter verbatim;
    request_.consumers = {&adjusted};
    request_.verbatimConsumers = {&verbatim};
    request_.dateRule = {.weeks = 1};
    const auto report = download(trackAt(1717236000));
    EXPECT_THAT(folder_.read("trip.gpx"), HasSubstr("<time>2024-06-08T10:00:00Z</time>"));
    EXPECT_THAT(adjusted.times, ElementsAre(1717236000 + 604800));
    EXPECT_THAT(verbatim.times, ElementsAre(1717236000));
    EXPECT_EQ(report.dates.adjusted, 1U);
}

TEST_F(Download, ConsumersGetTheResultAndAreFlushedButNotClosed)
{
    NotingWriter adjusted;
    NotingWriter verbatim;
    request_.output.reset();
    request_.consumers = {&adjusted};
    request_.verbatimConsumers = {&verbatim};
    EXPECT_TRUE(download(allTransfers).succeeded());
    for (const auto* writer : {&adjusted, &verbatim}) {
        EXPECT_THAT(writer->results, ElementsAre(std::nullopt));
        EXPECT_GE(writer->flushes, 1);
    }
    (void)run([](const Status&, const gps::Dictionary&) {
        return std::optional{gps::Error{"some", -1}};
    });
    EXPECT_THAT(adjusted.results, ElementsAre(std::nullopt, gps::Error{"some", -1}));
    EXPECT_THAT(verbatim.results, ElementsAre(std::nullopt, gps::Error{"some", -1}));
}

TEST_F(Download, DatesThatLookTooOldAreReportedUnlessARuleAdjustsThem)
{
    const auto time = weeksAgo(1025);
    EXPECT_EQ(download(trackAt(time)).dates.suspectNewest, time);
    EXPECT_EQ(download(trackAt(weeksAgo(1020))).dates.suspectNewest, std::nullopt);
    request_.dateRule.isAuto = true;
    const auto report = download(trackAt(time));
    EXPECT_EQ(report.dates.suspectNewest, std::nullopt);
    EXPECT_EQ(report.dates.adjusted, 1U);
}

/// Passes waypoints only, and one more track point at the end.
class WaypointFilter final : public host::EventFilter {
public:
    void event(const host::Event& event, const Sink& sink) override
    {
        if (event.kind == host::EventKind::kWayPoint)
            sink(event);
    }
    void finish(const Sink& sink) override { sink(support::fix(1717236000)); }
};

TEST_F(Download, FilterDecidesWhatIsWrittenAndWhatConsumersGet)
{
    WaypointFilter filter;
    NotingWriter consumer;
    request_.filters = {&filter};
    request_.consumers = {&consumer};
    const auto report = download([](const Status& status) {
        oneWaypoint(status);
        status->trackPoint({46, 7, 0, 5, 0}, {});
    });
    EXPECT_EQ(report.received, (RecordCounts{.waypoints = 1, .tracks = 1, .trackPoints = 1}));
    EXPECT_EQ(report.chosen, (RecordCounts{.waypoints = 1, .tracks = 1, .trackPoints = 1}));
    EXPECT_EQ(report.written, report.chosen);
    EXPECT_THAT(folder_.read("trip.gpx"), HasSubstr("<time>2024-06-01T10:00:00Z</time>"));
    EXPECT_THAT(consumer.times, ElementsAre(1717236000));
}

/// Adds one to the time of each track point, and holds nothing back.
class AddingFilter final : public host::EventFilter {
public:
    explicit AddingFilter(std::int64_t seconds) : seconds_(seconds) {}

    void event(const host::Event& event, const Sink& sink) override
    {
        auto changed = event;
        changed.point.time = changed.point.time * 10 + seconds_;
        sink(changed);
    }
    void finish(const Sink& sink) override { sink(support::fix(seconds_)); }

private:
    std::int64_t seconds_;
};

TEST_F(Download, FiltersPassOnToEachOtherInTheirOrder)
{
    AddingFilter first{1};
    AddingFilter second{2};
    NotingWriter consumer;
    request_.filters = {&first, &second};
    request_.consumers = {&consumer};
    const auto report = download([](const Status& status) {
        status->trackPoint({46, 7, 0, 5, 0}, {});
        allTransfers(status);
    });
    EXPECT_THAT(consumer.times, ElementsAre(512, 12, 2));
    EXPECT_EQ(report.received.trackPoints, 1U);
    EXPECT_EQ(report.written.trackPoints, 3U);
}

void twoJumps(const Status& status)
{
    status->newTrack({{"name", "A"}});
    status->trackPoint({46, 7, 0, 1717236000, 0}, {});
    status->trackPoint({47, 7, 0, 1717236001, 0}, {});
    status->trackPoint({46, 7, 0, 1717236002, 0}, {});
    status->newTrack({{"name", "B"}});
    status->trackPoint({50, 7, 0, 1717236003, 0}, {});
    allTransfers(status);
}

std::size_t countOf(const std::string& text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

TEST_F(Download, ImpossibleJumpWithinATrackBeginsASegment)
{
    const auto report = download(twoJumps);
    EXPECT_EQ(report.splits.tracks, 1U);
    EXPECT_EQ(report.splits.gaps, 2U);
    EXPECT_TRUE(report.splits.areJumps);
    const auto gpx = folder_.read("trip.gpx");
    EXPECT_EQ(countOf(gpx, "<trkseg>"), 4U);
    EXPECT_EQ(countOf(gpx, "<trkpt"), 4U);
    EXPECT_EQ(report.written, (RecordCounts{.tracks = 2, .trackPoints = 4}));
}

TEST_F(Download, TracksAreKeptWholeOnRequest)
{
    request_.gapRule.isOff = true;
    const auto report = download(twoJumps);
    EXPECT_EQ(report.splits.gaps, 0U);
    EXPECT_EQ(countOf(folder_.read("trip.gpx"), "<trkseg>"), 2U);
}

TEST_F(Download, JumpIsLookedForInWhatTheFiltersLeave)
{
    host::ChoiceFilter filter{{.times = host::TimeRange{1717236000, 1717236000}}};
    request_.filters = {&filter};
    const auto report = download(twoJumps);
    EXPECT_EQ(report.splits.gaps, 0U);
    EXPECT_EQ(report.written, (RecordCounts{.tracks = 1, .trackPoints = 1}));
}

TEST_F(Download, ProgressBeginsWithReadingAndEndsWithEachOperation)
{
    std::vector<TransferPhase> phases;
    request_.progress = [&](const host::TransferProgress& progress) {
        phases.push_back(progress.phase);
    };
    (void)download(allTransfers);
    ASSERT_GE(phases.size(), 2U);
    EXPECT_EQ(phases.front(), TransferPhase::kReading);
    EXPECT_EQ(phases.back(), TransferPhase::kFinished);
}

TEST_F(Download, ProgressOfASerialDriverNamesThePort)
{
    std::vector<host::TransferProgress> all;
    request_.progress = [&](const host::TransferProgress& progress) { all.push_back(progress); };
    request_.location = "/dev/some";
    driver_.serial = true;
    (void)download(allTransfers);
    EXPECT_EQ(all.front().phase, TransferPhase::kLookingForReceiver);
    EXPECT_EQ(all.front().location, "/dev/some");
}

TEST_F(Download, OutputHasItsTimeAndItsReceiver)
{
    const auto before = std::time(nullptr);
    driver_.name = "Some Receiver";
    (void)download([](const Status& status) {
        status->newTrack({{"name", "T"}});
        allTransfers(status);
    });
    const auto gpx = folder_.read("trip.gpx");
    EXPECT_THAT(gpx, HasSubstr("<desc>From Some Receiver</desc><time>"));
    EXPECT_THAT(gpx, HasSubstr("<trk><name>T</name><src>Some Receiver</src>"));
    const auto time = gpx.substr(gpx.find("<time>") + 6, 20);
    std::tm read{};
    ASSERT_NE(::strptime(time.c_str(), "%Y-%m-%dT%H:%M:%SZ", &read), nullptr) << time;
    EXPECT_GE(::timegm(&read), before);
    EXPECT_LE(::timegm(&read), std::time(nullptr));
}

TEST_F(Download, OutputHasAFixedTimeIfTheEnvironmentHasOne)
{
    const auto written = [this](const char* time) {
        ::setenv("SOURCE_DATE_EPOCH", time, 1);
        (void)download(allTransfers);
        ::unsetenv("SOURCE_DATE_EPOCH");
        return folder_.read("trip.gpx");
    };
    EXPECT_THAT(written("1717236000"), HasSubstr("<time>2024-06-01T10:00:00Z</time>"));
    EXPECT_THAT(written("0"), HasSubstr("<time>1970-01-01T00:00:00Z</time>"));
    EXPECT_THAT(written("253402300799"), HasSubstr("<time>9999-12-31T23:59:59Z</time>"));
    for (const char* const time : {"soon", "-1", "253402300800"})
        EXPECT_THAT(written(time), HasSubstr("<time>2")) << time;
    EXPECT_THAT(written("soon"), testing::Not(HasSubstr("<time>2024-06-01T10:00:00Z</time>")));
}

TEST_F(Download, OutputOfFilesNamesTheFileOfEachTrackAndNoReceiver)
{
    request_.sourceFiles = {"folder/a.log", "b.log"};
    driver_.name = "Some Receiver";
    (void)download([](const Status& status) {
        status->newTrack({{"name", "T"}});
        allTransfers(status);
    });
    const auto gpx = folder_.read("trip.gpx");
    EXPECT_THAT(gpx, HasSubstr("<trk><name>T</name><src>a.log</src><trkseg>\n</trkseg></trk>\n"
                               "<trk><name>T</name><src>b.log</src>"));
    EXPECT_THAT(gpx, testing::Not(HasSubstr("Some Receiver")));
}

TEST_F(Download, HundredThousandPointsPassThroughTheQueue)
{
    const auto report = download([](const Status& status) {
        status->startTransfer(TransferKind::kTracks);
        status->newTrack({{"name", "Long"}});
        for (int i = 0; i < 100000; ++i)
            status->trackPoint({0.5, 0.5, 0, i, 0}, {});
        allTransfers(status);
    });
    EXPECT_EQ(report.written.trackPoints, 100000U);
    const auto gpx = folder_.read("trip.gpx");
    EXPECT_EQ(std::count(gpx.begin(), gpx.end(), '\n'), 3 + 1 + 100000 + 1 + 1);
}

} // namespace
