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
#include <functional>
#include <map>
#include <set>
#include <string_view>

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

TEST_F(Backup, FoldersOfDevicesAreListed)
{
    EXPECT_THAT(host::listBackedUpDevices(kept_.path("kept")), IsEmpty());
    ASSERT_FALSE(make());
    kept_.put("kept/file", "");
    kept_.put("kept/not a name of a device/file", "");
    kept_.put("kept/../43/file", "");
    EXPECT_THAT(host::listBackedUpDevices(kept_.path("kept")), ElementsAre("42"));
    const auto backups = host::listBackups(kept_.path("kept"), "42");
    ASSERT_EQ(backups.size(), 1U);
    EXPECT_EQ(backups[0].path, made_.path);
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
    host::WrittenFiles files;
    EXPECT_FALSE(restore.write(device_.path(), files));
    EXPECT_THAT(files.written, ElementsAre("Points/a.upt"));
    EXPECT_THAT(restore.extraFiles(device_.path()), IsEmpty());
}

TEST_F(Backup, OfAMediumThatIsPulledOutIsNotMade)
{
    auto from = source();
    from.folders.push_back(device_.path("Gone"));
    host::MadeBackup made;
    EXPECT_TRUE(host::makeBackup(policy(), from, made)) << "a data folder is gone";
    EXPECT_THAT(list(), IsEmpty());

    struct : gps::FileSystem {
        int stat(const char* path, struct stat* out) override
        {
            if (!std::string_view{path}.ends_with("/a.upt"))
                return FileSystem::stat(path, out);
            errno = ENOENT;
            return -1;
        }
    } files;
    EXPECT_TRUE(make(files)) << "a file that was listed is gone";
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(Backup, ThatIsStoppedLeavesNothing)
{
    int asked = 0;
    auto from = source();
    from.stopRequested = [&asked] { return ++asked == 2; }; // after the first file
    host::MadeBackup made;
    EXPECT_TRUE(host::makeBackup(policy(), from, made));
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(kept_.path("kept/42")));
}

// The names of backups, in the order of the list.
std::vector<std::string> namesOf(const std::vector<host::Backup>& backups)
{
    std::vector<std::string> names;
    for (const auto& backup : backups)
        names.push_back(backup.name);
    return names;
}

TEST_F(Backup, TheFirstAndTheNewestNineAreKept)
{
    std::vector<std::string> names;
    for (int i = 0; i < 10; ++i) {
        change();
        ASSERT_FALSE(make());
        EXPECT_THAT(deleted_, IsEmpty());
        names.insert(names.begin(), made_.name);
    }
    EXPECT_EQ(namesOf(list()), names);
    for (int i = 0; i < 2; ++i) {
        change();
        ASSERT_FALSE(make());
        EXPECT_THAT(deleted_, ElementsAre(names[8])) << "the first is kept";
        names.insert(names.begin(), made_.name);
        names.erase(names.begin() + 9);
    }
    EXPECT_EQ(namesOf(list()), names);
}

TEST_F(Backup, ProtectedOneIsKeptInAdditionToTheTen)
{
    ASSERT_FALSE(make());
    change();
    ASSERT_FALSE(make());
    const auto second = made_.path;
    for (int i = 0; i < 11; ++i) {
        auto policy = this->policy();
        policy.protectedPath = second;
        change();
        ASSERT_FALSE(make(policy));
    }
    EXPECT_TRUE(fs::exists(second));
    EXPECT_EQ(list().size(), 11U);
}

TEST_F(Backup, TheOneJustMadeAndTheFirstAreKeptWhateverTheLimit)
{
    ASSERT_FALSE(make());
    const auto first = made_.name;
    for (const std::size_t count : {2U, 1U, 0U}) {
        count_ = count;
        change();
        ASSERT_FALSE(make());
        EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, first)) << count;
        ASSERT_FALSE(make());
        EXPECT_FALSE(isNew_);
        EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, first)) << count;
    }
}

// Moves a backup to another day.
void setDay(const host::Backup& backup, const std::string& day)
{
    host::Manifest manifest;
    EXPECT_FALSE(host::readManifest(backup.path, manifest));
    manifest.day = day;
    EXPECT_FALSE(host::writeManifest(backup.path, manifest));
}

TEST_F(Backup, TheFirstOfTheDayIsKeptAsWell)
{
    count_ = 3;
    std::vector<std::string> names;
    for (int i = 0; i < 6; ++i) {
        change();
        ASSERT_FALSE(make());
        names.push_back(made_.name);
        if (i < 2)
            setDay(made_, "20200101");
    }
    EXPECT_THAT(namesOf(list()), ElementsAre(names[5], names[2], names[0]));
}

TEST_F(Backup, FirstOneStaysTheFirstIfTheDeviceIsInItsStateOnceMore)
{
    ASSERT_FALSE(make());
    const auto first = made_.name;
    setDay(made_, "20200101");
    change();
    ASSERT_FALSE(make());
    device_.put("Points/a.upt", "one\r\n");
    ASSERT_FALSE(make());
    EXPECT_EQ(made_.name, first);
    count_ = 1;
    for (int i = 0; i < 3; ++i) {
        change();
        ASSERT_FALSE(make());
    }
    EXPECT_THAT(namesOf(list()), testing::Contains(first));
}

TEST_F(Backup, ThoseOfAnotherDeviceWithoutAnIdentifierAreNotDeleted)
{
    count_ = 1;
    auto anonymous = source();
    anonymous.identifier.clear();
    const auto backUp = [&] {
        host::MadeBackup made;
        EXPECT_FALSE(host::makeBackup(policy(), anonymous, made));
        return made;
    };
    const auto other = backUp();
    device_.put("Points/a.upt", "two");
    device_.put("Points/deep/b.bin", "another device");
    const auto first = backUp();
    EXPECT_THAT(first.deleted, IsEmpty());
    for (int i = 0; i < 3; ++i) {
        change();
        (void)backUp();
    }
    EXPECT_TRUE(fs::exists(other.backup.path));
    EXPECT_TRUE(fs::exists(first.backup.path));
    EXPECT_EQ(host::listBackups(kept_.path("kept"), "").size(), 3U);
}

// Renames a backup as if it had been made at another time.
void setTime(host::Backup& backup, const std::string& name)
{
    const auto path = fs::path{backup.path}.parent_path() / name;
    fs::rename(backup.path, path);
    backup.path = path.string();
    backup.name = name;
}

TEST_F(Backup, ClockThatRunsBackwardsChangesNothingAboutWhichAreKept)
{
    ASSERT_FALSE(make());
    auto first = made_;
    setTime(first, "99991231T235959Z");
    change();
    ASSERT_FALSE(make());
    auto second = made_;
    setTime(second, "99990101T000000Z");
    change();
    ASSERT_FALSE(make());
    EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, second.name, first.name));

    count_ = 3;
    const auto third = made_;
    change();
    ASSERT_FALSE(make());
    EXPECT_THAT(deleted_, ElementsAre(second.name));
    EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, third.name, first.name));
}

TEST_F(Backup, OnesOfOlderVersionsAreOlderAndSortedByName)
{
    const std::string manifest = R"({"device":"/d","folders":[],"files":[]})";
    for (const char* name : {"99991231T235959Z", "20200101T000000Z-9", "20200101T000000Z-10"})
        kept_.put("kept/42/" + std::string{name} + "/manifest.json", manifest);
    ASSERT_FALSE(make());
    EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, "99991231T235959Z", "20200101T000000Z-10",
                                             "20200101T000000Z-9"));
    EXPECT_EQ(list().front().sequence, 1U);
}

TEST_F(Backup, LargestSequenceIsNotExceeded)
{
    kept_.put("kept/42/20200101T000000Z/manifest.json",
              host::manifestText({"/d", {}, {}, host::kLargestSequence}));
    count_ = 1;
    ASSERT_FALSE(make());
    EXPECT_EQ(made_.sequence, host::kLargestSequence);
    EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, "20200101T000000Z"));
}

TEST_F(Backup, EqualStateMakesNoSecondBackup)
{
    ASSERT_FALSE(make());
    EXPECT_TRUE(isNew_);
    const auto first = made_;
    ASSERT_FALSE(make());
    EXPECT_FALSE(isNew_);
    EXPECT_EQ(made_.path, first.path);
    EXPECT_EQ(made_.files, first.files);
    EXPECT_EQ(list().size(), 1U);
    EXPECT_FALSE(fs::exists(kept_.path("kept/42/.unfinished")));
    EXPECT_FALSE(host::Restore{}.open(made_.path));
}

TEST_F(Backup, EveryDifferenceMakesANewBackup)
{
    ASSERT_FALSE(make());
    const std::vector<std::function<void()>> differences{
        [&] { device_.put("Points/a.upt", "one\n\r"); }, // of the same size
        [&] { device_.put("Points/a.upt", "one"); }, [&] { device_.put("Ways/new", ""); },
        [&] { fs::rename(device_.path("Ways/new"), device_.path("Ways/newer")); },
        [&] { fs::remove(device_.path("Points/deep/b.bin")); }};
    for (std::size_t i = 0; i < differences.size(); ++i) {
        differences[i]();
        ASSERT_FALSE(make());
        EXPECT_TRUE(isNew_) << i;
        EXPECT_EQ(list().size(), i + 2);
    }
}

TEST_F(Backup, EqualOneIsFoundAmongAllAndBecomesTheNewest)
{
    ASSERT_FALSE(make());
    const auto first = made_;
    change();
    ASSERT_FALSE(make());
    const auto second = made_;
    device_.put("Points/a.upt", "one\r\n");
    ASSERT_FALSE(make());
    EXPECT_FALSE(isNew_);
    EXPECT_THAT(namesOf(list()), ElementsAre(first.name, second.name));

    count_ = 2;
    change();
    ASSERT_FALSE(make());
    EXPECT_THAT(deleted_, ElementsAre(second.name));
    EXPECT_THAT(namesOf(list()), ElementsAre(made_.name, first.name));
}

TEST_F(Backup, FolderWithABackupsNameAndNoListOfFilesIsDamaged)
{
    ASSERT_FALSE(make());
    const auto damaged = [this] {
        std::vector<std::string> names;
        for (const auto& backup : host::listDamagedBackups(kept_.path("kept"), "42"))
            names.push_back(backup.name);
        return names;
    };
    EXPECT_THAT(damaged(), IsEmpty());
    for (const char* const name :
         {"20240601T100000Z", "20240601T100000Z-1", "20240601T10000Z", "20240601-100000Z",
          "2024O601T100000Z", "20240601T100000", "notes", ".unfinished"})
        kept_.makeFolder(std::string{"kept/42/"} + name);
    kept_.put("kept/42/20240602T100000Z", "not a folder");
    kept_.put("kept/42/20240603T100000Z/manifest.json", "{}");
    EXPECT_THAT(damaged(),
                ElementsAre("20240601T100000Z", "20240601T100000Z-1", "20240603T100000Z"));
    EXPECT_EQ(list().size(), 1U);
}

TEST_F(Backup, DamagedOneIsNotTakenForAnEqualOne)
{
    ASSERT_FALSE(make());
    kept_.put(inMade("Points/a.upt"), "ONE\r\n");
    ASSERT_FALSE(make());
    EXPECT_TRUE(isNew_);
    fs::remove(made_.path + "/files/Points/a.upt");
    ASSERT_FALSE(make());
    EXPECT_TRUE(isNew_);
    EXPECT_FALSE(host::Restore{}.open(made_.path));
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
        change();
        host::MadeBackup made;
        ASSERT_FALSE(host::makeBackup({kept_.path()}, from, made));
        EXPECT_EQ(fs::path{made.backup.path}.parent_path(), kept_.path(name));
        EXPECT_EQ(host::listBackups(kept_.path(), identifier).size(),
                  1U + (name == "__" && identifier == "Ä" ? 1U : 0U));
    }
}

TEST_F(Backup, AsManyAreKeptAsThePolicySays)
{
    for (int i = 0; i < 4; ++i) {
        change();
        ASSERT_FALSE(make());
    }
    count_ = 2;
    change();
    ASSERT_FALSE(make());
    EXPECT_EQ(deleted_.size(), 3U);
    EXPECT_EQ(list().size(), 2U);
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
    EXPECT_TRUE(make({device_.path("Points/kept")}));
    EXPECT_FALSE(fs::exists(device_.path("Points/kept")));
}

TEST_F(Backup, FolderInsideTheDataWhoseNameBeginsWithTwoPointsIsRejected)
{
    EXPECT_TRUE(make({device_.path("Points/..kept")}));
}

TEST_F(Backup, DataFolderWhoseNameBeginsWithTwoPointsIsCopied)
{
    device_.put("..pois/a", "one");
    const host::DataFolders from{device_.path(), "42", {device_.path("..pois")}};
    host::MadeBackup made;
    ASSERT_FALSE(host::makeBackup({kept_.path("kept")}, from, made));
    made_ = made.backup;
    EXPECT_EQ(kept_.read(inMade("..pois/a")), "one");
    host::Manifest manifest;
    ASSERT_FALSE(host::readManifest(made_.path, manifest));
    EXPECT_THAT(manifest.folders, ElementsAre("..pois"));
}

TEST_F(Backup, DataFolderOutsideTheDeviceIsRejected)
{
    const host::DataFolders from{device_.path("Points"), "42", {device_.path("Other")}};
    host::MadeBackup made;
    EXPECT_TRUE(host::makeBackup({kept_.path("kept")}, from, made));
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
    change();
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

// The same for a backup that equals an older one.
TEST_F(Backup, OneFailedCallLosesNoEqualBackup)
{
    ASSERT_FALSE(make());
    const auto older = made_.path;
    support::OneFault recorder;
    ASSERT_FALSE(make(recorder));
    ASSERT_FALSE(isNew_);

    std::map<std::string, int> counts;
    for (const auto& call : recorder.calls()) {
        support::OneFault files{call, EIO, ++counts[call]};
        const auto failure = make(files);
        const auto which = call + " " + std::to_string(counts[call]);
        EXPECT_FALSE(host::Restore{}.open(older)) << which;
        EXPECT_TRUE(failure || !host::Restore{}.open(made_.path)) << which;
        std::filesystem::remove_all(kept_.path("kept/42/.unfinished"));
        for (const auto& backup : list()) {
            if (backup.path != older)
                std::filesystem::remove_all(backup.path);
        }
    }
}

// A backup that was skipped because of a passing error may have the largest sequence.
TEST_F(Backup, NoTwoHaveTheSameSequenceAfterAFailedRead)
{
    ASSERT_FALSE(make());
    change();
    ASSERT_FALSE(make());
    const auto newest = made_.sequence;
    change();
    int failures = 0;
    for (const char* const call : {"open", "fstat", "read"}) {
        for (int which = 1; which <= 4; ++which) {
            support::OneFault files{call, EIO, which};
            failures += make(files) ? 1 : 0;
            std::set<std::uint64_t> sequences;
            for (const auto& backup : list())
                EXPECT_TRUE(sequences.insert(backup.sequence).second) << call << ' ' << which;
        }
    }
    EXPECT_GT(failures, 3);
    EXPECT_GT(list().front().sequence, newest);
}

TEST_F(Backup, OlderOneThatCannotBeReadIsNamed)
{
    ASSERT_FALSE(make());
    const auto manifest = made_.path + "/manifest.json";
    fs::remove(manifest);
    fs::create_symlink("manifest.json", manifest); // a loop
    const auto failure = make();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), manifest);
    EXPECT_THAT(*failure->description(), testing::HasSubstr("older backup cannot be read"));
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
