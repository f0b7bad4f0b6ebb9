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
    [[nodiscard]] host::OperationReport report() const { return reportWith(driver_); }

    [[nodiscard]] host::OperationReport reportWith(const support::FakeDriver& driver) const
    {
        return host::reportOn(
            outcome_, driver,
            {.options = options_, .location = "/some/device", .wasHeard = wasHeard_});
    }

    support::FakeDriver driver_;
    gps::Dictionary options_;
    bool wasHeard_ = false;
    Outcome outcome_{.transfers = kAllKinds};
};

TEST_F(OperationReportTest, AllRequestedKindsMakeASuccess)
{
    const auto report = this->report();
    EXPECT_TRUE(report.isComplete());
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
    EXPECT_TRUE(report().isComplete());
}

TEST_F(OperationReportTest, KindThatTheDriverCannotAcquireIsNotMissing)
{
    driver_.capabilities = "waypoints";
    outcome_.transfers = {TransferKind::kWaypoints};
    EXPECT_TRUE(report().isComplete());
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
    EXPECT_TRUE(report.isComplete());
}

TEST_F(OperationReportTest, ImportByASerialDriverIsNotASerialSession)
{
    driver_.serial = true;
    options_ = {{"sourcePath", "a.log"}};
    EXPECT_FALSE(report().isSerial);
    EXPECT_EQ(report().voice, std::nullopt);
}

TEST_F(OperationReportTest, UnreadableFileMakesTheOperationIncomplete)
{
    outcome_.loggedErrors = {{errorAbout("/some/file"), false, 3}};
    const auto report = this->report();
    EXPECT_THAT(report.unreadable, ElementsAre(errorAbout("/some/file")));
    EXPECT_FALSE(report.isComplete());
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
    EXPECT_TRUE(report().isComplete());
    EXPECT_THAT(report().unreadable, IsEmpty());
}

TEST_F(OperationReportTest, FolderCountsWhenAKindIsMissing)
{
    outcome_.transfers = {TransferKind::kWaypoints};
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 1}};
    EXPECT_THAT(report().unreadable, SizeIs(1));
}

TEST_F(OperationReportTest, FolderCountsForAnImport)
{
    options_ = {{"sourcePath", "/some/folder"}};
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 0}};
    EXPECT_THAT(report().unreadable, SizeIs(1));
}

TEST_F(OperationReportTest, FolderCountsWithinTheLastWaypointsWhichItCutsShort)
{
    options_ = {{"routes", false}};
    outcome_.transfers = {TransferKind::kTracks, TransferKind::kWaypoints};
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 2}};
    EXPECT_THAT(report().unreadable, SizeIs(1));
    outcome_.loggedErrors = {{errorAbout("/some/folder"), true, 1}};
    EXPECT_THAT(report().unreadable, IsEmpty());
}

TEST_F(OperationReportTest, UnreadableFileIsReportedWithItsCause)
{
    const gps::Error reading{"some",
                             -3,
                             {{gps::kErrorDescriptionKey, "Couldn't read track data from device"},
                              {gps::kErrorSuggestionKey, "Make sure it is connected"},
                              {gps::kErrorPathKey, "/some/file"}}};
    outcome_.loggedErrors = {
        {reading.causedBy({"other", 1, {{gps::kErrorDescriptionKey, "It is not plain ASCII"}}}),
         false, 3}};
    const auto unreadable = report().unreadable;
    ASSERT_THAT(unreadable, SizeIs(1));
    EXPECT_EQ(unreadable[0].description(), "It is not plain ASCII");
    EXPECT_EQ(unreadable[0].suggestion(), std::nullopt);
    EXPECT_EQ(unreadable[0].path(), "/some/file");
}

TEST_F(OperationReportTest, PathOfTheAccountAndOfTheLogIsReportedOnce)
{
    support::AccountingDriver driver;
    driver.account.files = {{.kind = "tracks", .path = "/a", .error = errorAbout("/a")}};
    driver.account.unseen = {{"waypoints", "/b", errorAbout("/b")}};
    outcome_.loggedErrors = {{errorAbout("/a"), false, 3}, {errorAbout("/c"), false, 3}};
    const auto report = reportWith(driver);
    std::vector<std::string> paths;
    for (const auto& error : report.unreadable)
        paths.push_back(error.path().value_or(""));
    EXPECT_THAT(paths, ElementsAre("/b", "/a", "/c"));
    EXPECT_FALSE(report.isComplete());
}

TEST_F(OperationReportTest, AccountOfAnOperationThatHasNotEndedIsNotAskedFor)
{
    const support::AccountingDriver driver;
    EXPECT_TRUE(reportWith(driver).account);
    outcome_.isAbandoned = true;
    EXPECT_FALSE(reportWith(driver).account);
    EXPECT_TRUE(reportWith(driver).isAbandoned);
    EXPECT_FALSE(report().account) << "the driver keeps none";
}

TEST_F(OperationReportTest, PhaseWithoutItsEndIsAGapOfASerialSession)
{
    support::AccountingDriver driver;
    driver.account.phases = {{.kind = "tracks", .end = gps::PhaseEnd::kSilence}};
    EXPECT_THAT(reportWith(driver).gaps, IsEmpty());
    driver.serial = true;
    EXPECT_THAT(reportWith(driver).gaps, SizeIs(1));
    EXPECT_FALSE(reportWith(driver).isComplete());
    driver.account.phases[0].end = gps::PhaseEnd::kEnd;
    EXPECT_TRUE(reportWith(driver).isComplete());
}

TEST_F(OperationReportTest, VoiceOfTheLineIsWhatTheDriverHeard)
{
    support::AccountingDriver driver;
    driver.serial = true;
    driver.account.phases = {{.kind = "tracks", .end = gps::PhaseEnd::kSilence}};
    for (const auto voice :
         {gps::LineVoice::kNothing, gps::LineVoice::kNoise, gps::LineVoice::kNmea}) {
        driver.voice = voice;
        EXPECT_EQ(reportWith(driver).voice, voice);
        EXPECT_THAT(reportWith(driver).gaps, IsEmpty()) << "that nobody answered says it all";
        EXPECT_FALSE(reportWith(driver).hasReceived());
    }
}

TEST_F(OperationReportTest, OperationThatTheUserStoppedIsInterrupted)
{
    const auto report = host::reportOn(outcome_, driver_, {.isStoppedByUser = true});
    EXPECT_TRUE(report.isInterrupted);
    EXPECT_FALSE(report.isComplete());
}

TEST_F(OperationReportTest, ErrorsBeyondTheLogsBoundCount)
{
    outcome_.moreErrors = 2;
    EXPECT_EQ(report().moreUnreadable, 2U);
    EXPECT_FALSE(report().isComplete());
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
    EXPECT_EQ(report().voice, gps::LineVoice::kNothing);
    EXPECT_FALSE(report().isComplete());
    EXPECT_FALSE(report().hasReceived());
    wasHeard_ = true;
    EXPECT_TRUE(report().isComplete());
}

TEST_F(OperationReportTest, SilenceIsNotReportedBesideAReturnedError)
{
    driver_.serial = true;
    outcome_.error = gps::Error{"some", -1};
    EXPECT_EQ(report().voice, std::nullopt);
    EXPECT_EQ(report().portFailure, std::nullopt);
}

TEST_F(OperationReportTest, ReportedErrorOfASerialDriverComesWithTheStateOfThePort)
{
    const support::TemporaryFolder folder;
    driver_.serial = true;
    outcome_.reported = {{"some", -4}};
    const auto report = host::reportOn(outcome_, driver_, {.location = folder.path("gone")});
    ASSERT_TRUE(report.portFailure);
    EXPECT_EQ(report.portFailure->path(), folder.path("gone"));
    EXPECT_EQ(report.voice, std::nullopt);
    ASSERT_THAT(report.errors, SizeIs(1));
    EXPECT_TRUE(report.errors[0].description()) << "a wordless error has got words";
}

TEST_F(OperationReportTest, WordlessErrorOfASessionThatWasStoppedIsNoFailureOfThePort)
{
    support::AccountingDriver driver;
    driver.serial = true;
    driver.voice = gps::LineVoice::kNmea;
    outcome_.reported = {{"some", -4}};
    auto report = host::reportOn(outcome_, driver, {.isStopAsked = true});
    EXPECT_THAT(report.errors, IsEmpty());
    EXPECT_EQ(report.portFailure, std::nullopt);
    EXPECT_EQ(report.voice, gps::LineVoice::kNmea);
    outcome_.reported = {errorAbout("/some/port")};
    report = host::reportOn(outcome_, driver, {.isStopAsked = true});
    EXPECT_THAT(report.errors, SizeIs(1));
    EXPECT_TRUE(report.portFailure);
}

TEST_F(OperationReportTest, PortIsNotLookedAtForADeviceWithFiles)
{
    outcome_.reported = {{"some", -4}};
    EXPECT_EQ(report().portFailure, std::nullopt);
    EXPECT_THAT(report().errors, ElementsAre(gps::Error{"some", -4}));
}

} // namespace
