// SPDX-License-Identifier: MIT

#include "host/transfer/DownloadReport.h"

#include <gtest/gtest.h>

namespace {

using host::DownloadReport;
using host::OperationReport;

OperationReport good()
{
    return {.received = {gps::TransferKind::kTracks}};
}

OperationReport incomplete()
{
    return {.missing = {gps::TransferKind::kTracks}};
}

OperationReport unreadable()
{
    return {.received = {gps::TransferKind::kTracks}, .unreadable = {{"some", 1}}};
}

TEST(DownloadReport, EachSortOfFailureMakesAnOperationIncomplete)
{
    EXPECT_TRUE(good().isComplete());
    EXPECT_FALSE(incomplete().isComplete());
    for (auto spoil : {+[](OperationReport& report) {
                           report.errors = {{"some", 1}};
                       },
                       +[](OperationReport& report) { report.voice = gps::LineVoice::kNothing; },
                       +[](OperationReport& report) { report.voice = gps::LineVoice::kNoise; },
                       +[](OperationReport& report) { report.voice = gps::LineVoice::kNmea; },
                       +[](OperationReport& report) { report.gaps = {{}}; },
                       +[](OperationReport& report) {
                           report.unreadable = {{"some", 1}};
                       },
                       +[](OperationReport& report) { report.moreUnreadable = 1; },
                       +[](OperationReport& report) { report.isInterrupted = true; },
                       +[](OperationReport& report) { report.isAbandoned = true; }}) {
        auto report = good();
        spoil(report);
        EXPECT_FALSE(report.isComplete());
    }
}

TEST(DownloadReport, AnswerOfAReceiverIsNoFailure)
{
    auto report = good();
    report.voice = gps::LineVoice::kReceiver;
    EXPECT_TRUE(report.isComplete());
}

TEST(DownloadReport, NothingIsReceivedFromASilentReceiver)
{
    auto report = good();
    EXPECT_TRUE(report.hasReceived());
    report.voice = gps::LineVoice::kNothing;
    EXPECT_FALSE(report.hasReceived());
    EXPECT_FALSE(OperationReport{}.hasReceived());
}

TEST(DownloadReport, OneBadOperationDecidesForTheDownload)
{
    EXPECT_TRUE((DownloadReport{.operations = {good(), good()}}).succeeded());
    EXPECT_FALSE((DownloadReport{.operations = {good(), unreadable()}}).succeeded());
    EXPECT_FALSE((DownloadReport{.operations = {incomplete(), good()}}).isComplete());
}

TEST(DownloadReport, DownloadThatNeverBeganIsNotComplete)
{
    EXPECT_FALSE(DownloadReport{}.isComplete());
    EXPECT_FALSE(DownloadReport{}.succeeded());
}

TEST(DownloadReport, OneInterruptedOperationInterruptsTheDownload)
{
    auto stopped = good();
    stopped.isInterrupted = true;
    EXPECT_TRUE((DownloadReport{.operations = {good(), stopped}}).isInterrupted());
    EXPECT_FALSE((DownloadReport{.operations = {good(), good()}}).isInterrupted());
}

TEST(DownloadReport, LinesAreDamagedOnTheDeviceButNotOnASerialLine)
{
    auto report = good();
    EXPECT_FALSE((DownloadReport{.operations = {report}}).hasDamagedLines());
    gps::FileAccount total{.kind = "tracks"};
    total.lines.skipped[static_cast<std::size_t>(gps::SkipReason::kWrongChecksum)] = 1;
    report.account = gps::TransferAccount{.totals = {total}};
    EXPECT_TRUE((DownloadReport{.operations = {good(), report}}).hasDamagedLines());
    report.isSerial = true;
    EXPECT_FALSE((DownloadReport{.operations = {report}}).hasDamagedLines());
}

TEST(DownloadReport, OneGoodOperationReceivesForTheDownload)
{
    EXPECT_TRUE((DownloadReport{.operations = {incomplete(), good()}}).hasReceived());
    EXPECT_FALSE((DownloadReport{.operations = {incomplete()}}).hasReceived());
}

TEST(DownloadReport, FailureOfTheOutputIsNotOneOfTheOperations)
{
    const DownloadReport report{.operations = {good()}, .output = {.error = gps::Error{"some", 1}}};
    EXPECT_TRUE(report.isComplete());
    EXPECT_FALSE(report.succeeded());
}

} // namespace
