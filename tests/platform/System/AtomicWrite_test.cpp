// SPDX-License-Identifier: MIT

#include "OneFault.h"
#include "PrivateMount.h"

#include <platform/System/AtomicWrite.h>
#include <platform/System/FileManager.h>

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
#include <support/AsNobody.h>
#include <support/TemporaryFolder.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gps {
namespace {

using support::OneFault;
using support::PrivateMount;
using support::TemporaryFolder;
using testing::ElementsAre;

std::int32_t codeOf(const std::optional<Error>& error)
{
    return error ? error->code() : 0;
}

/// The names in a folder, hidden ones too.
std::vector<std::string> namesIn(const TemporaryFolder& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator{folder.path()})
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

mode_t modeOf(const std::string& path)
{
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// Each write takes at most seven bytes, and each second one is interrupted.
class SlowFiles : public FileSystem {
public:
    ssize_t write(int file, const void* data, std::size_t size) override
    {
        interrupted_ = !interrupted_;
        if (!interrupted_)
            return FileSystem::write(file, data, std::min<std::size_t>(size, 7));
        errno = EINTR;
        return -1;
    }

private:
    bool interrupted_ = false;
};

TEST(AtomicWrite, MakesANewFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a.log"), "text\r\n"),
              std::nullopt);
    EXPECT_EQ(folder.read("a.log"), "text\r\n");
    EXPECT_THAT(namesIn(folder), ElementsAre("a.log"));
}

TEST(AtomicWrite, ReplacesAnOldFileAndLeavesNothingElse)
{
    const TemporaryFolder folder;
    folder.put("a.log", "a longer old text");
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a.log"), ""), std::nullopt);
    EXPECT_EQ(folder.read("a.log"), "");
    EXPECT_THAT(namesIn(folder), ElementsAre("a.log"));
}

// The second flush of the file is what vfat needs; the last one is the folder's.
TEST(AtomicWrite, FlushesTheFileBeforeAndAfterTheRenameAndThenTheFolder)
{
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files;
    EXPECT_EQ(writeAtomically(files, folder.path("a"), "new"), 0);
    EXPECT_THAT(files.calls(),
                ElementsAre("open", "flock", "unlinkat", "openat", "write", "fchmod", "fsync",
                            "renameat", "fsync", "fsync", "close", "close"));
}

TEST(AtomicWrite, ShortAndInterruptedWritesGiveTheWholeFile)
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

class AtomicWriteBeforeRename : public testing::TestWithParam<Fault> {};

TEST_P(AtomicWriteBeforeRename, AFaultLeavesTheOldFileAndNothingElse)
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
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, AtomicWriteBeforeRename,
    testing::Values(Fault{"open", ENOENT, 1, 4}, Fault{"open", EACCES, 1, 513},
                    Fault{"open", EIO, 1, 512}, Fault{"flock", EWOULDBLOCK, 1, 512},
                    Fault{"openat", EROFS, 1, 642}, Fault{"openat", EPERM, 1, 513},
                    Fault{"openat", ENOSPC, 1, 640}, Fault{"write", ENOSPC, 1, 640},
                    Fault{"write", EDQUOT, 1, 640}, Fault{"write", EIO, 1, 512},
                    Fault{"fsync", EIO, 1, 512}, Fault{"fsync", ENOSPC, 1, 640},
                    Fault{"renameat", EROFS, 1, 642}, Fault{"renameat", EXDEV, 1, 512}));

class AtomicWriteAfterRename : public testing::TestWithParam<Fault> {};

TEST_P(AtomicWriteAfterRename, AFaultIsReportedAndTheNewFileStands)
{
    const auto& fault = GetParam();
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files{fault.call, fault.error, fault.which};
    EXPECT_EQ(codeOf(FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "new")),
              fault.code);
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

INSTANTIATE_TEST_SUITE_P(Faults, AtomicWriteAfterRename,
                         testing::Values(Fault{"fsync", EIO, 2, 512}, Fault{"fsync", EROFS, 2, 642},
                                         Fault{"fsync", EIO, 3, 512}, Fault{"close", EIO, 1, 512}));

class AtomicWriteHarmless : public testing::TestWithParam<Fault> {};

TEST_P(AtomicWriteHarmless, AFaultThatLosesNothingIsNoFailure)
{
    const auto& fault = GetParam();
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files{fault.call, fault.error, fault.which};
    EXPECT_EQ(FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

// A volume without locks, without modes, whose folders cannot be flushed; interrupted calls.
INSTANTIATE_TEST_SUITE_P(Faults, AtomicWriteHarmless,
                         testing::Values(Fault{"flock", EOPNOTSUPP, 1, 0},
                                         Fault{"fchmod", EPERM, 1, 0}, Fault{"write", EINTR, 1, 0},
                                         Fault{"fsync", EINVAL, 3, 0}, Fault{"close", EINTR, 1, 0},
                                         Fault{"close", EIO, 2, 0}));

TEST(AtomicWrite, ATextThatIsNotAsciiIsCode517AndTouchesNothing)
{
    const TemporaryFolder folder;
    folder.put("a", "old");
    OneFault files;
    EXPECT_EQ(codeOf(FileManager{&files}.writeAsciiFileAtomically(folder.path("a"), "caf\xC3\xA9")),
              517);
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_TRUE(files.calls().empty());
}

TEST(AtomicWrite, AMissingFolderIsCode4)
{
    const TemporaryFolder folder;
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("none/a"), "new")), 4);
}

TEST(AtomicWrite, AFileInThePlaceOfTheFolderIsCode512)
{
    const TemporaryFolder folder;
    folder.put("file", "old");
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("file/a"), "new")), 512);
}

TEST(AtomicWrite, AFolderInThePlaceOfTheFileIsCode512AndStays)
{
    const TemporaryFolder folder;
    folder.put("a/inside", "old");
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new")), 512);
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a/"), "new")), 512);
    EXPECT_EQ(folder.read("a/inside"), "old");
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

TEST(AtomicWrite, ARefusedFolderIsCode513)
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

TEST(AtomicWrite, TheModeOfAReplacedFileIsKept)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "old");
    for (const mode_t mode : {0600U, 0640U, 0444U, 0755U}) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(path, "new"), std::nullopt);
        EXPECT_EQ(modeOf(path), mode);
    }
}

TEST(AtomicWrite, ALinkIsReplacedAndItsTargetStays)
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

TEST(AtomicWrite, WhatAKilledWriterLeftIsSweptUp)
{
    const TemporaryFolder folder;
    folder.put(".~write.tmp", "half a fi");
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

TEST(AtomicWrite, ALinkInTheTemporaryFilesPlaceIsNotWrittenThrough)
{
    const TemporaryFolder folder;
    folder.put("precious", "old");
    ASSERT_EQ(::symlink("precious", folder.path(".~write.tmp").c_str()), 0);
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new"), std::nullopt);
    EXPECT_EQ(folder.read("precious"), "old");
}

TEST(AtomicWrite, ASecondWriterInTheFolderIsRefusedAtOnce)
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

TEST(AtomicWrite, WritersAtOnceNeverMixTheirTexts)
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
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
}

TEST(AtomicWrite, TheLongestNameWorksAndALongerOneIsCode512)
{
    const TemporaryFolder folder;
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path(std::string(255, 'n')), "new"),
              std::nullopt);
    EXPECT_EQ(
        codeOf(FileManager{}.writeAsciiFileAtomically(folder.path(std::string(256, 'n')), "new")),
        512);
    EXPECT_THAT(namesIn(folder), ElementsAre(std::string(255, 'n')));
}

TEST(AtomicWrite, APathWithoutAFolderIsInTheWorkingFolder)
{
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically("a", "new"), std::nullopt);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.read("a"), "new");
}

TEST(AtomicWrite, AFullVolumeIsCode640AndKeepsTheOldFile)
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
    EXPECT_THAT(namesIn(folder), ElementsAre("a"));
    EXPECT_EQ(FileManager{}.writeAsciiFileAtomically(folder.path("a"), std::string(30'000, 'x')),
              std::nullopt);
}

TEST(AtomicWrite, AReadOnlyVolumeIsCode642)
{
    const TemporaryFolder folder;
    const PrivateMount volume{folder.path(), "", MS_RDONLY};
    if (!volume.isMounted())
        GTEST_SKIP() << "mounting is not permitted";
    EXPECT_EQ(codeOf(FileManager{}.writeAsciiFileAtomically(folder.path("a"), "new")), 642);
}

} // namespace
} // namespace gps
