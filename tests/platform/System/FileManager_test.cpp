// SPDX-License-Identifier: MIT

#include "OneFault.h"
#include "PrivateMount.h"
#include "SlowFiles.h"
#include "platform/System/CodeOf.h"

#include <platform/System/FileManager.h>
#include <support/AsNobody.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gps {
namespace {

using support::codeOf;
using support::OneFault;
using support::SlowFiles;
using support::TemporaryFolder;

TEST(FileManager, ReadsAWholeAsciiFile)
{
    const TemporaryFolder folder;
    std::string text = "old";
    EXPECT_EQ(FileManager{}.readAsciiFile(folder.put("a", "one\r\ntwo\r\n"), text), std::nullopt);
    EXPECT_EQ(text, "one\r\ntwo\r\n");
}

TEST(FileManager, ReadsFilesOfEverySizeAroundABlock)
{
    const TemporaryFolder folder;
    for (const std::size_t size :
         {0U, 1U, 31U, 32U, 33U, (256U << 10) - 1, 256U << 10, (256U << 10) + 1, 600'000U}) {
        std::string content(size, 'x');
        for (std::size_t i = 0; i < size; ++i)
            content[i] = static_cast<char>('a' + i % 23);
        std::string text;
        EXPECT_EQ(FileManager{}.readAsciiFile(folder.put("a", content), text), std::nullopt);
        EXPECT_EQ(text, content) << size;
    }
}

TEST(FileManager, AZeroByteIsAscii)
{
    const TemporaryFolder folder;
    const std::string content{"a\0b\x7F", 4};
    std::string text;
    EXPECT_EQ(FileManager{}.readAsciiFile(folder.put("a", content), text), std::nullopt);
    EXPECT_EQ(text, content);
}

TEST(FileManager, AByteAbove127AnywhereIsNotAscii)
{
    const TemporaryFolder folder;
    for (const std::size_t at : {0U, 7U, 8U, 31U, 32U, 63U, 64U, 69U}) {
        std::string content(70, 'x');
        content[at] = '\x80';
        std::string text = "old";
        EXPECT_EQ(codeOf(FileManager{}.readAsciiFile(folder.put("a", content), text)), 261) << at;
        EXPECT_EQ(text, "");
    }
}

TEST(FileManager, AMissingFileIsCode260WithThePathAndTheSystemsText)
{
    std::string text = "old";
    const auto error = FileManager{}.readAsciiFile("/nowhere/at all.log", text);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
    EXPECT_EQ(error->code(), 260);
    EXPECT_EQ(error->path(), "/nowhere/at all.log");
    EXPECT_EQ(error->description(),
              "The file \"at all.log\" could not be opened because there is no such file.");
    ASSERT_NE(error->userInfo().findString(kErrorReasonKey), nullptr);
    EXPECT_EQ(*error->userInfo().findString(kErrorReasonKey), "No such file or directory");
    EXPECT_EQ(text, "");
}

TEST(FileManager, AFileWithoutPermissionIsCode257)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "text");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const support::AsNobody nobody;
    std::string text;
    EXPECT_EQ(codeOf(FileManager{}.readAsciiFile(path, text)), 257);
}

TEST(FileManager, AFolderIsCode256)
{
    const TemporaryFolder folder;
    std::string text;
    EXPECT_EQ(codeOf(FileManager{}.readAsciiFile(folder.path(), text)), 256);
}

TEST(FileManager, AFifoIsCode256AtOnce)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    std::string text;
    EXPECT_EQ(codeOf(FileManager{}.readAsciiFile(folder.path("fifo"), text)), 256);
}

TEST(FileManager, ADeviceIsCode256)
{
    std::string text;
    EXPECT_EQ(codeOf(FileManager{}.readAsciiFile("/dev/zero", text)), 256);
}

TEST(FileManager, ALinkIsReadThrough)
{
    const TemporaryFolder folder;
    folder.put("a", "text");
    ASSERT_EQ(::symlink("a", folder.path("link").c_str()), 0);
    std::string text;
    EXPECT_EQ(FileManager{}.readAsciiFile(folder.path("link"), text), std::nullopt);
    EXPECT_EQ(text, "text");
}

TEST(FileManager, ALoopOfLinksIsCode256)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::symlink("b", folder.path("a").c_str()), 0);
    ASSERT_EQ(::symlink("a", folder.path("b").c_str()), 0);
    std::string text;
    EXPECT_EQ(codeOf(FileManager{}.readAsciiFile(folder.path("a"), text)), 256);
}

TEST(FileManager, AFileAsLargeAsTheLimitIsReadAndALargerOneIsNot)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "12345678");
    std::string bytes;
    EXPECT_EQ(FileManager{}.readFile(path, bytes, 8), std::nullopt);
    EXPECT_EQ(bytes, "12345678");
    EXPECT_EQ(codeOf(FileManager{}.readFile(path, bytes, 7)), 256);
    EXPECT_EQ(bytes, "");
}

TEST(FileManager, ATooLargeFileIsRejectedBeforeMemoryIsAllocated)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "");
    ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(kLargestFile) + 1), 0);
    std::string text;
    const auto error = FileManager{}.readAsciiFile(path, text);
    EXPECT_EQ(codeOf(error), 256);
    EXPECT_LT(text.capacity(), 1U << 20);
}

TEST(FileManager, AFileThatReportsNoSizeIsReadToItsEndWithinTheLimit)
{
    std::string bytes;
    EXPECT_EQ(FileManager{}.readFile("/proc/self/status", bytes), std::nullopt);
    EXPECT_THAT(bytes, testing::StartsWith("Name:"));
    EXPECT_EQ(codeOf(FileManager{}.readFile("/proc/self/status", bytes, 10)), 256);
}

TEST(FileManager, ReadsTheFrontUpToTheEndOfTheFile)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "12345678");
    std::string bytes;
    EXPECT_EQ(FileManager{}.readFront(path, bytes, 3), std::nullopt);
    EXPECT_EQ(bytes, "123");
    EXPECT_EQ(FileManager{}.readFront(path, bytes, 8), std::nullopt);
    EXPECT_EQ(bytes, "12345678");
    EXPECT_EQ(FileManager{}.readFront(path, bytes, 9), std::nullopt);
    EXPECT_EQ(bytes, "12345678");
    EXPECT_EQ(FileManager{}.readFront(path, bytes, 0), std::nullopt);
    EXPECT_EQ(bytes, "");
}

TEST(FileManager, AFrontThatCannotBeReadIsEmptyAndOneThatCannotBeOpenedIsAnError)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "text");
    std::string bytes = "old";
    OneFault broken{"read", EIO};
    EXPECT_EQ(FileManager{&broken}.readFront(path, bytes, 8), std::nullopt);
    EXPECT_EQ(bytes, "");
    OneFault closed{"open", EIO};
    EXPECT_EQ(codeOf(FileManager{&closed}.readFront(path, bytes, 8)), 256);
    EXPECT_EQ(codeOf(FileManager{}.readFront(folder.path(), bytes, 8)), 256);
}

TEST(FileManager, ShortAndInterruptedReadsGiveTheWholeFile)
{
    const TemporaryFolder folder;
    SlowFiles files;
    std::string text;
    EXPECT_EQ(FileManager{&files}.readAsciiFile(folder.put("a", "a text of some length"), text),
              std::nullopt);
    EXPECT_EQ(text, "a text of some length");
}

TEST(FileManager, AReadThatFailsMidwayLeavesNoText)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "text");
    for (const char* call : {"open", "fstat", "read"}) {
        OneFault files{call, EIO};
        std::string text = "old";
        EXPECT_EQ(codeOf(FileManager{&files}.readAsciiFile(path, text)), 256) << call;
        EXPECT_TRUE(files.happened());
        EXPECT_EQ(text, "");
    }
}

TEST(FileManager, SystemErrorsOfAReadMapToTheirCodes)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "text");
    const std::pair<int, std::int32_t> rows[] = {{EACCES, 257}, {EPERM, 257},   {ENOENT, 260},
                                                 {EIO, 256},    {ENOTDIR, 256}, {EMFILE, 256}};
    for (const auto& [systemError, code] : rows) {
        OneFault files{"open", systemError};
        std::string text;
        EXPECT_EQ(codeOf(FileManager{&files}.readAsciiFile(path, text)), code)
            << std::strerror(systemError);
    }
}

TEST(FileManager, DistinguishesFilesFromFoldersAndFollowsLinks)
{
    const TemporaryFolder folder;
    folder.put("file", "");
    folder.makeFolder("folder");
    ASSERT_EQ(::symlink("folder", folder.path("link").c_str()), 0);
    ASSERT_EQ(::symlink("nothing", folder.path("dangling").c_str()), 0);
    bool isFolder = true;
    EXPECT_TRUE(FileManager{}.fileExists(folder.path("file"), &isFolder));
    EXPECT_FALSE(isFolder);
    EXPECT_TRUE(FileManager{}.fileExists(folder.path("folder"), &isFolder));
    EXPECT_TRUE(isFolder);
    EXPECT_TRUE(FileManager{}.fileExists(folder.path("link"), &isFolder));
    EXPECT_TRUE(isFolder);
    EXPECT_FALSE(FileManager{}.fileExists(folder.path("dangling"), &isFolder));
    EXPECT_FALSE(isFolder);
    EXPECT_FALSE(FileManager{}.fileExists(""));
}

TEST(FileManager, RemovesAFileAndAFolderWithItsContents)
{
    const TemporaryFolder folder;
    folder.put("folder/a/b", "text");
    folder.put("outside", "text");
    ASSERT_EQ(::symlink("../outside", folder.path("folder/link").c_str()), 0);
    EXPECT_EQ(FileManager{}.removeItem(folder.path("folder")), std::nullopt);
    EXPECT_FALSE(FileManager{}.fileExists(folder.path("folder")));
    EXPECT_EQ(folder.read("outside"), "text");
    EXPECT_EQ(FileManager{}.removeItem(folder.path("outside")), std::nullopt);
    EXPECT_FALSE(FileManager{}.fileExists(folder.path("outside")));
}

TEST(FileManager, RemovingAMissingFileIsCode4)
{
    const TemporaryFolder folder;
    EXPECT_EQ(codeOf(FileManager{}.removeItem(folder.path("a"))), 4);
}

TEST(FileManager, ARemovalWithoutPermissionIsCode513)
{
    const TemporaryFolder folder;
    const auto path = folder.put("a", "text");
    const support::AsNobody nobody;
    if (::access(folder.path().c_str(), W_OK) == 0 && ::geteuid() != 65534)
        GTEST_SKIP() << "only root can have a folder refused";
    EXPECT_EQ(codeOf(FileManager{}.removeItem(path)), 513);
    EXPECT_EQ(folder.read("a"), "text");
}

TEST(WriteObstacle, IsNulloptForANewAndForAnExistingFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(FileManager{}.writeObstacle(folder.path("new")), std::nullopt);
    EXPECT_EQ(FileManager{}.writeObstacle(folder.put("present", "x")), std::nullopt);
}

TEST(WriteObstacle, IsTheErrorThatAWriteWouldReport)
{
    const TemporaryFolder folder;
    folder.put("file", "x");
    folder.makeFolder("folder");
    for (const auto* name : {"none/file", "file/file", "folder"}) {
        const auto path = folder.path(name);
        const auto seen = FileManager{}.writeObstacle(path);
        EXPECT_NE(codeOf(seen), 0) << name;
        EXPECT_EQ(codeOf(seen), codeOf(FileManager{}.writeAsciiFileAtomically(path, "x"))) << name;
    }
}

TEST(WriteObstacle, IsAFolderWithoutPermission)
{
    const TemporaryFolder folder;
    const auto path = folder.put("refused/file", "x");
    std::filesystem::permissions(folder.path("refused"), std::filesystem::perms{0555});
    const support::AsNobody nobody;
    EXPECT_EQ(codeOf(FileManager{}.writeObstacle(path)), 513);
}

TEST(WriteObstacle, IsAReadOnlyVolume)
{
    const TemporaryFolder folder;
    const support::PrivateMount volume{folder.makeFolder("volume"), "size=64k", MS_RDONLY};
    if (!volume.isMounted())
        GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(codeOf(FileManager{}.writeObstacle(folder.path("volume/file"))), 642);
}

TEST(FileManager, OnlyANameThatDoesNotExistIsFree)
{
    const TemporaryFolder folder;
    std::filesystem::create_symlink("nowhere", folder.path("link"));
    EXPECT_TRUE(FileManager{}.isFree(folder.path("a")));
    EXPECT_FALSE(FileManager{}.isFree(folder.put("b", "")));
    EXPECT_FALSE(FileManager{}.isFree(folder.path("link")));
    EXPECT_FALSE(FileManager{}.isFree(folder.path("b/c"))) << "not known";
    OneFault files{"lstat", EIO};
    EXPECT_FALSE(FileManager{&files}.isFree(folder.path("a")));
}

TEST(FileManager, LookUpThatFailsIsNotAMissingFolder)
{
    const TemporaryFolder folder;
    bool isFolder = false;
    EXPECT_EQ(FileManager{}.lookUpFolder(folder.path(), isFolder), std::nullopt);
    EXPECT_TRUE(isFolder);
    EXPECT_EQ(FileManager{}.lookUpFolder(folder.put("a", ""), isFolder), std::nullopt);
    EXPECT_FALSE(isFolder);
    EXPECT_EQ(FileManager{}.lookUpFolder(folder.path("a/b"), isFolder), std::nullopt);
    EXPECT_EQ(FileManager{}.lookUpFolder(folder.path("c"), isFolder), std::nullopt);
    EXPECT_FALSE(isFolder);
    OneFault files{"stat", EIO};
    isFolder = true;
    EXPECT_EQ(codeOf(FileManager{&files}.lookUpFolder(folder.path(), isFolder)), 256);
    EXPECT_FALSE(isFolder);
}

TEST(FileManager, LinksThatLeadOutOfAFolderAreFound)
{
    const TemporaryFolder folder;
    const auto volume = folder.makeFolder("volume");
    folder.makeFolder("volume/a/b");
    folder.makeFolder("volume2");
    const auto link = [&](const char* target, const char* name) {
        std::filesystem::create_symlink(target, folder.path(name));
        return folder.path(name);
    };
    const auto leadsOut = [&](const std::string& path) {
        return FileManager{}.leadsOutOf(volume, path);
    };
    EXPECT_FALSE(leadsOut(volume));
    EXPECT_FALSE(leadsOut(volume + "/a"));
    EXPECT_FALSE(leadsOut(volume + "/missing/too"));
    EXPECT_FALSE(leadsOut(link("a/b", "volume/inside")));
    EXPECT_FALSE(leadsOut(link(volume.c_str(), "volume/absolute")));
    EXPECT_FALSE(leadsOut(link("missing", "volume/dangling")));
    EXPECT_TRUE(leadsOut(link("..", "volume/out")));
    EXPECT_TRUE(leadsOut(volume + "/out/volume2"));
    EXPECT_TRUE(leadsOut(volume + "/out/missing"));
    EXPECT_FALSE(leadsOut(volume + "/out/volume/a")) << "leads back";
    EXPECT_TRUE(leadsOut(link("../volume2", "volume/sibling"))) << "a longer name";
    EXPECT_TRUE(leadsOut(link("/", "volume/root")));
    OneFault files{"realpath", EIO};
    EXPECT_FALSE(FileManager{&files}.leadsOutOf(volume, volume + "/out"));
}

TEST(FileManager, LinksInTheWayToTheFolderItselfDoNotLeadOut)
{
    const TemporaryFolder folder;
    folder.makeFolder("volume/a");
    std::filesystem::create_symlink("volume", folder.path("link"));
    EXPECT_FALSE(FileManager{}.leadsOutOf(folder.path("link"), folder.path("link/a")));
    EXPECT_FALSE(FileManager{}.leadsOutOf("/", "/tmp"));
}

TEST(FileManager, ADeviceIsNotEvenOpened)
{
    const TemporaryFolder folder;
    std::filesystem::create_symlink("/dev/null", folder.path("link"));
    OneFault files;
    std::string bytes;
    EXPECT_EQ(codeOf(FileManager{&files}.readFile(folder.path("link"), bytes)), 256);
    EXPECT_THAT(files.calls(), testing::Not(testing::Contains("open")));
}

TEST(FileManager, AsciiFileUpToTheLimitIsRead)
{
    const TemporaryFolder folder;
    std::string text;
    const auto path = folder.put("a", "1234");
    EXPECT_EQ(FileManager{}.readAsciiFile(path, text, 4), std::nullopt);
    EXPECT_EQ(codeOf(FileManager{}.readAsciiFile(path, text, 3)), 256);
}

TEST(FileManager, NewFileIsWrittenUnlessSomethingExists)
{
    const TemporaryFolder folder;
    EXPECT_EQ(FileManager{}.writeNewAsciiFile(folder.path("a"), "text"), std::nullopt);
    EXPECT_EQ(folder.read("a"), "text");
    EXPECT_EQ(codeOf(FileManager{}.writeNewAsciiFile(folder.path("a"), "other")), 516);
    EXPECT_EQ(codeOf(FileManager{}.writeNewAsciiFile(folder.path("b"), "\xFC")), 517);
    EXPECT_EQ(codeOf(FileManager{}.writeNewAsciiFile(folder.path("c/d"), "text")), 4);
    EXPECT_EQ(folder.read("a"), "text");
}

} // namespace
} // namespace gps
