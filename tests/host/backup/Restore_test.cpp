// SPDX-License-Identifier: MIT

#include "host/backup/Restore.h"

#include "host/backup/BackupFixture.h"
#include "platform/System/OneFault.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <map>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class Restore : public support::BackupFixture {
protected:
    Restore() { EXPECT_FALSE(make()); }

    std::optional<gps::Error> restore(gps::FileSystem& files = gps::FileSystem::system())
    {
        host::Restore restore{files};
        if (auto failure = restore.open(made_.path))
            return failure;
        host::WrittenFiles result;
        auto failure = restore.write(device_.path(), result, stopRequested_);
        written_ = std::move(result.written);
        asBefore_ = std::move(result.asBefore);
        extra_ = restore.extraFiles(device_.path());
        return failure;
    }

    bool isOnDevice() const
    {
        host::Restore restore;
        EXPECT_FALSE(restore.open(made_.path));
        return restore.changedFiles(device_.path()).empty();
    }

    std::function<bool()> stopRequested_;
    std::vector<std::string> written_;
    std::vector<std::string> asBefore_;
    std::vector<std::string> extra_;
};

TEST_F(Restore, RestoresChangedAndMissingFilesAndReportsNewOnes)
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
    EXPECT_THAT(asBefore_, IsEmpty());
    EXPECT_THAT(extra_, ElementsAre("Points/new", "Ways/new"));
}

TEST_F(Restore, ChangedFilesAreThoseThatWouldBeWritten)
{
    ASSERT_FALSE(make());
    host::Restore restore;
    ASSERT_FALSE(restore.open(made_.path));
    EXPECT_THAT(restore.changedFiles(device_.path()), testing::IsEmpty());
    device_.put("Points/deep/b.bin", "changed");
    const auto changed = restore.changedFiles(device_.path());
    EXPECT_THAT(changed, testing::ElementsAre("Points/deep/b.bin"));
    EXPECT_EQ(restore.bytesOf(changed), 2U);
    EXPECT_EQ(restore.bytesOf(restore.files()), 7U);
    EXPECT_EQ(restore.bytesOf({"Points/other"}), 0U);
}

TEST_F(Restore, StopLeavesTheFilesThatWereNotReached)
{
    device_.put("Points/a.upt", "two");
    fs::remove_all(device_.path("Points/deep"));
    int asked = 0;
    stopRequested_ = [&asked] { return ++asked == 2; };
    EXPECT_FALSE(restore());
    EXPECT_THAT(written_, ElementsAre("Points/a.upt"));
    EXPECT_THAT(asBefore_, ElementsAre("Points/deep/b.bin"));
    EXPECT_FALSE(fs::exists(device_.path("Points/deep")));
}

TEST_F(Restore, FailureLeavesTheFilesThatWereNotReached)
{
    fs::remove(device_.path("Points/a.upt"));
    device_.makeFolder("Points/a.upt"); // a file cannot replace it
    fs::remove_all(device_.path("Points/deep"));
    EXPECT_TRUE(restore());
    EXPECT_THAT(written_, IsEmpty());
    EXPECT_THAT(asBefore_, ElementsAre("Points/deep/b.bin"));
}

TEST_F(Restore, FilesAreRestoredWhateverBytesTheirNamesHave)
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
    EXPECT_THAT(extra_, IsEmpty());
}

TEST_F(Restore, MatchesADeviceThatHoldsEachFileUnchanged)
{
    EXPECT_TRUE(isOnDevice());
    device_.put("Points/new", "x");
    EXPECT_TRUE(isOnDevice()) << "other files do not matter";
    device_.put("Points/a.upt", "two\r\n");
    EXPECT_FALSE(isOnDevice()) << "the same size, other content";
    device_.put("Points/a.upt", "one\r\n");
    EXPECT_TRUE(isOnDevice());
    fs::remove(device_.path("Points/a.upt"));
    EXPECT_FALSE(isOnDevice());
}

TEST_F(Restore, KnowsItsDeviceByTheIdentifier)
{
    host::Restore restore;
    ASSERT_FALSE(restore.open(made_.path));
    EXPECT_TRUE(restore.isOf("42", device_.path()));
    EXPECT_FALSE(restore.isOf("43", device_.path()));
    EXPECT_FALSE(restore.isOf("", device_.path()));
}

TEST_F(Restore, BackupOfAnOlderVersionIsKnownByItsFolder)
{
    host::Manifest manifest;
    ASSERT_FALSE(host::readManifest(made_.path, manifest));
    manifest.identifier.reset();
    ASSERT_FALSE(host::writeManifest(made_.path, manifest));
    host::Restore restore;
    ASSERT_FALSE(restore.open(made_.path));
    EXPECT_TRUE(restore.isOf("42", device_.path()));
    EXPECT_FALSE(restore.isOf("43", device_.path()));
}

TEST_F(Restore, DeviceWithoutAnIdentifierIsKnownByAFile)
{
    auto anonymous = source();
    anonymous.identifier.clear();
    host::MadeBackup made;
    ASSERT_FALSE(host::makeBackup(policy(), anonymous, made));
    host::Restore restore;
    ASSERT_FALSE(restore.open(made.backup.path));
    device_.put("Points/a.upt", "changed");
    EXPECT_TRUE(restore.isOf("", device_.path()));
    device_.put("Points/deep/b.bin", "changed");
    EXPECT_FALSE(restore.isOf("", device_.path()));
    EXPECT_FALSE(restore.isOf("42", device_.path()));
}

TEST_F(Restore, WritesNothingIfNothingChanged)
{
    EXPECT_FALSE(restore());
    EXPECT_THAT(written_, IsEmpty());
    EXPECT_THAT(extra_, IsEmpty());
}

TEST_F(Restore, DamagedBackupWritesNothing)
{
    device_.put("Points/a.upt", "two");
    kept_.put(inMade("Points/deep/b.bin"), "xx");
    const auto failure = restore();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), made_.path + "/files/Points/deep/b.bin");
    EXPECT_EQ(device_.read("Points/a.upt"), "two");
}

TEST_F(Restore, FolderThatIsNotABackupIsRejected)
{
    host::Restore restore;
    EXPECT_TRUE(restore.open(device_.path()));
    EXPECT_TRUE(restore.open(device_.path("missing")));
}

TEST_F(Restore, FailedWriteIsReportedWithItsPath)
{
    fs::remove_all(device_.path("Points/deep"));
    device_.put("Points/deep", "a file where a folder was");
    const auto failure = restore();
    ASSERT_TRUE(failure);
    EXPECT_THAT(*failure->path(), testing::HasSubstr("Points/deep"));
}

// Each call that a restore makes fails once. A file on the device must then be the old or the new
// one, and a restore that reports success must be complete.
TEST_F(Restore, OneFailedCallDamagesNoFileAndIsReported)
{
    const auto change = [&] {
        device_.put("Points/a.upt", "two");
        device_.put("Points/deep/b.bin", "three");
    };
    change();
    support::OneFault recorder;
    ASSERT_FALSE(restore(recorder));

    std::map<std::string, int> counts;
    int reported = 0;
    for (const auto& call : recorder.calls()) {
        change();
        support::OneFault files{call, EIO, ++counts[call]};
        const auto failure = restore(files);
        const auto which = call + " " + std::to_string(counts[call]);
        const auto a = device_.read("Points/a.upt");
        const auto b = device_.read("Points/deep/b.bin");
        EXPECT_TRUE(a == "one\r\n" || a == "two") << which;
        EXPECT_TRUE(b == (std::string{"\0\xFF", 2}) || b == "three") << which;
        EXPECT_TRUE(failure || isOnDevice()) << which;
        reported += failure ? 1 : 0;
    }
    EXPECT_GT(reported, 10);
}

} // namespace
