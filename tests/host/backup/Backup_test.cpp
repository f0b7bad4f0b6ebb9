// SPDX-License-Identifier: MIT

#include "host/backup/Backup.h"

#include "host/backup/BackupFixture.h"
#include "host/backup/Manifest.h"
#include "host/backup/Restore.h"
#include "host/files/Hash.h"
#include "platform/System/OneFault.h"
#include "support/AsNobody.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <map>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class Backup : public support::BackupFixture {};

TEST_F(Backup, HoldsEveryFileByteForByteUnderItsTime)
{
    ASSERT_FALSE(make());
    EXPECT_THAT(made_.name, testing::MatchesRegex("[0-9]{8}T[0-9]{6}Z"));
    EXPECT_EQ(made_.path, kept_.path("kept/42/" + made_.name));
    EXPECT_EQ(made_.files, 2U);
    EXPECT_EQ(made_.bytes, 7U);
    EXPECT_EQ(kept_.read(inMade("Points/a.upt")), "one\r\n");
    EXPECT_EQ(kept_.read(inMade("Points/deep/b.bin")), (std::string{"\0\xFF", 2}));
    EXPECT_TRUE(fs::is_directory(made_.path + "/files/Ways"));
    EXPECT_FALSE(fs::exists(made_.path + "/files/Other"));
    EXPECT_THAT(skipped_, IsEmpty());
}

TEST_F(Backup, ManifestHasSizesAndHashes)
{
    ASSERT_FALSE(make());
    host::Manifest manifest;
    ASSERT_FALSE(host::readManifest(made_.path, manifest));
    EXPECT_EQ(manifest.device, device_.path());
    EXPECT_THAT(manifest.folders, ElementsAre("Points", "Ways"));
    ASSERT_EQ(manifest.files.size(), 2U);
    EXPECT_EQ(manifest.files[0].path, "Points/a.upt");
    EXPECT_EQ(manifest.files[0].size, 5U);
    EXPECT_EQ(manifest.files[0].hash, host::hashOf("one\r\n"));
}

TEST_F(Backup, LinksToFilesAreCopiedAsFilesAndTheRestIsSkipped)
{
    fs::create_symlink(device_.path("Other/c"), device_.path("Points/link"));
    fs::create_symlink("nowhere", device_.path("Points/dangling"));
    fs::create_directory_symlink(device_.path("Other"), device_.path("Points/folder"));
    ::mkfifo(device_.path("Points/fifo").c_str(), 0600);
    ASSERT_FALSE(make());
    EXPECT_EQ(kept_.read(inMade("Points/link")), "not data");
    EXPECT_FALSE(fs::is_symlink(made_.path + "/files/Points/link"));
    EXPECT_THAT(skipped_, ElementsAre(device_.path("Points/dangling"), device_.path("Points/fifo"),
                                      device_.path("Points/folder")));
}

TEST_F(Backup, MadeAfterAnInterruptedWriteCanBeRestored)
{
    device_.put("Points/.~write.tmp", "half a fi");
    device_.put("Points/deep/.~write.tmp", "");
    device_.put("Ways/.magellangps-7-0", "half");
    device_.put("Ways/.~write.tmp2", "a file of the user's");
    ASSERT_FALSE(make());
    EXPECT_EQ(made_.files, 3U);
    EXPECT_THAT(skipped_, IsEmpty());
    EXPECT_FALSE(fs::exists(kept_.path(inMade("Points/.~write.tmp"))));
    EXPECT_FALSE(fs::exists(kept_.path(inMade("Ways/.magellangps-7-0"))));
    EXPECT_TRUE(fs::exists(kept_.path(inMade("Ways/.~write.tmp2"))));

    device_.put("Points/a.upt", "two");
    host::Restore restore;
    ASSERT_FALSE(restore.open(made_.path));
    std::vector<std::string> written;
    EXPECT_FALSE(restore.write(device_.path(), written));
    EXPECT_THAT(written, ElementsAre("Points/a.upt"));
    EXPECT_THAT(restore.extraFiles(device_.path()), IsEmpty());
}

TEST_F(Backup, TheNewestTenAreKept)
{
    std::vector<std::string> names;
    for (int i = 0; i < 10; ++i) {
        ASSERT_FALSE(make());
        names.insert(names.begin(), made_.name);
    }
    const auto namesOf = [](const std::vector<host::Backup>& backups) {
        std::vector<std::string> listed;
        for (const auto& backup : backups)
            listed.push_back(backup.name);
        return listed;
    };
    EXPECT_EQ(namesOf(list()), names);
    for (int i = 0; i < 2; ++i) {
        ASSERT_FALSE(make());
        names.insert(names.begin(), made_.name);
        names.pop_back();
    }
    EXPECT_EQ(namesOf(list()), names);
}

TEST_F(Backup, ProtectedOneIsKeptInAdditionToTheTen)
{
    ASSERT_FALSE(make());
    const auto first = made_.path;
    for (int i = 0; i < 11; ++i) {
        auto policy = this->policy();
        policy.protectedPath = first;
        ASSERT_FALSE(host::makeBackup(policy, source(), made_, skipped_));
    }
    EXPECT_TRUE(fs::exists(first));
    EXPECT_EQ(list().size(), 11U);
}

TEST_F(Backup, FolderIsNamedAfterTheIdentifierWithoutItsSpecialCharacters)
{
    for (const auto& [identifier, name] : std::vector<std::pair<std::string, std::string>>{
             {"", "device"},
             {"..", "__"},
             {"a/b c", "a_b_c"},
             {"Ä", "__"},
             {std::string(300, 'x'), std::string(64, 'x')}}) {
        auto from = source();
        from.identifier = identifier;
        ASSERT_FALSE(host::makeBackup({kept_.path()}, from, made_, skipped_));
        EXPECT_EQ(fs::path{made_.path}.parent_path(), kept_.path(name));
        EXPECT_EQ(host::listBackups(kept_.path(), identifier).size(),
                  1U + (name == "__" && identifier == "Ä" ? 1U : 0U));
    }
}

TEST_F(Backup, AsManyAreKeptAsThePolicySays)
{
    for (int i = 0; i < 4; ++i)
        ASSERT_FALSE(make());
    count_ = 2;
    ASSERT_FALSE(make());
    EXPECT_EQ(list().size(), 2U);
    EXPECT_EQ(list().front().name, made_.name);
    count_ = 1;
    ASSERT_FALSE(make());
    ASSERT_EQ(list().size(), 1U);
    EXPECT_EQ(list().front().name, made_.name);
}

TEST_F(Backup, UnreadableFileFailsTheBackupAndLeavesTheOlderOnes)
{
    ASSERT_FALSE(make());
    fs::permissions(device_.path("Points/a.upt"), fs::perms::none);
    fs::permissions(kept_.path(), fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator{kept_.path()})
        fs::permissions(entry.path(), fs::perms::all);
    const auto failure = [&] {
        const support::AsNobody nobody;
        return make();
    }();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), device_.path("Points/a.upt"));
    EXPECT_EQ(list().size(), 1U);
    EXPECT_FALSE(fs::exists(kept_.path("kept/42/.unfinished")));
}

TEST_F(Backup, LeftoverOfAKilledRunIsRemoved)
{
    kept_.put("kept/42/.unfinished/files/stray", "x");
    ASSERT_FALSE(make());
    EXPECT_FALSE(fs::exists(kept_.path("kept/42/.unfinished")));
    EXPECT_FALSE(fs::exists(made_.path + "/files/stray"));
}

TEST_F(Backup, FoldersWithoutAManifestAreNotListed)
{
    kept_.put("kept/42/20200101T000000Z/files/x", "x");
    kept_.put("kept/42/20200102T000000Z/manifest.json", "{");
    kept_.put("kept/42/20200103T000000Z/manifest.json",
              R"({"folders":[],"files":[{"path":"../x","size":1,"hash":"af63dc4c8601ec8c"}]})");
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_THAT(host::listBackups(kept_.path("missing"), "42"), IsEmpty());
}

TEST_F(Backup, FolderInsideTheDataIsRejected)
{
    EXPECT_TRUE(host::makeBackup({device_.path("Points/kept")}, source(), made_, skipped_));
    EXPECT_FALSE(fs::exists(device_.path("Points/kept")));
}

TEST_F(Backup, FolderInsideTheDataWhoseNameBeginsWithTwoPointsIsRejected)
{
    EXPECT_TRUE(host::makeBackup({device_.path("Points/..kept")}, source(), made_, skipped_));
}

TEST_F(Backup, DataFolderWhoseNameBeginsWithTwoPointsIsCopied)
{
    device_.put("..pois/a", "one");
    const host::DataFolders from{device_.path(), "42", {device_.path("..pois")}};
    ASSERT_FALSE(host::makeBackup({kept_.path("kept")}, from, made_, skipped_));
    EXPECT_EQ(kept_.read(inMade("..pois/a")), "one");
    host::Manifest manifest;
    ASSERT_FALSE(host::readManifest(made_.path, manifest));
    EXPECT_THAT(manifest.folders, ElementsAre("..pois"));
}

TEST_F(Backup, DataFolderOutsideTheDeviceIsRejected)
{
    const host::DataFolders from{device_.path("Points"), "42", {device_.path("Other")}};
    EXPECT_TRUE(host::makeBackup({kept_.path("kept")}, from, made_, skipped_));
}

TEST_F(Backup, FolderThatIsAFileIsRejected)
{
    kept_.put("kept", "x");
    EXPECT_TRUE(make());
}

TEST_F(Backup, SecondOneOfTheSameDeviceIsRejectedAtTheSameTime)
{
    const int folder = ::open(kept_.makeFolder("kept/42").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(folder, LOCK_EX), 0);
    EXPECT_TRUE(make());
    ::close(folder);
    EXPECT_FALSE(make());
}

// Each call that a backup makes fails once. The older backup must stay, and a backup that is
// reported as made must be complete.
TEST_F(Backup, OneFailedCallLosesNoOlderBackupAndIsReported)
{
    ASSERT_FALSE(make());
    const auto older = made_.path;
    support::OneFault recorder;
    ASSERT_FALSE(make(recorder));
    std::filesystem::remove_all(made_.path);

    std::map<std::string, int> counts;
    int reported = 0;
    for (const auto& call : recorder.calls()) {
        support::OneFault files{call, EIO, ++counts[call]};
        skipped_.clear();
        const auto failure = make(files);
        const auto which = call + " " + std::to_string(counts[call]);
        EXPECT_TRUE(files.happened()) << which;
        EXPECT_FALSE(host::Restore{}.open(older)) << which;
        EXPECT_THAT(skipped_, IsEmpty()) << which;
        if (failure) {
            ++reported;
            EXPECT_TRUE(failure->description() && failure->path()) << which;
        } else {
            EXPECT_FALSE(host::Restore{}.open(made_.path)) << which;
            EXPECT_EQ(made_.files, 2U) << which;
        }
        std::filesystem::remove_all(kept_.path("kept/42/.unfinished"));
        for (const auto& backup : list()) {
            if (backup.path != older)
                std::filesystem::remove_all(backup.path);
        }
    }
    EXPECT_GT(reported, 20);
}

TEST_F(Backup, FolderThatCannotBeListedFailsTheBackup)
{
    for (const char* call : {"opendir", "readdir"}) {
        for (int which = 1; which <= 20; ++which) {
            support::OneFault files{call, EIO, which};
            const auto failure = make(files);
            EXPECT_TRUE(failure || made_.files == 2U) << call << ' ' << which;
        }
    }
}

} // namespace
