// SPDX-License-Identifier: MIT

#include "host/transfer/Send.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"
#include "support/TemporaryFolder.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

namespace {

using Action = gps::PlannedFile::Action;
using Phase = host::TransferPhase;
using Result = host::SentFile::Result;
using Status = gps::GPSPlugInProtocol::Status;
using gps::TransferKind;
using support::waypointAt;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A send of one waypoint to a file that the device does not have yet.
class Send : public testing::Test {
protected:
    Send()
    {
        driver_->folders = {folder_.makeFolder("device/Points")};
        driver_->plan = [this](const gps::Dictionary&) { return plan_; };
        driver_->decode = [this](std::string_view, std::string_view) -> gps::Dictionary {
            return {{"waypoint", gps::Array{waypointAt(decodedLatitude_)}}};
        };
        plan_.files = {{path_, Action::kCreate, "new", {}}};
        request_.data = {{"waypoint", gps::Array{waypointAt(46)}}};
        request_.progress = [this](const host::TransferProgress& progress) {
            phases_.push_back(progress.phase);
        };
    }

    // Performs the send of a device that changes after it was read.
    [[nodiscard]] host::SendReport performAfter(const std::function<void()>& change)
    {
        const auto prepared = host::prepareSend({driver_, folder_.path("device")}, request_);
        change();
        return host::performSend(prepared);
    }

    // Performs the send with a driver that calls `work` between the status calls.
    [[nodiscard]] host::SendReport perform(const std::function<void()>& work)
    {
        driver_->send = [this, work](const gps::Dictionary* data, const Status& status,
                                     const gps::Dictionary& options) -> std::optional<gps::Error> {
            ++sends_;
            hadData_ = data != nullptr;
            options_ = options;
            status->startSending("Waypoints", TransferKind::kWaypoints);
            work();
            status->endSending(TransferKind::kWaypoints);
            status->gpsStateChange(0);
            return std::nullopt;
        };
        return performWith(driver_);
    }

    [[nodiscard]] host::SendReport performWith(const host::Driver& driver)
    {
        const auto prepared = host::prepareSend({driver, folder_.path("device")}, request_);
        phases_.clear();
        return host::performSend(prepared);
    }

    void write() const { folder_.put("device/Points/p", "new"); }

    support::TemporaryFolder folder_;
    std::string path_ = folder_.path("device/Points/p");
    std::shared_ptr<support::FakeFileDriver> driver_ = std::make_shared<support::FakeFileDriver>();
    gps::SendPlan plan_;
    double decodedLatitude_ = 46;
    host::SendRequest request_;
    std::vector<Phase> phases_;
    int sends_ = 0;
    bool hadData_ = false;
    gps::Dictionary options_;
};

TEST_F(Send, SendIsCompleteIfEverythingIsOnTheDevice)
{
    const auto report = perform([this] { write(); });
    EXPECT_TRUE(report.isComplete());
    ASSERT_THAT(report.files, SizeIs(1));
    EXPECT_EQ(report.files[0].path, path_);
    EXPECT_EQ(report.files[0].result, Result::kWritten);
    EXPECT_THAT(report.errors, IsEmpty());
    EXPECT_EQ(report.backup, std::nullopt);
    EXPECT_THAT(phases_, ElementsAre(Phase::kSending, Phase::kReadingBack, Phase::kFinished));
}

TEST_F(Send, BackupIsMadeBeforeTheSend)
{
    folder_.put("device/Points/old", "old");
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    const auto report = perform([this] {
        EXPECT_TRUE(std::filesystem::exists(folder_.path("kept/42")));
        write();
    });
    EXPECT_TRUE(report.isComplete());
    ASSERT_TRUE(report.backup);
    EXPECT_EQ(report.backup->files, 1U);
    EXPECT_EQ(phases_.front(), Phase::kBackingUp);
}

TEST_F(Send, BackupUsesWhatWasReadBefore)
{
    folder_.put("device/Points/old", "later");
    driver_->files = {{folder_.path("device/Points/old"), "earlier", {}}};
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    const auto report = perform([this] { write(); });
    ASSERT_TRUE(report.backup);
    EXPECT_EQ(folder_.read("kept/42/" + report.backup->name + "/files/Points/old"), "earlier");
}

TEST_F(Send, BackupsThatWereDeletedAreReported)
{
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept"), .count = 1};
    const auto first = perform([this] { write(); });
    ASSERT_TRUE(first.backup);
    EXPECT_THAT(first.deletedBackups, IsEmpty());
    const auto second = perform([this] { folder_.put("device/Points/p", "other"); });
    ASSERT_TRUE(second.backup);
    EXPECT_THAT(second.deletedBackups, IsEmpty());
    EXPECT_THAT(perform([this] { write(); }).deletedBackups, ElementsAre(second.backup->name));
}

TEST_F(Send, NothingIsSentIfTheBackupFails)
{
    for (const auto& folder : {folder_.put("a file", ""), std::string{}}) {
        request_.backup = host::BackupPolicy{.folder = folder};
        const auto report = perform([] {});
        EXPECT_TRUE(report.backupError);
        EXPECT_FALSE(report.isComplete());
    }
    EXPECT_EQ(sends_, 0);
}

TEST_F(Send, NothingIsSentIfTheDeviceCouldNotBeReadWhole)
{
    driver_->failures = {gps::makeFileError(gps::FileErrorCode::kReadUnknown, "/unit")};
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    const auto report = perform([] {});
    EXPECT_EQ(report.obstacle, driver_->failures[0]);
    EXPECT_FALSE(report.wasRun());
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.backup, std::nullopt);
    EXPECT_EQ(sends_, 0);
}

TEST_F(Send, DeviceThatHasChangedSinceItWasReadIsNotWritten)
{
    driver_->send = [this](const auto&...) -> std::optional<gps::Error> {
        ++sends_;
        return std::nullopt;
    };
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    const auto report = performAfter([this] { folder_.put("device/Points/other", "new"); });
    ASSERT_TRUE(report.obstacle);
    EXPECT_EQ(report.obstacle->description(),
              "Another program has changed the device since it was read");
    EXPECT_TRUE(report.isOutdated);
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.backup, std::nullopt);
    EXPECT_EQ(sends_, 0);
}

TEST_F(Send, DeviceThatChangesDuringTheBackupIsNotWritten)
{
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    request_.progress = [this](const host::TransferProgress& progress) {
        if (progress.phase == Phase::kBackingUp)
            folder_.put("device/Points/other", "new");
    };
    const auto report = perform([] {});
    EXPECT_TRUE(report.isOutdated);
    EXPECT_EQ(sends_, 0);
}

TEST_F(Send, AnotherReceiverInTheSamePlaceIsNotWritten)
{
    const auto expectRefused = [this](const host::SendReport& report) {
        ASSERT_TRUE(report.obstacle);
        EXPECT_EQ(report.obstacle->description(), "The receiver that was read is no longer here, "
                                                  "or another one has taken its place");
        EXPECT_FALSE(report.isOutdated) << "no new plan";
        EXPECT_EQ(sends_, 0);
    };
    expectRefused(performAfter([this] { driver_->identifier = "43"; }));
    expectRefused(performAfter([this] { driver_->identifier.reset(); }));
    expectRefused(performAfter([this] { // neither has an identifier now
        std::filesystem::rename(folder_.path("device"), folder_.path("first"));
        folder_.makeFolder("device/Points");
    }));
}

TEST_F(Send, ReceiverThatIsSwappedDuringTheSendIsNotJudgedAndNotChanged)
{
    driver_->files = {{path_, "old", {}}};
    driver_->decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
        const bool hasOld = content == "old" || content == "new";
        return {{"waypoint", hasOld ? gps::Array{waypointAt(46)} : gps::Array{}}};
    };
    const auto expectGone = [this](const std::function<void()>& swap) {
        driver_->identifier = "42";
        folder_.put("device/Points/p", "old");
        const auto report = perform([&] {
            swap();
            folder_.put("device/Points/p", "of the other one");
        });
        EXPECT_TRUE(report.isDeviceGone);
        EXPECT_FALSE(report.isComplete());
        ASSERT_THAT(report.errors, SizeIs(1));
        EXPECT_EQ(report.errors[0].description(),
                  "The receiver was removed, or another one has taken its place, while it was "
                  "written to");
        ASSERT_THAT(report.files, SizeIs(1));
        EXPECT_EQ(report.files[0].result, Result::kUnreadable);
        EXPECT_EQ(folder_.read("device/Points/p"), "of the other one") << "nothing is put back";
    };
    expectGone([this] { driver_->identifier = "43"; });
    expectGone([this] { driver_->identifier.reset(); });
    driver_->identifier.reset();
    EXPECT_FALSE(perform([this] { write(); }).isDeviceGone) << "the same volume";
}

TEST_F(Send, ReceiverWithoutAnIdentifierIsGoneIfItsVolumeIsAnother)
{
    driver_->identifier.reset();
    const auto report = perform([this] {
        std::filesystem::rename(folder_.path("device"), folder_.path("first"));
        folder_.makeFolder("device/Points");
        write();
    });
    EXPECT_TRUE(report.isDeviceGone);
    EXPECT_FALSE(report.isComplete());
}

// As the plug-in writes.
void writeAtomically(const std::string& path)
{
    EXPECT_EQ(gps::FileManager{}.writeAsciiFileAtomically(path, "new"), std::nullopt);
}

TEST_F(Send, ChangeThatTheDriverHasWrittenOverIsAFailure)
{
    for (const bool isRenamed : {false, true}) {
        const auto report = perform([&] {
            folder_.put(isRenamed ? "device/Points/theirs" : "device/Points/p", "their change");
            if (isRenamed)
                std::filesystem::rename(folder_.path("device/Points/theirs"), path_);
            writeAtomically(path_);
        });
        EXPECT_FALSE(report.isComplete());
        ASSERT_THAT(report.errors, SizeIs(1));
        EXPECT_EQ(report.errors[0].description(),
                  "Another program has changed this file during the send, and the send has "
                  "written over its change");
        EXPECT_EQ(report.errors[0].path(), path_);
        EXPECT_EQ(report.files[0].result, Result::kWritten);
    }
}

TEST_F(Send, DeletedFileThatTheDriverHasCreatedAgainIsAFailure)
{
    plan_.files[0].action = Action::kMerge;
    for (const bool isMoved : {false, true}) {
        folder_.put("device/Points/p", "old");
        const auto report = perform([&] {
            if (isMoved)
                std::filesystem::rename(path_, folder_.path("elsewhere"));
            else
                std::filesystem::remove(path_);
            writeAtomically(path_);
        });
        EXPECT_FALSE(report.isComplete());
        ASSERT_THAT(report.errors, SizeIs(1)) << isMoved;
        EXPECT_EQ(report.errors[0].description(),
                  "Another program has deleted this file during the send, and the send has created "
                  "it again");
        EXPECT_EQ(report.errors[0].path(), path_);
    }
}

TEST_F(Send, LinkThatTheDriverHasReplacedIsAFailure)
{
    folder_.put("device/Points/p", "old");
    const auto report = perform([&] {
        std::filesystem::rename(path_, folder_.path("device/target"));
        std::filesystem::create_symlink("../target", path_);
        (void)folder_.read("device/Points/p"); // through the link
        writeAtomically(path_);
    });
    EXPECT_FALSE(report.isComplete());
    ASSERT_THAT(report.errors, SizeIs(1));
    EXPECT_EQ(report.errors[0].description(),
              "Another program has put a file or a link in the place of this file during the send, "
              "and the send has replaced it");
    EXPECT_EQ(report.errors[0].path(), path_);
}

TEST_F(Send, DeletionOfANewFileOfAnotherProgramIsNotUndone)
{
    plan_.files[0].action = Action::kCreate;
    std::filesystem::remove(path_);
    const auto report = perform([&] {
        folder_.put("device/Points/p", "theirs");
        std::filesystem::remove(path_);
        writeAtomically(path_);
    });
    EXPECT_TRUE(report.isComplete());
}

TEST_F(Send, ChangeBeforeTheDriverReadTheFileIsNotLost)
{
    plan_.files[0].content = gps::SharedText{"planned"};
    driver_->decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
        return {{"waypoint", content == "old" ? gps::Array{} : gps::Array{waypointAt(46)}}};
    };
    for (const bool isChangedAgain : {false, true}) {
        const auto report = perform([&] {
            folder_.put("device/Points/p", "their change");
            (void)folder_.read("device/Points/p");
            if (isChangedAgain)
                folder_.put("device/Points/p", "their second change");
            writeAtomically(path_);
        });
        EXPECT_EQ(report.files[0].result, Result::kAlsoChanged);
        EXPECT_EQ(report.isComplete(), !isChangedAgain);
    }
}

TEST_F(Send, DriversOwnWriteIsNoChangeByAnother)
{
    folder_.put("device/Points/p", "old");
    EXPECT_TRUE(perform([this] { writeAtomically(path_); }).isComplete());
    EXPECT_TRUE(perform([this] { folder_.put("device/Points/p", "new"); }).isComplete())
        << "a driver that does not rename";
}

TEST_F(Send, PullingOutAndPluggingInAgainOnlyNeedsANewPlan)
{
    const auto report = performAfter([this] {
        std::filesystem::rename(folder_.path("device"), folder_.path("first"));
        folder_.makeFolder("device/Points");
    });
    EXPECT_TRUE(report.isOutdated);
}

TEST_F(Send, RecordsOfABlockedFileAreNotHandedToTheDriver)
{
    plan_.files[0].action = Action::kSkip;
    plan_.files[0].error = gps::makeFileError(gps::FileErrorCode::kReadUnknown, path_);
    plan_.files[0].kind = "waypoints";
    driver_->send = [](const gps::Dictionary* data, const Status& status,
                       const gps::Dictionary&) -> std::optional<gps::Error> {
        EXPECT_EQ(*data, gps::Dictionary{});
        status->gpsStateChange(0);
        return std::nullopt;
    };
    const auto report = performWith(driver_);
    EXPECT_FALSE(report.isComplete());
    EXPECT_THAT(report.missingKinds, IsEmpty());
    EXPECT_EQ(report.files[0].result, Result::kBlocked);
}

TEST_F(Send, FileThatLostRecordsIsPutBack)
{
    driver_->files = {{path_, "old", {}}};
    plan_.files[0].action = Action::kMerge;
    driver_->decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
        const bool hasOld = content != "merged from nothing";
        return {{"waypoint", hasOld ? gps::Array{waypointAt(46)} : gps::Array{}}};
    };
    const auto report = perform([this] { folder_.put("device/Points/p", "merged from nothing"); });
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kPutBack);
    EXPECT_EQ(folder_.read("device/Points/p"), "old");
}

// A driver that says of its sends which files it could read before it merged into them.
struct AccountingFileDriver final : support::FakeFileDriver, gps::GPSTransferAccount {
    gps::TransferAccount transferAccount() const override { return account; }
    gps::LineVoice lineVoice() const noexcept override { return gps::LineVoice::kNothing; }

    gps::TransferAccount account;
};

class ChangedByAnother : public Send {
protected:
    ChangedByAnother()
    {
        accounting_->folders = driver_->folders;
        accounting_->plan = driver_->plan;
        accounting_->files = {{path_, "old", {}}};
        accounting_->decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
            const bool hasOld = content == "old" || content == "new";
            return {{"waypoint", hasOld ? gps::Array{waypointAt(46)} : gps::Array{}}};
        };
        plan_.files[0].action = Action::kMerge;
        driver_ = accounting_;
    }

    std::shared_ptr<AccountingFileDriver> accounting_ = std::make_shared<AccountingFileDriver>();
};

TEST_F(ChangedByAnother, FileThatTheDriverCouldReadIsNotReplacedByAnOldVersion)
{
    accounting_->account.files = {{.kind = "waypoints", .path = path_}};
    const auto report = perform([this] { folder_.put("device/Points/p", "of another program"); });
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kDifferent);
    EXPECT_EQ(folder_.read("device/Points/p"), "of another program");
}

TEST_F(ChangedByAnother, FileThatTheDriverCouldNotReadIsPutBack)
{
    accounting_->account.files = {
        {.kind = "waypoints",
         .path = path_,
         .error = gps::makeFileError(gps::FileErrorCode::kReadUnknown, path_)}};
    const auto report = perform([this] { folder_.put("device/Points/p", "merged from nothing"); });
    EXPECT_EQ(report.files[0].result, Result::kPutBack);
    EXPECT_EQ(folder_.read("device/Points/p"), "old");
}

TEST_F(Send, SendIsCompleteIfATrackHasAnotherName)
{
    plan_.files[0].kind = "tracks";
    plan_.files.push_back({folder_.path("device/Points/w"), Action::kCreate, "w", {}});
    const auto report = perform([this] {
        folder_.put("device/Points/q", "new");
        folder_.put("device/Points/w", "w");
    });
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kRenamed);
    EXPECT_EQ(report.files[0].writtenPath, folder_.path("device/Points/q"));
    EXPECT_FALSE(report.files[0].isAsBefore);
}

TEST_F(Send, TrackThatTheDeviceHeldBeforeIsNotTakenForTheSentOne)
{
    plan_.files[0].kind = "tracks";
    folder_.put("device/Points/q", "new");
    const auto report = perform([] {});
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kMissing);
}

TEST_F(Send, StopBeforeTheOperationSendsNothing)
{
    request_.stopRequested = [] { return true; };
    const auto report = perform([] {});
    EXPECT_TRUE(report.wasStopped);
    EXPECT_TRUE(report.wasStoppedEarly);
    EXPECT_FALSE(report.wasRun());
    EXPECT_FALSE(report.isComplete());
    EXPECT_THAT(report.files, IsEmpty());
    EXPECT_EQ(sends_, 0);
}

TEST_F(Send, StopDuringTheBackupSendsNothingAndLeavesNoBackup)
{
    folder_.put("device/Points/other", "old");
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    request_.stopRequested = [] { return true; };
    const auto report = perform([] {});
    EXPECT_TRUE(report.wasStoppedEarly);
    EXPECT_FALSE(report.backupError) << "the stop is the reason";
    EXPECT_FALSE(report.backup);
    EXPECT_EQ(sends_, 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path("kept/42")));
}

TEST_F(Send, StopDuringTheOperationTellsWhatWasWritten)
{
    request_.stopRequested = [this] { return sends_ > 0; };
    const auto report = perform([] {});
    EXPECT_TRUE(report.wasStopped);
    EXPECT_FALSE(report.wasStoppedEarly);
    ASSERT_THAT(report.files, SizeIs(1));
    EXPECT_EQ(report.files[0].result, Result::kMissing);
}

TEST_F(Send, StopThatCameTooLateChangesNothing)
{
    request_.stopRequested = [this] { return sends_ > 0; };
    const auto report = perform([this] { write(); });
    EXPECT_FALSE(report.wasStopped);
    EXPECT_TRUE(report.isComplete());
}

TEST_F(Send, SendThatWritesNothingNeedsNoBackup)
{
    plan_.files.clear();
    request_.backup = host::BackupPolicy{.folder = folder_.path("kept")};
    EXPECT_EQ(perform([] {}).backup, std::nullopt);
    EXPECT_EQ(sends_, 1);
}

TEST_F(Send, FileThatIsNotAsPlannedMakesTheSendIncomplete)
{
    auto report = perform([] {});
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kMissing);
    driver_->decode = [](std::string_view, std::string_view content) -> gps::Dictionary {
        const bool hasRecord = content == "new" || content == "new and another program's";
        return {{"waypoint", hasRecord ? gps::Array{waypointAt(46)} : gps::Array{}}};
    };
    report = perform([this] { folder_.put("device/Points/p", "ne"); });
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kDifferent);
    EXPECT_THAT(report.missingRecords, IsEmpty()) << "the file says enough";

    report = perform([this] { folder_.put("device/Points/p", "new and another program's"); });
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kAlsoChanged);
    EXPECT_FALSE(report.files[0].isAsBefore);
}

TEST_F(Send, BlockedFileMakesTheSendIncomplete)
{
    plan_.files[0].action = Action::kSkip;
    EXPECT_THAT(perform([] {}).missingRecords, SizeIs(1)) << "no file holds the record";
    plan_.files[0].error = gps::makeFileError(gps::FileErrorCode::kNoSuchFolder, path_);
    const auto report = perform([] {});
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.files[0].result, Result::kBlocked);
}

TEST_F(Send, RecordThatNoFileHoldsMakesTheSendIncomplete)
{
    decodedLatitude_ = 47;
    const auto report = perform([this] { write(); });
    EXPECT_FALSE(report.isComplete());
    ASSERT_THAT(report.missingRecords, SizeIs(1));
    EXPECT_EQ(report.missingRecords[0].name, "A");
}

// The driver logs an error as well, since it had no name for the track.
TEST_F(Send, TrackThatHadNoFreeNameIsNamedWhateverElseWentWrong)
{
    const gps::Dictionary track{{"name", "Day"}, {"points", gps::Array{waypointAt(46)}}};
    request_.data->set("track", gps::Array{track});
    const auto report = perform([this] {
        write();
        gps::logError("driver", gps::makeFileError(gps::FileErrorCode::kWriteFileExists, "/x"));
    });
    EXPECT_FALSE(report.isComplete());
    ASSERT_THAT(report.missingRecords, SizeIs(1));
    EXPECT_EQ(report.missingRecords[0].kind, "track");
    EXPECT_EQ(report.missingRecords[0].name, "Day");
}

TEST_F(Send, UnexpectedLoggedErrorMakesTheSendIncomplete)
{
    const auto readError = gps::makeFileError(gps::FileErrorCode::kReadNoSuchFile, path_);
    const auto report = perform([&] {
        gps::logError("plug-in",
                      gps::Error{"some", 1, {{gps::kErrorPathKey, path_}}}.causedBy(readError));
        write();
    });
    EXPECT_TRUE(report.isComplete()) << "the file did not exist before";
    const auto writeError = gps::makeFileError(gps::FileErrorCode::kWriteNoSpace, path_);
    const auto failed = perform([&] {
        gps::logError("plug-in", writeError);
        write();
    });
    EXPECT_FALSE(failed.isComplete());
    EXPECT_THAT(failed.errors, ElementsAre(writeError));
}

TEST_F(Send, LogLinesAreReported)
{
    const auto report = perform([this] {
        gps::logLine("a line");
        write();
    });
    EXPECT_TRUE(report.isComplete());
    EXPECT_THAT(report.logLines, ElementsAre("a line"));
}

TEST_F(Send, KindThatWasNeverSentIsMissing)
{
    driver_->send = [this](const gps::Dictionary*, const Status& status,
                           const gps::Dictionary&) -> std::optional<gps::Error> {
        write();
        status->gpsStateChange(0);
        return std::nullopt;
    };
    const auto report = performWith(driver_);
    EXPECT_FALSE(report.isComplete());
    EXPECT_THAT(report.missingKinds, ElementsAre(TransferKind::kWaypoints));
}

TEST_F(Send, ErrorReturnedByTheDriverEndsTheSend)
{
    const gps::Error refusal{"some", -3, {}};
    driver_->send = [&](const gps::Dictionary*, const Status& status,
                        const gps::Dictionary&) -> std::optional<gps::Error> {
        status->gpsStateChange(0);
        return refusal;
    };
    const auto report = performWith(driver_);
    EXPECT_FALSE(report.isComplete());
    EXPECT_EQ(report.answer, refusal);
    EXPECT_THAT(report.errors, ElementsAre(refusal));
    EXPECT_THAT(report.missingKinds, IsEmpty());
    EXPECT_THAT(report.files, IsEmpty());
}

TEST_F(Send, WithoutDataTheDriverIsCalledWithoutData)
{
    request_.data.reset();
    request_.driverOptions = {{"debug", 3}};
    const auto report = perform([] {});
    EXPECT_TRUE(report.isComplete());
    EXPECT_EQ(sends_, 1);
    EXPECT_FALSE(hadData_);
    EXPECT_EQ(options_, (gps::Dictionary{{"debug", 3}}));
}

TEST_F(Send, EventsAreHandedOn)
{
    std::vector<host::EventKind> kinds;
    request_.onEvents = [&](const host::EventBatch& batch) {
        for (const auto& event : batch)
            kinds.push_back(event.kind);
    };
    (void)perform([this] { write(); });
    EXPECT_THAT(kinds, ElementsAre(host::EventKind::kStartSending, host::EventKind::kEndSending,
                                   host::EventKind::kStateChange));
}

} // namespace
