// SPDX-License-Identifier: MIT

#include <platform/System/FileSystem.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace gps {
namespace {

using support::TemporaryFolder;

FileSystem& files()
{
    return FileSystem::system();
}

TEST(FileSystem, FilesAreOpenedCloseOnExec)
{
    const TemporaryFolder folder;
    const int opened = files().open(folder.path("a").c_str(), O_WRONLY | O_CREAT, 0600);
    EXPECT_NE(::fcntl(opened, F_GETFD) & FD_CLOEXEC, 0);
    const int parent = files().open(folder.path().c_str(), O_RDONLY | O_DIRECTORY, 0);
    EXPECT_NE(::fcntl(parent, F_GETFD) & FD_CLOEXEC, 0);
    const int inside = files().openat(parent, "a", O_RDONLY, 0);
    EXPECT_NE(::fcntl(inside, F_GETFD) & FD_CLOEXEC, 0);
    for (const int file : {opened, parent, inside})
        EXPECT_EQ(files().close(file), 0);
}

TEST(FileSystem, ACreatedFileHasItsMode)
{
    const TemporaryFolder folder;
    const int file = files().open(folder.path("a").c_str(), O_WRONLY | O_CREAT, 0600);
    struct stat status;
    ASSERT_EQ(files().fstat(file, &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    EXPECT_EQ(files().close(file), 0);
}

TEST(FileSystem, AnOpenFileIsCutAndIsReadAndWrittenAtAnyOffset)
{
    const TemporaryFolder folder;
    const int file = files().open(folder.path("a").c_str(), O_RDWR | O_CREAT, 0600);
    EXPECT_EQ(files().write(file, "12345678", 8), 8);
    char buffer[3] = {};
    EXPECT_EQ(files().pread(file, buffer, 2, 3), 2);
    EXPECT_STREQ(buffer, "45");
    EXPECT_EQ(files().pwrite(file, "cd", 2, 2), 2);
    EXPECT_EQ(files().lseek(file, 1, SEEK_SET), 1);
    EXPECT_EQ(files().ftruncate(file, 4), 0);
    EXPECT_EQ(files().close(file), 0);
    EXPECT_EQ(folder.read("a"), "12cd");
}

TEST(FileSystem, NamesAreMadeMovedAndRemoved)
{
    const TemporaryFolder folder;
    EXPECT_EQ(files().mkdir(folder.path("new").c_str(), 0700), 0);
    folder.put("new/a", "text");
    EXPECT_EQ(files().rename(folder.path("new/a").c_str(), folder.path("b").c_str()), 0);
    EXPECT_EQ(folder.read("b"), "text");
    EXPECT_EQ(files().unlink(folder.path("b").c_str()), 0);
    EXPECT_EQ(files().unlink(folder.path("b").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST(FileSystem, RemovingAMissingTreeFailsWithItsErrno)
{
    const TemporaryFolder folder;
    errno = 0;
    EXPECT_EQ(files().removeTree(folder.path("a").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace gps
