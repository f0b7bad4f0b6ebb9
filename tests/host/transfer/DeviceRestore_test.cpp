// SPDX-License-Identifier: MIT

#include "host/transfer/DeviceRestore.h"

#include "host/FakeDriver.h"
#include "host/files/FolderLock.h"
#include "host/transfer/SendPreparation.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A device with two files, and a backup of it.
class DeviceRestore : public testing::Test {
protected:
    DeviceRestore()
    {
        device_.device = folder_.makeFolder("device");
        device_.identifier = "42";
        device_.folders = {folder_.makeFolder("device/Points")};
        folder_.put("device/Points/a", "1");
        folder_.put("device/Points/b", "2");
        host::MadeBackup made;
        EXPECT_FALSE(host::makeBackup({.folder = folder_.path("kept")}, device_, made));
        backup_ = made.backup;
    }

    [[nodiscard]] host::RestoreReport restore(std::size_t most = 10) const
    {
        return host::restoreBackup(
            device_,
            {.backup = backup_.path, .policy = {.folder = folder_.path("kept"), .count = most}});
    }

    [[nodiscard]] host::RestoreReport restoreUntil(std::function<bool()> stopRequested) const
    {
        return host::restoreBackup(device_, {.backup = backup_.path,
                                             .policy = {.folder = folder_.path("kept")},
                                             .stopRequested = std::move(stopRequested)});
    }

    [[nodiscard]] std::size_t backups() const
    {
        return host::listBackups(folder_.path("kept"), "42").size();
    }

    support::TemporaryFolder folder_;
    host::DataFolders device_;
    host::Backup backup_;
};

TEST_F(DeviceRestore, ChangedFilesAreWrittenAfterABackup)
{
    folder_.put("device/Points/a", "changed");
    const auto report = restore();
    EXPECT_FALSE(report.error);
    EXPECT_FALSE(report.wasUpToDate);
    EXPECT_THAT(report.restored, ElementsAre("Points/a"));
    EXPECT_THAT(report.extraFiles, IsEmpty());
    EXPECT_EQ(folder_.read("device/Points/a"), "1");
    ASSERT_TRUE(report.previous);
    EXPECT_EQ(folder_.read("kept/42/" + report.previous->name + "/files/Points/a"), "changed");
}

TEST_F(DeviceRestore, DataFolderMayBeTheDeviceItself)
{
    folder_.put("device/c", "3");
    device_.folders = {device_.device};
    ASSERT_TRUE(std::filesystem::remove(folder_.path("device/Points/b")));
    host::MadeBackup made;
    ASSERT_FALSE(host::makeBackup({.folder = folder_.path("kept")}, device_, made));
    backup_ = made.backup;
    folder_.put("device/c", "changed");
    EXPECT_FALSE(restore().error);
    EXPECT_EQ(folder_.read("device/c"), "3");
}

TEST_F(DeviceRestore, DeviceThatIsUpToDateIsNotBackedUp)
{
    folder_.put("device/Points/c", "new");
    const auto report = restore();
    EXPECT_TRUE(report.wasUpToDate);
    EXPECT_FALSE(report.previous);
    EXPECT_THAT(report.restored, IsEmpty());
    EXPECT_THAT(report.extraFiles, ElementsAre("Points/c"));
    EXPECT_EQ(backups(), 1U);
}

TEST_F(DeviceRestore, RestoredBackupIsKeptWhateverTheLimit)
{
    folder_.put("device/Points/a", "changed");
    EXPECT_FALSE(restore(1).error);
    EXPECT_TRUE(std::filesystem::exists(backup_.path));
    EXPECT_EQ(backups(), 2U);
}

TEST_F(DeviceRestore, BackupsThatWereDeletedAreReported)
{
    folder_.put("device/Points/a", "second");
    host::MadeBackup second;
    ASSERT_FALSE(host::makeBackup({.folder = folder_.path("kept")}, device_, second));
    folder_.put("device/Points/a", "third");
    EXPECT_THAT(restore(3).deletedBackups, IsEmpty());
    folder_.put("device/Points/a", "fourth");
    EXPECT_THAT(restore(1).deletedBackups, testing::Contains(second.backup.name));
    EXPECT_TRUE(std::filesystem::exists(backup_.path));
}

TEST_F(DeviceRestore, BackupOfAnotherDeviceIsRestoredOnlyIfForced)
{
    folder_.put("device/Points/a", "changed");
    device_.identifier = "43";
    host::RestoreRequest request{.backup = backup_.path,
                                 .policy = {.folder = folder_.path("kept")}};
    const auto report = host::restoreBackup(device_, request);
    ASSERT_TRUE(report.error);
    EXPECT_EQ(report.error->path(), backup_.path);
    EXPECT_EQ(folder_.read("device/Points/a"), "changed");
    request.isForced = true;
    EXPECT_FALSE(host::restoreBackup(device_, request).error);
    EXPECT_EQ(folder_.read("device/Points/a"), "1");
}

TEST_F(DeviceRestore, DamagedBackupChangesNothing)
{
    folder_.put("device/Points/a", "changed");
    std::filesystem::remove(backup_.path + "/files/Points/b");
    const auto report = restore();
    EXPECT_TRUE(report.error);
    EXPECT_FALSE(report.previous);
    EXPECT_EQ(folder_.read("device/Points/a"), "changed");
    EXPECT_EQ(backups(), 1U);
}

TEST_F(DeviceRestore, NothingIsWrittenIfThePresentFilesCannotBeBackedUp)
{
    folder_.put("device/Points/a", "changed");
    const auto report = host::restoreBackup(
        device_, {.backup = backup_.path, .policy = {.folder = folder_.put("file", "")}});
    EXPECT_TRUE(report.error);
    EXPECT_THAT(report.restored, IsEmpty());
    EXPECT_EQ(folder_.read("device/Points/a"), "changed");
}

TEST_F(DeviceRestore, FilesWrittenBeforeAFailureAreReported)
{
    folder_.put("device/Points/a", "changed");
    std::filesystem::remove(folder_.path("device/Points/b"));
    folder_.makeFolder("device/Points/b"); // a file cannot replace it
    const auto report = restore();
    EXPECT_TRUE(report.error);
    EXPECT_THAT(report.restored, ElementsAre("Points/a"));
}

TEST_F(DeviceRestore, StopDuringTheBackupWritesNothing)
{
    folder_.put("device/Points/a", "changed");
    const auto report = restoreUntil([] { return true; });
    EXPECT_TRUE(report.wasStopped);
    EXPECT_FALSE(report.error) << "the stop is the reason";
    EXPECT_FALSE(report.previous);
    EXPECT_THAT(report.asBefore, ElementsAre("Points/a", "Points/b"));
    EXPECT_EQ(folder_.read("device/Points/a"), "changed");
    EXPECT_EQ(backups(), 1U);
}

TEST_F(DeviceRestore, StopBetweenTwoFilesKeepsTheFirst)
{
    folder_.put("device/Points/a", "changed");
    folder_.put("device/Points/b", "changed");
    const auto report = restoreUntil([this] { return folder_.read("device/Points/a") == "1"; });
    EXPECT_TRUE(report.wasStopped);
    EXPECT_FALSE(report.isComplete());
    EXPECT_TRUE(report.previous);
    EXPECT_THAT(report.restored, ElementsAre("Points/a"));
    EXPECT_THAT(report.asBefore, ElementsAre("Points/b"));
    EXPECT_EQ(folder_.read("device/Points/b"), "changed");
}

TEST_F(DeviceRestore, StopThatCameTooLateChangesNothing)
{
    folder_.put("device/Points/b", "changed");
    const auto report = restoreUntil([this] { return folder_.read("device/Points/b") == "2"; });
    EXPECT_FALSE(report.wasStopped);
    EXPECT_TRUE(report.isComplete());
}

TEST_F(DeviceRestore, NothingIsWrittenBeforeItIsAnnounced)
{
    std::size_t announced = 0;
    host::RestoreRequest request{.backup = backup_.path,
                                 .policy = {.folder = folder_.path("kept")}};
    request.beforeWriting = [&] {
        ++announced;
        EXPECT_EQ(backups(), 1U);
        EXPECT_EQ(folder_.read("device/Points/a"), "changed");
    };
    EXPECT_TRUE(host::restoreBackup(device_, request).wasUpToDate);
    EXPECT_EQ(announced, 0U) << "there is nothing to write";
    folder_.put("device/Points/a", "changed");
    EXPECT_FALSE(host::restoreBackup(device_, request).error);
    EXPECT_EQ(announced, 1U);
}

TEST_F(DeviceRestore, ProgressEndsWithTheRestore)
{
    using Phase = host::TransferPhase;
    std::vector<Phase> phases;
    const host::RestoreRequest request{.backup = backup_.path,
                                       .policy = {.folder = folder_.path("kept")},
                                       .progress = [&](const host::TransferProgress& progress) {
                                           phases.push_back(progress.phase);
                                       }};
    (void)host::restoreBackup(device_, request);
    EXPECT_THAT(phases, ElementsAre(Phase::kRestoring, Phase::kFinished));
    folder_.put("device/Points/a", "changed");
    phases.clear();
    (void)host::restoreBackup(device_, request);
    EXPECT_THAT(phases, ElementsAre(Phase::kRestoring, Phase::kBackingUp, Phase::kRestoring,
                                    Phase::kFinished));
}

TEST(DataFoldersOf, OnlyADriverThatWritesFilesOfADeviceHasThem)
{
    const auto driver = std::make_shared<support::FakeFileDriver>();
    driver->folders = {"/device/Points"};
    const auto folders = host::dataFoldersOf({driver, "/device"});
    ASSERT_TRUE(folders);
    EXPECT_EQ(folders->device, "/device");
    EXPECT_EQ(folders->identifier, "42");
    EXPECT_THAT(folders->folders, ElementsAre("/device/Points"));

    EXPECT_FALSE(host::dataFoldersOf({driver, ""}));
    driver->capabilities = "tracks";
    EXPECT_FALSE(host::dataFoldersOf({driver, "/device"}));
    EXPECT_FALSE(host::dataFoldersOf({std::make_shared<support::FakeDriver>(), "/device"}));
}

TEST_F(DeviceRestore, NothingIsWrittenThroughALinkThatLeadsOutOfTheDevice)
{
    std::filesystem::remove_all(folder_.path("device/Points"));
    std::filesystem::create_symlink(folder_.makeFolder("home"), folder_.path("device/Points"));
    const auto report = restore();
    EXPECT_TRUE(report.error);
    EXPECT_EQ(report.error->path(), folder_.path("device/Points"));
    EXPECT_THAT(report.extraFiles, IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path("home")));
}

TEST_F(DeviceRestore, DeviceThatAnotherProgramWritesToIsNotTouched)
{
    folder_.put("device/Points/a", "changed");
    const host::FolderLock lock{device_.device};
    EXPECT_EQ(restore().error, host::deviceInUse(device_.device));
    EXPECT_EQ(folder_.read("device/Points/a"), "changed");
}

TEST_F(DeviceRestore, DeviceThatCouldNotBeReadWholeIsNotTouched)
{
    folder_.put("device/Points/a", "changed");
    device_.failure = gps::Error{"some", 1, {}};
    EXPECT_EQ(restore().error, device_.failure);
    EXPECT_EQ(folder_.read("device/Points/a"), "changed");
}

} // namespace
