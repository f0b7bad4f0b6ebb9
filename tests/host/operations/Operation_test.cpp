// SPDX-License-Identifier: MIT

#include "host/operations/Operation.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "host/base/HostError.h"
#include "support/TemporaryFolder.h"

#include <platform/System/DetachedThread.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

using gps::TransferKind;
using host::EventBatch;
using host::EventKind;
using support::errorAbout;
using testing::ElementsAre;
using testing::IsEmpty;
using Status = gps::GPSPlugInProtocol::Status;

struct Run {
    host::Outcome outcome;
    std::vector<EventKind> kinds;
    std::thread::id consumer;
};

Run run(const host::OperationStart& start)
{
    Run run;
    run.outcome = host::runOperation(start, [&](const EventBatch& batch) {
        run.consumer = std::this_thread::get_id();
        for (const auto& event : batch)
            run.kinds.push_back(event.kind);
    });
    return run;
}

TEST(Operation, ReturnsAfterTheWorkersIdleReport)
{
    const auto result = run([](const Status& status) {
        return gps::detachNewThread([status] {
            status->gpsStateChange(1);
            status->startTransfer(TransferKind::kTracks);
            status->endTransfer(TransferKind::kTracks);
            status->gpsStateChange(0);
        });
    });
    EXPECT_EQ(result.outcome.error, std::nullopt);
    EXPECT_THAT(result.kinds, ElementsAre(EventKind::kStateChange, EventKind::kStartTransfer,
                                          EventKind::kEndTransfer, EventKind::kStateChange));
    EXPECT_THAT(result.outcome.transfers, ElementsAre(TransferKind::kTracks));
}

TEST(Operation, LackOfMemoryIsAnErrorOfItsOwn)
{
    const auto result =
        run([](const Status&) -> std::optional<gps::Error> { throw std::bad_alloc{}; });
    EXPECT_EQ(result.outcome.error->description(), "There is not enough memory");
}

TEST(Operation, CallsFromTheCallersThreadAreConsumedOnAnother)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        status->startTransfer(TransferKind::kTracks);
        for (int i = 0; i < 100000; ++i) // more than the queue holds
            status->trackPoint({}, {});
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_EQ(result.kinds.size(), 100002U);
    EXPECT_NE(result.consumer, std::this_thread::get_id());
}

TEST(Operation, StatusObjectOutlivesTheRunWhileAWorkerHoldsIt)
{
    std::weak_ptr<gps::GPSOutputReceiver> seen;
    Status held;
    (void)run([&](const Status& status) -> std::optional<gps::Error> {
        seen = held = status;
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_FALSE(seen.expired());
    held->gpsStateChange(0);
    held.reset();
    EXPECT_TRUE(seen.expired());
}

TEST(Operation, ReturnedErrorIsTheOutcome)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        return gps::Error{"some", -1};
    });
    EXPECT_EQ(result.outcome.error, (gps::Error{"some", -1}));
    EXPECT_THAT(result.kinds, ElementsAre(EventKind::kStateChange));
}

TEST(Operation, ReturnedErrorEndsTheRunAlthoughTheIdleReportNeverCame)
{
    EXPECT_TRUE(run([](const Status&) {
                    return std::optional{gps::Error{"some", -1}};
                }).outcome.error);
}

TEST(Operation, RangeErrorBecomesAnErrorOfItsOwnDomain)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        throw gps::RangeError{"PSOME", 7, 3};
    });
    ASSERT_TRUE(result.outcome.error);
    EXPECT_EQ(result.outcome.error->domain(), "RangeError");
    EXPECT_EQ(result.outcome.error->code(), 0);
    EXPECT_EQ(result.outcome.error->description(), gps::RangeError("PSOME", 7, 3).what());
}

TEST(Operation, AnyOtherExceptionBecomesAnErrorOfTheHost)
{
    const auto result =
        run([](const Status&) -> std::optional<gps::Error> { throw std::runtime_error{"broken"}; });
    ASSERT_TRUE(result.outcome.error);
    EXPECT_EQ(result.outcome.error->domain(), host::kHostErrorDomain);
    const auto unusual = run([](const Status&) -> std::optional<gps::Error> { throw 7; });
    ASSERT_TRUE(unusual.outcome.error);
    EXPECT_EQ(unusual.outcome.error->domain(), host::kHostErrorDomain);
}

TEST(Operation, KindsWhoseSendingEndedAreCollected)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        for (const auto kind : {TransferKind::kTracks, TransferKind::kRoutes}) {
            status->startSending("label", kind);
            status->endSending(kind);
        }
        status->startSending("label", TransferKind::kWaypoints);
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_THAT(result.outcome.sendings, ElementsAre(TransferKind::kTracks, TransferKind::kRoutes));
    EXPECT_THAT(result.outcome.transfers, IsEmpty());
}

TEST(Operation, ReportedErrorsAreCollected)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        status->error({"some", -4});
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_THAT(result.outcome.reported, ElementsAre(gps::Error{"some", -4}));
    EXPECT_EQ(result.outcome.error, std::nullopt);
}

TEST(Operation, LogLinesAreKeptUpToABound)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        for (std::size_t i = 0; i < host::Outcome::kMostLines + 3; ++i)
            gps::logLine("line " + std::to_string(i) + "\nand its end");
        gps::logError("Error", {"some", 1}); // an error without a path
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_EQ(result.outcome.logLines.size(), host::Outcome::kMostLines);
    EXPECT_EQ(result.outcome.logLines.front(), "line 0 and its end");
    EXPECT_EQ(result.outcome.moreLines, 4U);
    EXPECT_THAT(result.outcome.loggedErrors, IsEmpty());
}

TEST(Operation, LoggedErrorsKnowTheirTransferAndWhetherTheyAreAboutAFolder)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("file", "");
    const auto result = run([&](const Status& status) -> std::optional<gps::Error> {
        gps::logError("Reader", errorAbout(folder.path()));
        status->startTransfer(TransferKind::kTracks);
        gps::logError("Reader", errorAbout(file));
        gps::logError("Reader", errorAbout(folder.path("gone")));
        status->gpsStateChange(0);
        return std::nullopt;
    });
    const auto& errors = result.outcome.loggedErrors;
    ASSERT_EQ(errors.size(), 3U);
    EXPECT_TRUE(errors[0].isFolder);
    EXPECT_EQ(errors[0].transfersBegun, 0U);
    EXPECT_FALSE(errors[1].isFolder);
    EXPECT_EQ(errors[1].transfersBegun, 1U);
    EXPECT_EQ(errors[1].error, errorAbout(file));
    EXPECT_FALSE(errors[2].isFolder);
}

TEST(Operation, LoggedErrorsAreKeptUpToABound)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        for (std::size_t i = 0; i < host::Outcome::kMostErrors + 2; ++i)
            gps::logError("Reader", errorAbout("/nowhere"));
        status->gpsStateChange(0);
        return std::nullopt;
    });
    EXPECT_EQ(result.outcome.loggedErrors.size(), host::Outcome::kMostErrors);
    EXPECT_EQ(result.outcome.moreErrors, 2U);
}

TEST(Operation, LinesLoggedAfterTheRunAreNotKept)
{
    const auto result = run([](const Status& status) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        return std::nullopt;
    });
    gps::logLine("later");
    EXPECT_THAT(result.outcome.logLines, IsEmpty());
}

TEST(Operation, RequestedKindsAreThoseOfTheDriverThatNoOptionSwitchesOff)
{
    support::FakeDriver driver;
    EXPECT_THAT(
        host::requestedKinds({}, driver),
        ElementsAre(TransferKind::kWaypoints, TransferKind::kRoutes, TransferKind::kTracks));
    EXPECT_THAT(host::requestedKinds({{"routes", false}}, driver),
                ElementsAre(TransferKind::kWaypoints, TransferKind::kTracks));
    EXPECT_THAT(host::requestedKinds({{"sourcePath", "a.log"}}, driver), IsEmpty());
    driver.capabilities = "routes";
    EXPECT_THAT(host::requestedKinds({{"routes", true}}, driver),
                ElementsAre(TransferKind::kRoutes));
    driver.capabilities = "mytracks,sendwpt";
    EXPECT_THAT(host::requestedKinds({}, driver), IsEmpty());
}

TEST(Operation, KindsOfASerialDriverAreRequestedOnlyByAnOption)
{
    support::FakeDriver driver;
    driver.serial = true;
    EXPECT_THAT(host::requestedKinds({}, driver), IsEmpty());
    EXPECT_THAT(host::requestedKinds(
                    {{"tracks", true}, {"routes", false}, {"waypoints", gps::Array{}}}, driver),
                ElementsAre(TransferKind::kTracks));
}

TEST(Operation, DriverCanSendIfACapabilityBeginsWithSend)
{
    support::FakeDriver driver;
    for (const auto* const words : {"sendwpt", "tracks,sendtrk", "tracks,sendtrk,routes"}) {
        driver.capabilities = words;
        EXPECT_TRUE(host::canSend(driver)) << words;
    }
    for (const auto* const words : {"", ",", "tracks,routes", "tracks,resend"}) {
        driver.capabilities = words;
        EXPECT_FALSE(host::canSend(driver)) << words;
    }
}

TEST(Operation, KindsHaveTheWordsOfTheirOptions)
{
    EXPECT_EQ(host::kindName(TransferKind::kTracks), "tracks");
    EXPECT_EQ(host::kindName(TransferKind::kRoutes), "routes");
    EXPECT_EQ(host::kindName(TransferKind::kWaypoints), "waypoints");
    EXPECT_EQ(host::kindName(static_cast<TransferKind>(99)), "unknown");
}

TEST(Operation, IsAbandonedWhenNobodyWaitsAnyMore)
{
    const auto released = std::make_shared<std::atomic<bool>>(false);
    const auto outcome = host::runOperation(
        [&](const Status& status) {
            return gps::detachNewThread([status, released] {
                status->startTransfer(TransferKind::kTracks);
                while (!*released)
                    std::this_thread::yield();
                for (int i = 0; i < 100000; ++i) // more than the queue holds
                    status->trackPoint({}, {});
                status->gpsStateChange(0);
                *released = false;
            });
        },
        [](const EventBatch&) {}, [] { return false; });
    EXPECT_TRUE(outcome.isAbandoned);
    EXPECT_TRUE(host::hasAbandonedOperation());
    *released = true;
    while (*released) // the worker is not blocked by a full queue
        std::this_thread::yield();
}

TEST(Operation, IsNotAbandonedOnceItHasEnded)
{
    const auto outcome = host::runOperation(
        [](const Status& status) -> std::optional<gps::Error> {
            status->gpsStateChange(0);
            return std::nullopt;
        },
        [](const EventBatch&) {}, [calls = 0]() mutable { return ++calls < 100; });
    EXPECT_FALSE(outcome.isAbandoned);
}

} // namespace
