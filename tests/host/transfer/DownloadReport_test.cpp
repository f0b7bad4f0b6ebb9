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
    EXPECT_TRUE(unreadable().isComplete());
    EXPECT_FALSE(incomplete().isComplete());
    for (auto spoil : {+[](OperationReport& report) {
                           report.errors = {{"some", 1}};
                       },
                       +[](OperationReport& report) { report.isReceiverSilent = true; },
                       +[](OperationReport& report) { report.isCutShort = true; }}) {
        auto report = good();
        spoil(report);
        EXPECT_FALSE(report.isComplete());
        EXPECT_FALSE(report.succeeded());
    }
}

TEST(DownloadReport, OperationWithUnreadableFilesDoesNotSucceed)
{
    EXPECT_TRUE(good().succeeded());
    EXPECT_FALSE(unreadable().succeeded());
    auto report = good();
    report.moreUnreadable = 1;
    EXPECT_FALSE(report.succeeded());
}

TEST(DownloadReport, NothingIsReceivedFromASilentReceiver)
{
    auto report = good();
    EXPECT_TRUE(report.hasReceived());
    report.isReceiverSilent = true;
    EXPECT_FALSE(report.hasReceived());
    EXPECT_FALSE(OperationReport{}.hasReceived());
}

TEST(DownloadReport, OneBadOperationDecidesForTheDownload)
{
    EXPECT_TRUE((DownloadReport{.operations = {good(), good()}}).succeeded());
    EXPECT_FALSE((DownloadReport{.operations = {good(), unreadable()}}).succeeded());
    EXPECT_TRUE((DownloadReport{.operations = {good(), unreadable()}}).isComplete());
    EXPECT_FALSE((DownloadReport{.operations = {incomplete(), good()}}).isComplete());
}

TEST(DownloadReport, OneGoodOperationReceivesForTheDownload)
{
    EXPECT_TRUE((DownloadReport{.operations = {incomplete(), good()}}).hasReceived());
    EXPECT_FALSE((DownloadReport{.operations = {incomplete()}}).hasReceived());
}

TEST(DownloadReport, FailureOfTheOutputIsNotOneOfTheOperations)
{
    const DownloadReport report{.operations = {good()}, .output = {.error = gps::Error{"some", 1}}};
    EXPECT_TRUE(report.operationsSucceeded());
    EXPECT_FALSE(report.succeeded());
}

} // namespace
