// SPDX-License-Identifier: MIT

#include "host/transfer/OperationReport.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using gps::TransferKind;
using host::LoggedError;
using host::Outcome;
using support::errorAbout;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::vector<TransferKind> kAllKinds{TransferKind::kWaypoints, TransferKind::kRoutes,
                                          TransferKind::kTracks};

class OperationReportTest : public testing::Test {
protected:
    [[nodiscard]] host::OperationReport report() const
    {
        return host::reportOn(outcome_, driver_, options_, "/some/device", wasHeard_);
    }

    support::FakeDriver driver_;
    gps::Dictionary options_;
    bool wasHeard_ = false;
    Outcome outcome_{.transfers = kAllKinds};
};

TEST_F(OperationReportTest, AllRequestedKindsMakeASuccess)
{
    const auto report = this->report();
    EXPECT_TRUE(report.succeeded());
    EXPECT_EQ(report.requested, kAllKinds);
    EXPECT_EQ(report.received, kAllKinds);
    EXPECT_EQ(report.location, "/some/device");
    EXPECT_EQ(report.sourceFile, "");
    EXPECT_FALSE(report.isSerial);
}

TEST_F(OperationReportTest, KindThatNeverArrivedIsMissing)
{
    outcome_.transfers = {TransferKind::kRoutes};
    EXPECT_THAT(report().missing, ElementsAre(TransferKind::kWaypoints, TransferKind::kTracks));
    EXPECT_FALSE(report().isComplete());
}

TEST_F(OperationReportTest, RangeErrorOfAnImportGetsTheNameOfItsFile)
{
    options_ = {{"sourcePath", "trip.log"}};
    outcome_.error = gps::Error{gps::kRangeErrorDomain, 0, {{gps::kErrorDescriptionKey, "Short"}}};
    const auto errors = report().errors;
    ASSERT_THAT(errors, SizeIs(1));
    EXPECT_EQ(errors[0].domain(), gps::kRangeErrorDomain);
    EXPECT_EQ(errors[0].description(), "Short");
    EXPECT_EQ(errors[0].path(), "trip.log");
    EXPECT_THAT(errors[0].suggestion().value_or(""), testing::HasSubstr("Repair or delete"));
}

TEST_F(OperationReportTest, AnotherErrorOfAnImportStaysAsItIs)
{
    options_ = {{"sourcePath", "trip.log"}};
    outcome_.error = errorAbout("/some/file");
    EXPECT_THAT(report().errors, ElementsAre(errorAbout("/some/file")));
}

TEST_F(OperationReportTest, KindThatWasNotRequestedIsNotMissing)
{
    options_ = {{"routes", false}, {"tracks", false}};
    outcome_.transfers = {TransferKind::kWaypoints};
    EXPECT_TRUE(report().succeeded());
}

TEST_F(OperationReportTest, KindThatTheDriverCannotAcquireIsNotMissing)
{
    driver_.capabilities = "waypoints";
    outcome_.transfers = {TransferKind::kWaypoints};
    EXPECT_TRUE(report().succeeded());
}

TEST_F(OperationReportTest, NothingIsMissingIfAnErrorExplainsIt)
{
    outcome_.transfers = {};
    outcome_.error = gps::Error{"some", -1};
    EXPECT_THAT(report().missing, IsEmpty());
    outcome_.error.reset();
    outcome_.reported = {{"some", -1}};
    EXPECT_THAT(report().missing, IsEmpty());
    EXPECT_FALSE(report().isComplete());
}

TEST_F(OperationReportTest, ErrorsAreThoseReportedAndThenTheOneReturned)
{
    outcome_.reported = {{"some", -4}, {"some", -5}};
    outcome_.error = gps::Error{"some", -1};
    EXPECT_THAT(report().errors, ElementsAre(gps::Error{"some", -4}, gps::Error{"some", -5},
                                             gps::Error{"some", -1}));
}

TEST_F(OperationReportTest, ImportHasASourceFileAndRequestsNoKind)
{
    options_ = {{"sourcePath", "a.log"}};
    outcome_.transfers = {TransferKind::kTracks};
    const auto report = this->report();
    EXPECT_EQ(report.sourceFile, "a.log");
    EXPECT_EQ(report.location, "");
    EXPECT_THAT(report.requested, IsEmpty());
    EXPECT_TRUE(report.succeeded());
}

TEST_F(OperationReportTest, ImportByASerialDriverIsNotASerialSession)
{
    driver_.serial = true;
    options_ = {{"sourcePath", "a.log"}};
    EXPECT_FALSE(report().isSerial);
    EXPECT_FALSE(report().isReceiverSilent);
}

TEST_F(OperationReportTest, UnreadableFileFailsButLeavesTheRestComplete)
{
    outcome_.loggedErrors = {{errorAbout("/some/file"), false, 3}};
    const auto report = this->report();
    EXPECT_THAT(report.unreadable, ElementsAre(errorAbout("/some/file")));
    EXPECT_TRUE(report.isComplete());
    EXPECT_FALSE(report.succeeded());
}

TEST_F(OperationReportTest, UnreadableFileThatTheReturnedErrorNamesIsNotRepeated)
{
    outcome_.error = errorAbout("/some/file");
    outcome_.loggedErrors = {{errorAbout("/some/file"), false, 0},
                             {errorAbout("/other/file"), false, 0}};
    EXPECT_THAT(report().unreadable, ElementsAre(errorAbout("/other/file")));
}

TEST_F(OperationReportTest, FolderBetweenTheFilesIsHarmless)
{
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 3}};
    EXPECT_TRUE(report().succeeded());
    EXPECT_THAT(report().unreadable, IsEmpty());
}

TEST_F(OperationReportTest, FolderCountsWhenAKindIsMissing)
{
    outcome_.transfers = {TransferKind::kWaypoints};
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 1}};
    EXPECT_THAT(report().unreadable, SizeIs(1));
    EXPECT_FALSE(report().isCutShort) << "the missing kind says it already";
}

TEST_F(OperationReportTest, FolderCountsForAnImport)
{
    options_ = {{"sourcePath", "/some/folder"}};
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 0}};
    EXPECT_THAT(report().unreadable, SizeIs(1));
}

TEST_F(OperationReportTest, AnythingUnreadableWithinTheLastWaypointsCutsThemShort)
{
    options_ = {{"routes", false}, {"tracks", false}};
    outcome_.transfers = {TransferKind::kWaypoints};
    for (const bool isFolder : {false, true}) {
        outcome_.loggedErrors = {{errorAbout("/some/path"), isFolder, 1}};
        EXPECT_TRUE(report().isCutShort);
        EXPECT_THAT(report().unreadable, SizeIs(1));
        EXPECT_FALSE(report().isComplete());
    }
}

TEST_F(OperationReportTest, UnreadableFileBeforeTheLastWaypointsDoesNotCutThemShort)
{
    options_ = {{"routes", false}};
    outcome_.transfers = {TransferKind::kTracks, TransferKind::kWaypoints};
    outcome_.loggedErrors = {{errorAbout("/some/file"), false, 1}};
    EXPECT_FALSE(report().isCutShort);
}

TEST_F(OperationReportTest, UnreadableFileWithoutAnyTransferCutsNothingShort)
{
    options_ = {{"waypoints", false}, {"routes", false}, {"tracks", false}};
    outcome_.transfers = {};
    outcome_.loggedErrors = {{errorAbout("/some/file"), false, 0}};
    EXPECT_FALSE(report().isCutShort);
}

TEST_F(OperationReportTest, DamagedSentenceCutsAnyKindShort)
{
    const gps::Error damaged{
        gps::kRangeErrorDomain, 0, {{gps::kErrorPathKey, std::string{"/some/file"}}}};
    outcome_.loggedErrors = {{damaged, false, 1}};
    EXPECT_TRUE(report().isCutShort);
}

TEST_F(OperationReportTest, ErrorsBeyondTheLogsBoundCount)
{
    outcome_.moreErrors = 2;
    EXPECT_EQ(report().moreUnreadable, 2U);
    EXPECT_FALSE(report().succeeded());
}

TEST_F(OperationReportTest, LogIsPassedOn)
{
    outcome_.logLines = {"a line"};
    outcome_.moreLines = 5;
    EXPECT_THAT(report().logLines, ElementsAre("a line"));
    EXPECT_EQ(report().moreLogLines, 5U);
}

TEST_F(OperationReportTest, SilentSerialReceiverIsAFailure)
{
    driver_.serial = true;
    EXPECT_TRUE(report().isSerial);
    EXPECT_TRUE(report().isReceiverSilent);
    EXPECT_FALSE(report().isComplete());
    EXPECT_FALSE(report().hasReceived());
    wasHeard_ = true;
    EXPECT_TRUE(report().succeeded());
}

TEST_F(OperationReportTest, SilenceIsNotReportedBesideAReturnedError)
{
    driver_.serial = true;
    outcome_.error = gps::Error{"some", -1};
    EXPECT_FALSE(report().isReceiverSilent);
    EXPECT_EQ(report().portFailure, std::nullopt);
}

TEST_F(OperationReportTest, ReportedErrorOfASerialDriverComesWithTheStateOfThePort)
{
    const support::TemporaryFolder folder;
    driver_.serial = true;
    outcome_.reported = {{"some", -4}};
    const auto report = host::reportOn(outcome_, driver_, options_, folder.path("gone"), wasHeard_);
    ASSERT_TRUE(report.portFailure);
    EXPECT_EQ(report.portFailure->path(), folder.path("gone"));
    EXPECT_FALSE(report.isReceiverSilent);
    ASSERT_THAT(report.errors, SizeIs(1));
    EXPECT_TRUE(report.errors[0].description()) << "a wordless error has got words";
}

TEST_F(OperationReportTest, PortIsNotLookedAtForADeviceWithFiles)
{
    outcome_.reported = {{"some", -4}};
    EXPECT_EQ(report().portFailure, std::nullopt);
    EXPECT_THAT(report().errors, ElementsAre(gps::Error{"some", -4}));
}

} // namespace
