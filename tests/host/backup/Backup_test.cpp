// SPDX-License-Identifier: MIT

#include "host/backup/Backup.h"

#include "host/backup/Manifest.h"
#include "host/backup/Restore.h"
#include "host/files/Hash.h"
#include "support/AsNobody.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class Backup : public testing::Test {
protected:
    Backup()
    {
        device_.put("Points/a.upt", "one\r\n");
        device_.put("Points/deep/b.bin", std::string{"\0\xFF", 2});
        device_.put("Other/c", "not data");
        device_.makeFolder("Ways");
    }

    host::DataFolders source() const
    {
        return {device_.path(), "42", {device_.path("Points"), device_.path("Ways")}};
    }

    std::optional<gps::Error> make(const std::string& spared = {})
    {
        return host::makeBackup({kept_.path("kept"), most_, spared}, source(), made_, skipped_);
    }

    std::vector<host::Backup> list() const { return host::listBackups(kept_.path("kept"), "42"); }

    std::string readMade(const std::string& name) const
    {
        return kept_.read(fs::path{made_.path}.lexically_relative(kept_.path()).string() +
                          "/files/" + name);
    }

    support::TemporaryFolder device_;
    support::TemporaryFolder kept_;
    std::size_t most_ = host::Keeping::kUsually;
    host::Backup made_;
    std::vector<std::string> skipped_;
};

TEST_F(Backup, HoldsEveryFileByteForByteUnderItsTime)
{
    ASSERT_FALSE(make());
    EXPECT_THAT(made_.name, testing::MatchesRegex("[0-9]{8}T[0-9]{6}Z"));
    EXPECT_EQ(made_.path, kept_.path("kept/42/" + made_.name));
    EXPECT_EQ(made_.files, 2U);
    EXPECT_EQ(made_.bytes, 7U);
    EXPECT_EQ(readMade("Points/a.upt"), "one\r\n");
    EXPECT_EQ(readMade("Points/deep/b.bin"), (std::string{"\0\xFF", 2}));
    EXPECT_TRUE(fs::is_directory(made_.path + "/files/Ways"));
    EXPECT_FALSE(fs::exists(made_.path + "/files/Other"));
    EXPECT_THAT(skipped_, IsEmpty());
}

TEST_F(Backup, ManifestTellsSizesAndHashes)
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
    EXPECT_EQ(readMade("Points/link"), "not data");
    EXPECT_FALSE(fs::is_symlink(made_.path + "/files/Points/link"));
    EXPECT_THAT(skipped_, ElementsAre(device_.path("Points/dangling"), device_.path("Points/fifo"),
                                      device_.path("Points/folder")));
}

TEST_F(Backup, TheLastTenAreKept)
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

TEST_F(Backup, SparedOneStaysBeyondTheTen)
{
    ASSERT_FALSE(make());
    const auto first = made_.path;
    for (int i = 0; i < 11; ++i)
        ASSERT_FALSE(make(first));
    EXPECT_TRUE(fs::exists(first));
    EXPECT_EQ(list().size(), 11U);
}

TEST_F(Backup, IdentifierIsMadeAHarmlessName)
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

TEST_F(Backup, AsManyAreKeptAsIsWished)
{
    for (int i = 0; i < 4; ++i)
        ASSERT_FALSE(make());
    most_ = 2;
    ASSERT_FALSE(make());
    EXPECT_EQ(list().size(), 2U);
    EXPECT_EQ(list().front().name, made_.name);
    most_ = 1;
    ASSERT_FALSE(make());
    ASSERT_EQ(list().size(), 1U);
    EXPECT_EQ(list().front().name, made_.name);
}

TEST_F(Backup, UnreadableFileLeavesNoBackupAndTheOlderOnes)
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

TEST_F(Backup, WhatAKilledRunLeftIsSweptUp)
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
              R"({"folders":[],"files":[{"path":"../x","size":1,"hash":""}]})");
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_THAT(host::listBackups(kept_.path("none"), "42"), IsEmpty());
}

TEST_F(Backup, PlaceAmongTheDataIsRefused)
{
    EXPECT_TRUE(host::makeBackup({device_.path("Points/kept")}, source(), made_, skipped_));
    EXPECT_FALSE(fs::exists(device_.path("Points/kept")));
}

TEST_F(Backup, FolderInsideTheDataWhoseNameBeginsWithTwoPointsIsRefused)
{
    EXPECT_TRUE(host::makeBackup({device_.path("Points/..kept")}, source(), made_, skipped_));
}

TEST_F(Backup, DataFolderWhoseNameBeginsWithTwoPointsIsCopied)
{
    device_.put("..pois/a", "one");
    const host::DataFolders from{device_.path(), "42", {device_.path("..pois")}};
    ASSERT_FALSE(host::makeBackup({kept_.path("kept")}, from, made_, skipped_));
    EXPECT_EQ(readMade("..pois/a"), "one");
    host::Manifest manifest;
    ASSERT_FALSE(host::readManifest(made_.path, manifest));
    EXPECT_THAT(manifest.folders, ElementsAre("..pois"));
}

TEST_F(Backup, DataFolderOutsideTheDeviceIsRefused)
{
    const host::DataFolders from{device_.path("Points"), "42", {device_.path("Other")}};
    EXPECT_TRUE(host::makeBackup({kept_.path("kept")}, from, made_, skipped_));
}

TEST_F(Backup, ManifestWhosePathsLeadOutOfTheDeviceIsRejected)
{
    const auto isRead = [this](const std::string& path) {
        kept_.put("forged/manifest.json", R"({"folders":[")" + path + R"("],"files":[{"path":")" +
                                              path + R"(","size":1,"hash":""}]})");
        host::Manifest manifest;
        return !host::readManifest(kept_.path("forged"), manifest);
    };
    for (const char* path : {"a", "..a", "a/..b", "%2E%2Ea", "%", "%4", "%4g"})
        EXPECT_TRUE(isRead(path)) << path;
    for (const char* path : {"", "..", "../a", "a/..", "/a", "%2e%2E", "%2Fa", "a%00"})
        EXPECT_FALSE(isRead(path)) << path;
}

TEST_F(Backup, PlaceThatIsAFileIsRefused)
{
    kept_.put("kept", "x");
    EXPECT_TRUE(make());
}

TEST_F(Backup, SecondOneOfTheSameDeviceIsRefusedMeanwhile)
{
    const int folder = ::open(kept_.makeFolder("kept/42").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(folder, LOCK_EX), 0);
    EXPECT_TRUE(make());
    ::close(folder);
    EXPECT_FALSE(make());
}

class Restore : public Backup {
protected:
    Restore() { EXPECT_FALSE(make()); }

    std::optional<gps::Error> restore()
    {
        host::Restore restore;
        if (auto failure = restore.open(made_.path))
            return failure;
        written_.clear();
        auto failure = restore.write(device_.path(), written_);
        strangers_ = restore.strangers(device_.path());
        return failure;
    }

    bool isOnDevice() const
    {
        host::Restore restore;
        EXPECT_FALSE(restore.open(made_.path));
        return restore.isOn(device_.path());
    }

    std::vector<std::string> written_;
    std::vector<std::string> strangers_;
};

TEST_F(Restore, PutsBackWhatChangedOrWentAndNamesWhatCame)
{
    device_.put("Points/a.upt", "two");
    fs::remove_all(device_.path("Points/deep"));
    device_.put("Points/new", "x");
    device_.put("Ways/new", "x");
    EXPECT_FALSE(isOnDevice());
    EXPECT_FALSE(restore());
    EXPECT_TRUE(isOnDevice());
    EXPECT_EQ(device_.read("Points/a.upt"), "one\r\n");
    EXPECT_EQ(device_.read("Points/deep/b.bin"), (std::string{"\0\xFF", 2}));
    EXPECT_EQ(device_.read("Points/new"), "x");
    EXPECT_THAT(written_, ElementsAre("Points/a.upt", "Points/deep/b.bin"));
    EXPECT_THAT(strangers_, ElementsAre("Points/new", "Ways/new"));
}

TEST_F(Restore, NamesOfAnyBytesComeBack)
{
    const std::vector<std::string> names{"Points/H\xFCtte", "Points/H\u00FCtte", "Points/100%",
                                         "Points/%41", "Points/new\nline"};
    for (const auto& name : names)
        device_.put(name, name);
    ASSERT_FALSE(make());
    for (const auto& name : names)
        fs::remove(device_.path(name));
    EXPECT_FALSE(restore());
    for (const auto& name : names)
        EXPECT_EQ(device_.read(name), name);
    EXPECT_THAT(strangers_, IsEmpty());
}

TEST_F(Restore, IsOnADeviceThatHoldsEachFileAsItWas)
{
    EXPECT_TRUE(isOnDevice());
    device_.put("Points/new", "x");
    EXPECT_TRUE(isOnDevice()) << "whatever else is there";
    device_.put("Points/a.upt", "two\r\n");
    EXPECT_FALSE(isOnDevice()) << "as long, but another";
    device_.put("Points/a.upt", "one\r\n");
    EXPECT_TRUE(isOnDevice());
    fs::remove(device_.path("Points/a.upt"));
    EXPECT_FALSE(isOnDevice());
}

TEST_F(Restore, WritesNothingWhereNothingChanged)
{
    EXPECT_FALSE(restore());
    EXPECT_THAT(written_, IsEmpty());
    EXPECT_THAT(strangers_, IsEmpty());
}

TEST_F(Restore, DamagedBackupWritesNothing)
{
    device_.put("Points/a.upt", "two");
    kept_.put(fs::path{made_.path}.lexically_relative(kept_.path()).string() +
                  "/files/Points/deep/b.bin",
              "xx");
    const auto failure = restore();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), made_.path + "/files/Points/deep/b.bin");
    EXPECT_EQ(device_.read("Points/a.upt"), "two");
}

TEST_F(Restore, FolderThatIsNoBackupIsRefused)
{
    host::Restore restore;
    EXPECT_TRUE(restore.open(device_.path()));
    EXPECT_TRUE(restore.open(device_.path("none")));
}

TEST_F(Restore, RefusedWriteIsAnErrorWithItsPath)
{
    fs::remove_all(device_.path("Points/deep"));
    device_.put("Points/deep", "a file where a folder was");
    const auto failure = restore();
    ASSERT_TRUE(failure);
    EXPECT_THAT(*failure->path(), testing::HasSubstr("Points/deep"));
}

} // namespace
