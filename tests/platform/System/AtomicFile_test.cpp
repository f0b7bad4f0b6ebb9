// SPDX-License-Identifier: MIT

#include "OneFault.h"
#include "PrivateMount.h"
#include "SlowFiles.h"
#include "platform/System/CodeOf.h"

#include <platform/System/AtomicFile.h>
#include <platform/System/FileManager.h>
#include <platform/System/FullTransfer.h>
#include <support/AsNobody.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gps {
namespace {

using support::codeOf;
using support::OneFault;
using support::PrivateMount;
using support::SlowFiles;
using support::TemporaryFolder;
using testing::ElementsAre;

mode_t modeOf(const std::string& path)
{
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST(AtomicFile, CreatesANewFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a.log"), "text\r\n"),
              std::nullopt);
    EXPECT_EQ(folder.read("a.log"), "text\r\n");
    EXPECT_THAT(folder.names(), ElementsAre("a.log"));
}

TEST(AtomicFile, ReplacesAnOldFileAndLeavesNothingElse)
{
    const TemporaryFolder folder;
    folder.put("a.log", "a longer old text");
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a.log"), ""), std::nullopt);
    EXPECT_EQ(folder.read("a.log"), "");
    EXPECT_THAT(folder.names(), ElementsAre("a.log"));
}

TEST(AtomicFile, BytesOfALargeFileAreCountedPieceByPiece)
{
    constexpr std::size_t kPiece = std::size_t{4} << 20;
    const TemporaryFolder folder;
    const auto text = std::string(kPiece, 'x') + std::string(kPiece, 'y') + 'z';
    const auto before = fileBytesWritten();
    OneFault files;
    EXPECT_EQ(writeAtomically(files, folder.path("a"), text), 0);
    EXPECT_EQ(std::count(files.calls().begin(), files.calls().end(), "write"), 3);
    EXPECT_EQ(fileBytesWritten() - before, text.size());
    EXPECT_EQ(folder.read("a"), text);
}

TEST(AtomicFile, FailureOfALaterPieceLeavesTheOldFile)
{
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files{"write", ENOSPC, 2};
    EXPECT_EQ(writeAtomically(files, folder.path("a"), std::string(std::size_t{5} << 20, 'x')),
              ENOSPC);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

std::vector<std::string> callsOfAWriteOn(long fileSystemType)
{
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files;
    files.setType(fileSystemType);
    EXPECT_EQ(writeAtomically(files, folder.path("a"), "new"), 0);
    return files.calls();
}

// The last flush is that of the folder. The numbers are those of vfat, exFAT, a file system in user
// space, one on the network and one that nobody knows.
TEST(AtomicFile, FlushesTheFileBeforeAndAfterTheRenameAndThenTheFolder)
{
    for (const long type : {0x4d44L, 0x2011BAB0L, 0x65735546L, 0x6969L, 0L})
        EXPECT_THAT(callsOfAWriteOn(type),
                    ElementsAre("open", "flock", "unlinkat", "openat", "fchmod", "write", "fsync",
                                "renameat", "fsync", "fsync", "close", "close"))
            << type;
}

// ext4, XFS, Btrfs, F2FS and tmpfs.
TEST(AtomicFile, FlushesTheFileOnlyBeforeTheRenameWhereNamesAndSizesAreApart)
{
    for (const long type : {0xEF53L, 0x58465342L, 0x9123683EL, 0xF2F52010L, 0x01021994L})
        EXPECT_THAT(callsOfAWriteOn(type),
                    ElementsAre("open", "flock", "unlinkat", "openat", "fchmod", "write", "fsync",
                                "renameat", "fsync", "close", "close"))
            << type;
}

TEST(AtomicFile, FlushesTheFileAgainIfItsFileSystemCannotBeLookedUp)
{
    struct Unknown : OneFault {
        int fstatfs(int /*file*/, struct statfs* /*out*/) override
        {
            errno = ENOSYS;
            return -1;
        }
    } files;
    const TemporaryFolder folder;
    EXPECT_EQ(writeAtomically(files, folder.path("a"), "new"), 0);
    EXPECT_EQ(std::count(files.calls().begin(), files.calls().end(), "fsync"), 3);
}

TEST(AtomicFile, ShortAndInterruptedWritesGiveTheWholeFile)
{
    const TemporaryFolder folder;
    SlowFiles files;
    EXPECT_EQ(writeAtomically(files, folder.path("a"), "a text of some length"), 0);
    EXPECT_EQ(folder.read("a"), "a text of some length");
}

struct Fault {
    const char* call;
    int error;
    int which;
    std::int32_t code;
};

void PrintTo(const Fault& fault, std::ostream* out)
{
    *out << fault.call << " " << fault.which << ": " << std::strerror(fault.error);
}

class AtomicFileBeforeRename : public testing::TestWithParam<Fault> {};

TEST_P(AtomicFileBeforeRename, AFaultLeavesTheOldFileAndNothingElse)
{
    const auto& fault = GetParam();
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files{fault.call, fault.error, fault.which};
    const auto error = FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "new");
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(codeOf(error), fault.code);
    EXPECT_EQ(error->path(), folder.path("a"));
    EXPECT_EQ(*error->userInfo().findString(kErrorReasonKey), std::strerror(fault.error));
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, AtomicFileBeforeRename,
    testing::Values(Fault{"open", ENOENT, 1, 4}, Fault{"open", EACCES, 1, 513},
                    Fault{"open", EIO, 1, 512}, Fault{"flock", EWOULDBLOCK, 1, 512},
                    Fault{"openat", EROFS, 1, 642}, Fault{"openat", EPERM, 1, 513},
                    Fault{"openat", ENOSPC, 1, 640}, Fault{"write", ENOSPC, 1, 640},
                    Fault{"write", EDQUOT, 1, 640}, Fault{"write", EIO, 1, 512},
                    Fault{"fsync", EIO, 1, 512}, Fault{"fsync", ENOSPC, 1, 640},
                    Fault{"renameat", EROFS, 1, 642}, Fault{"renameat", EXDEV, 1, 512}));

class AtomicFileAfterRename : public testing::TestWithParam<Fault> {};

TEST_P(AtomicFileAfterRename, AFaultIsReportedAndTheNewFileIsThere)
{
    const auto& fault = GetParam();
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files{fault.call, fault.error, fault.which};
    EXPECT_EQ(codeOf(FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "new")),
              fault.code);
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

INSTANTIATE_TEST_SUITE_P(Faults, AtomicFileAfterRename,
                         testing::Values(Fault{"fsync", EIO, 2, 512}, Fault{"fsync", EROFS, 2, 642},
                                         Fault{"fsync", EIO, 3, 512}, Fault{"close", EIO, 1, 512}));

class AtomicFileHarmless : public testing::TestWithParam<Fault> {};

TEST_P(AtomicFileHarmless, AFaultThatLosesNothingIsIgnored)
{
    const auto& fault = GetParam();
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files{fault.call, fault.error, fault.which};
    EXPECT_EQ(FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

// Volumes that have no locks or modes or cannot flush folders, and interrupted calls.
INSTANTIATE_TEST_SUITE_P(Faults, AtomicFileHarmless,
                         testing::Values(Fault{"flock", EOPNOTSUPP, 1, 0},
                                         Fault{"fchmod", EPERM, 1, 0}, Fault{"write", EINTR, 1, 0},
                                         Fault{"fsync", EINVAL, 3, 0}, Fault{"close", EINTR, 1, 0},
                                         Fault{"close", EIO, 2, 0}));

TEST(AtomicFile, ATextThatIsNotAsciiIsCode517AndTouchesNothing)
{
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files;
    EXPECT_EQ(codeOf(FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "caf\xC3\xA9")),
              517);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_TRUE(files.calls().empty());
}

TEST(AtomicFile, AMissingFolderIsCode4)
{
    const TemporaryFolder folder;
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("none/a"), "new")), 4);
}

TEST(AtomicFile, AFileWhereTheFolderShouldBeIsCode512)
{
    const TemporaryFolder folder;
    folder.put("file", "old");
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("file/a"), "new")), 512);
}

TEST(AtomicFile, AFolderAtThePathIsCode512AndIsKept)
{
    const TemporaryFolder folder;
    folder.put("a/inside", "old");
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new")), 512);
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a/"), "new")), 512);
    EXPECT_EQ(folder.read("a/inside"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(AtomicFile, AFolderWithoutPermissionIsCode513)
{
    const TemporaryFolder folder;
    const auto path = folder.put("inside/a", "old");
    ASSERT_EQ(::chmod(folder.path("inside").c_str(), 0555), 0);
    {
        const support::AsNobody nobody;
        EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(path, "new")), 513);
    }
    ASSERT_EQ(::chmod(folder.path("inside").c_str(), 0755), 0);
    EXPECT_EQ(folder.read("inside/a"), "old");
}

TEST(AtomicFile, TheModeOfAReplacedFileIsKept)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "old");
    for (const mode_t mode : {0600U, 0640U, 0444U, 0755U}) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(path, "new"), std::nullopt);
        EXPECT_EQ(modeOf(path), mode);
    }
}

TEST(AtomicFile, ALinkIsReplacedAndItsTargetIsUnchanged)
{
    const TemporaryFolder folder;
    folder.put("target", "old");
    ASSERT_EQ(::chmod(folder.path("target").c_str(), 0600), 0);
    ASSERT_EQ(::symlink("target", folder.path("a").c_str()), 0);
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_TRUE(
        std::filesystem::is_regular_file(std::filesystem::symlink_status(folder.path("a"))));
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_EQ(folder.read("target"), "old");
}

TEST(AtomicFile, ATemporaryFileThatAKilledProcessLeftIsRemoved)
{
    const TemporaryFolder folder;
    folder.put(".~write.tmp", "half a fi");
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(AtomicFile, ALinkUnderTheTemporaryNameIsNotFollowed)
{
    const TemporaryFolder folder;
    folder.put("precious", "old");
    ASSERT_EQ(::symlink("precious", folder.path(".~write.tmp").c_str()), 0);
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_EQ(folder.read("precious"), "old");
}

TEST(AtomicFile, ASecondWriteInTheFolderFailsAtOnce)
{
    const TemporaryFolder folder;
    folder.put("a", "old");
    const int other = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new")), 512);
    EXPECT_EQ(folder.read("a"), "old");
    ::close(other);
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
}

TEST(AtomicFile, ConcurrentWritesNeverMixTheirTexts)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", std::string(5000, 'o'));
    const auto writeMany = [&path](char letter) {
        for (int i = 0; i < 50; ++i)
            (void)FileManager{}.writeAsciiFileAtomically(path, std::string(5000, letter));
    };
    std::vector<std::thread> writers;
    for (const char letter : {'x', 'y', 'z'})
        writers.emplace_back(writeMany, letter);
    for (int i = 0; i < 100; ++i) {
        std::string text;
        ASSERT_EQ(FileManager{}.readAsciiFile(path, text), std::nullopt);
        ASSERT_EQ(text, std::string(5000, text[0]));
    }
    for (auto& writer : writers)
        writer.join();
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(AtomicFile, TheLongestNameWorksAndALongerOneIsCode512)
{
    const TemporaryFolder folder;
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path(std::string(255, 'n')), "new"),
              std::nullopt);
    EXPECT_EQ(
        codeOf(FileManager{}.writeAsciiFileAtomically(folder.path(std::string(256, 'n')), "new")),
        512);
    EXPECT_THAT(folder.names(), ElementsAre(std::string(255, 'n')));
}

TEST(AtomicFile, APathWithoutAFolderIsInTheWorkingFolder)
{
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically("a", "new"), std::nullopt);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.read("a"), "new");
}

TEST(AtomicFile, AFullVolumeIsCode640AndKeepsTheOldFile)
{
    const TemporaryFolder folder;
    const PrivateMount volume{folder.path(), "size=64k"};
    if (!volume.isMounted())
        GTEST_SKIP() << "mounting is not permitted";
    folder.put("a", "old");
    EXPECT_EQ(
        codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a"), std::string(100'000, 'x'))),
        640);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), std::string(30'000, 'x')),
              std::nullopt);
}

TEST(AtomicFile, AReadOnlyVolumeIsCode642)
{
    const TemporaryFolder folder;
    const PrivateMount volume{folder.path(), "", MS_RDONLY};
    if (!volume.isMounted())
        GTEST_SKIP() << "mounting is not permitted";
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new")), 642);
}

/// A write of "new" to "a", begun and filled but not committed.
class UncommittedFile : public testing::Test {
protected:
    UncommittedFile()
    {
        folder_.put("a", "old");
        EXPECT_EQ(file_.openUnlocked(folder_.path("a"), ".hidden-"), 0);
        EXPECT_EQ(writeAll(FileSystem::system(), file_.descriptor(), "new"), 0);
    }

    TemporaryFolder folder_;
    AtomicFile file_{FileSystem::system()};
};

TEST_F(UncommittedFile, HasItsContentInAHiddenFile)
{
    EXPECT_EQ(file_.temporaryPath(), folder_.path(".hidden-0"));
    EXPECT_EQ(folder_.read(".hidden-0"), "new");
    EXPECT_EQ(folder_.read("a"), "old");
    EXPECT_FALSE(file_.isRenamed());
}

TEST_F(UncommittedFile, ReplacesTheTargetWhenItIsCommitted)
{
    EXPECT_EQ(file_.commit(), 0);
    EXPECT_TRUE(file_.isRenamed());
    EXPECT_EQ(file_.temporaryPath(), "");
    EXPECT_EQ(folder_.read("a"), "new");
    EXPECT_THAT(folder_.names(), ElementsAre("a"));
}

TEST_F(UncommittedFile, CanBeCommittedUnderAnotherName)
{
    EXPECT_EQ(file_.commitAs("b"), 0);
    EXPECT_EQ(folder_.read("a"), "old");
    EXPECT_EQ(folder_.read("b"), "new");
    EXPECT_THAT(folder_.names(), ElementsAre("a", "b"));
}

TEST_F(UncommittedFile, DisappearsWhenItIsDiscarded)
{
    file_.discard();
    EXPECT_EQ(file_.temporaryPath(), "");
    EXPECT_EQ(folder_.read("a"), "old");
    EXPECT_THAT(folder_.names(), ElementsAre("a"));
}

TEST_F(UncommittedFile, DoesNotKeepOthersFromWritingInTheFolder)
{
    AtomicFile other{FileSystem::system()};
    EXPECT_EQ(other.openUnlocked(folder_.path("a"), ".hidden-"), 0);
    EXPECT_EQ(other.temporaryPath(), folder_.path(".hidden-1"));
    AtomicFile third{FileSystem::system()};
    EXPECT_EQ(third.open(folder_.path("a")), 0);
}

TEST(AtomicFile, DestroyingAnUncommittedFileRemovesItsTemporaryFile)
{
    const TemporaryFolder folder;
    {
        AtomicFile file{FileSystem::system()};
        ASSERT_EQ(file.open(folder.path("a")), 0);
        EXPECT_THAT(folder.names(), ElementsAre(".~write.tmp"));
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(AtomicFile, TheTemporaryFileHasTheModeOfTheFileItWillReplace)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::chmod(folder.put("a", "old").c_str(), 0600), 0);
    AtomicFile file{FileSystem::system()};
    ASSERT_EQ(file.openUnlocked(folder.path("a"), ".hidden-"), 0);
    EXPECT_EQ(modeOf(file.temporaryPath()), 0600U);
}

TEST(AtomicFile, AnUnlockedFileThatCannotBeCreatedIsReportedWithItsErrno)
{
    const TemporaryFolder folder;
    OneFault files{"openat", EROFS};
    AtomicFile file{files};
    EXPECT_EQ(file.openUnlocked(folder.path("a"), ".hidden-"), EROFS);
    EXPECT_EQ(file.temporaryPath(), "");
}

TEST(AtomicFile, ATemporaryFileInTheWorkingFolderHasARelativePath)
{
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    {
        AtomicFile file{FileSystem::system()};
        EXPECT_EQ(file.openUnlocked("a", ".hidden-"), 0);
        EXPECT_EQ(file.temporaryPath(), "./.hidden-0");
    }
    std::filesystem::current_path(before);
}

// A volume that lacks one or both ways of renaming without replacing.
class PlainVolume : public FileSystem {
public:
    explicit PlainVolume(bool hasLinks) : hasLinks_(hasLinks) {}

    int renameNoReplace(int, const char*, const char*) override
    {
        errno = EINVAL;
        return -1;
    }
    int linkat(int folder, const char* from, const char* to) override
    {
        if (hasLinks_)
            return FileSystem::linkat(folder, from, to);
        errno = EPERM;
        return -1;
    }

private:
    bool hasLinks_;
};

TEST(AtomicFile, ANewFileReplacesNothingOnAnyVolume)
{
    OneFault whole;
    PlainVolume withLinks{true};
    PlainVolume withoutLinks{false};
    for (FileSystem* files :
         {static_cast<FileSystem*>(&whole), static_cast<FileSystem*>(&withLinks),
          static_cast<FileSystem*>(&withoutLinks)}) {
        const TemporaryFolder folder;
        folder.put("a", "old");
        EXPECT_EQ(writeNewAtomically(*files, folder.path("a"), "new"), EEXIST);
        EXPECT_EQ(folder.read("a"), "old");
        EXPECT_EQ(writeNewAtomically(*files, folder.path("b"), "new"), 0);
        EXPECT_EQ(folder.read("b"), "new");
        std::filesystem::create_symlink("nowhere", folder.path("c"));
        EXPECT_EQ(writeNewAtomically(*files, folder.path("c"), "new"), EEXIST);
        EXPECT_THAT(folder.names(), ElementsAre("a", "b", "c"));
    }
}

TEST(AtomicFile, ANewFileThatCannotBeRenamedIsRemoved)
{
    for (const char* call : {"fsync", "renameNoReplace"}) {
        const TemporaryFolder folder;
        OneFault files{call, EIO};
        EXPECT_EQ(writeNewAtomically(files, folder.path("a"), "new"), EIO);
        EXPECT_TRUE(files.happened());
        EXPECT_THAT(folder.names(), testing::IsEmpty());
    }
}

} // namespace
} // namespace gps
