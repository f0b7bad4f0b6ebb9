// SPDX-License-Identifier: MIT

#include "host/FakeDriver.h"
#include "host/backup/Backup.h"
#include "host/cli/Commands.h"
#include "support/Signals.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>
#include <memory>

#include <unistd.h>

namespace {

using host::ExitStatus;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class RestoreCommand : public testing::Test {
protected:
    RestoreCommand()
    {
        driver_->setLocations({folder_.makeFolder("device")});
        driver_->folders = {folder_.makeFolder("device/Points")};
        folder_.put("device/Points/a", "old");
        options_.backupFolder = folder_.path("kept");
    }

    void backUp()
    {
        host::MadeBackup made;
        EXPECT_FALSE(host::makeBackup({.folder = folder_.path("kept")},
                                      {folder_.path("device"), "42", driver_->folders}, made));
        backup_ = made.backup;
    }

    ExitStatus run()
    {
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        const auto status =
            host::runRestore({.drivers = {driver_}}, options_, host::Console{false});
        out_ = testing::internal::GetCapturedStdout();
        err_ = testing::internal::GetCapturedStderr();
        return status;
    }

    support::TemporaryFolder folder_;
    std::shared_ptr<support::FakeFileDriver> driver_ = std::make_shared<support::FakeFileDriver>();
    host::RestoreOptions options_;
    host::Backup backup_;
    std::string out_;
    std::string err_;
};

TEST_F(RestoreCommand, WithoutABackupItListsThem)
{
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(out_, "There is no backup of this device.\n");
    backUp();
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_THAT(out_, AllOf(StartsWith("Backup "), HasSubstr('\n' + backup_.name + "      1 ")));
}

TEST_F(RestoreCommand, DamagedBackupIsListedWithWhatCanBeDoneAndCannotBeRestored)
{
    backUp();
    folder_.put("kept/42/" + backup_.name + "/manifest.json", "{");
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(out_, "There is no backup of this device.\n" + backup_.name +
                        " is damaged: its list of files, manifest.json, cannot be read, so it "
                        "cannot be restored. Copy what you need from " +
                        backup_.path + "/files\n");
    options_.json = true;
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(nlohmann::json::parse(out_)["damagedBackups"][0]["name"], backup_.name);
    options_.json = false;
    options_.backup = backup_.name;
    EXPECT_EQ(run(), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("This folder is not a complete backup: its list of files, "
                                "manifest.json, is missing or damaged."));
}

TEST_F(RestoreCommand, BackupIsNamedByItsNameOrItsPath)
{
    backUp();
    for (const auto& backup : {backup_.name, backup_.path}) {
        folder_.put("device/Points/a", "new");
        options_.backup = backup;
        EXPECT_EQ(run(), ExitStatus::kSuccess);
        EXPECT_EQ(folder_.read("device/Points/a"), "old");
        EXPECT_THAT(out_, AllOf(StartsWith("The files before the restore are kept in the backup "),
                                HasSubstr("restored: Points/a\n")));
    }
}

TEST_F(RestoreCommand, DeletedBackupsAreListed)
{
    backUp();
    folder_.put("device/Points/a", "second");
    backUp();
    const auto second = backup_;
    folder_.put("device/Points/a", "third");
    backUp();
    folder_.put("device/Points/a", "fourth");
    options_.backup = backup_.name;
    options_.mostBackups = 2;
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_THAT(out_, HasSubstr("\ndeleted, because enough newer backups are kept: " + second.name +
                                "\nrestored: Points/a\n"));
}

TEST_F(RestoreCommand, FilesOutsideTheBackupAreListed)
{
    backUp();
    folder_.put("device/Points/b\x1b", "new");
    options_.backup = backup_.name;
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(out_, "The device already holds what the backup holds.\n"
                    "not in the backup, left as it is: Points/b\uFFFD\n");
}

TEST_F(RestoreCommand, BackupOfAnotherDeviceNeedsForce)
{
    backUp();
    folder_.put("device/Points/a", "new");
    driver_->identifier = "43";
    options_.backup = backup_.path;
    EXPECT_EQ(run(), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("This backup seems to be of another device. Choose another backup, "
                                "or restore it with --force."));
    options_.force = true;
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(folder_.read("device/Points/a"), "old");
}

TEST_F(RestoreCommand, WithJsonTheStandardOutputIsOneDocument)
{
    options_.json = true;
    backUp();
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(nlohmann::json::parse(out_)["backups"][0]["name"], backup_.name);
    folder_.put("device/Points/a", "new");
    options_.backup = backup_.name;
    EXPECT_EQ(run(), ExitStatus::kSuccess);
    EXPECT_EQ(nlohmann::json::parse(out_)["restored"][0], "Points/a");
    options_.backup = "20000101T000000Z";
    EXPECT_EQ(run(), ExitStatus::kFailed);
    const auto document = nlohmann::json::parse(out_);
    EXPECT_EQ(document["status"], 1);
    EXPECT_THAT(err_, HasSubstr(document["messages"][0]["text"].get<std::string>()));
}

TEST_F(RestoreCommand, SignalWhileTheDeviceIsReadEndsTheProgramWithOneMessage)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const support::DefaultSignals defaults;
    backUp();
    options_.backup = backup_.name;
    options_.json = true;
    driver_->onSnapshot = [] {
        ::kill(::getpid(), SIGTERM);
        for (;;)
            ::pause(); // a device that does not answer
    };
    const auto restore = [this] {
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        (void)host::runRestore({.drivers = {driver_}}, options_, host::Console{true});
    };
    EXPECT_EXIT(restore(), testing::ExitedWithCode(128 + SIGTERM),
                "^magellangps: The restore was stopped before anything was written: every file of "
                "the device is as it was.\n"
                "\\{\"status\":143,\"complete\":false,\"interrupted\":true,\"device\":null,.*\n$");
}

TEST_F(RestoreCommand, UnknownBackupIsAFailure)
{
    options_.backup = "20000101T000000Z";
    EXPECT_EQ(run(), ExitStatus::kFailed);
    EXPECT_EQ(err_,
              "magellangps: There is no backup \"20000101T000000Z\" of this device. The device "
              "has no backups: a send makes one before it writes.\n");
}

TEST_F(RestoreCommand, UnknownBackupGetsTheNamesThatAreMostLikeIt)
{
    backUp();
    const auto first = backup_.name;
    options_.backup = first.substr(0, 6);
    EXPECT_EQ(run(), ExitStatus::kFailed);
    EXPECT_EQ(err_, "magellangps: There is no backup \"" + first.substr(0, 6) +
                        "\" of this device. The nearest is: " + first +
                        "; \"magellangps restore\" lists all of them.\n");
    // Backups have the same time or one a little later, and are listed from the newest on.
    std::vector<std::string> names{first};
    for (const auto* const content : {"second", "third", "fourth"}) {
        folder_.put("device/Points/a", content);
        backUp();
        names.insert(names.begin(), backup_.name);
    }
    options_.backup = "x";
    EXPECT_EQ(run(), ExitStatus::kFailed);
    EXPECT_THAT(
        err_, HasSubstr("The nearest are: " + names[0] + ", " + names[1] + ", " + names[2] + "; "));
    options_.backup = first + "x";
    EXPECT_EQ(run(), ExitStatus::kFailed);
    EXPECT_THAT(err_, HasSubstr("The nearest are: "));
}

TEST_F(RestoreCommand, DeviceWithoutFilesIsNothingToWorkOn)
{
    driver_->capabilities = "tracks";
    EXPECT_EQ(run(), ExitStatus::kNothingToWorkOn);
    EXPECT_THAT(err_, HasSubstr("The driver fake has no device that can be backed up."));
}

} // namespace
