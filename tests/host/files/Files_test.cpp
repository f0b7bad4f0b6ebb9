// SPDX-License-Identifier: MIT

#include "host/files/Files.h"

#include "host/base/HostError.h"
#include "platform/System/OneFault.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>

namespace {

namespace fs = std::filesystem;

TEST(Files, FoldersAreCreatedWithThoseAboveThem)
{
    const support::TemporaryFolder folder;
    EXPECT_FALSE(host::makeFolders(folder.path("a/b/c")));
    EXPECT_TRUE(fs::is_directory(folder.path("a/b/c")));
    EXPECT_FALSE(host::makeFolders(folder.path("a/b/c"))) << "it exists now";
    EXPECT_FALSE(host::makeFolders(folder.path("a/d/"))) << "with a slash at its end";
    EXPECT_TRUE(fs::is_directory(folder.path("a/d")));
    EXPECT_FALSE(host::makeFolders("")) << "the current folder";
}

TEST(Files, FileWhereAFolderIsNeededIsAnError)
{
    const support::TemporaryFolder folder;
    folder.put("a", "file");
    for (const char* path : {"a", "a/b"}) {
        const auto failure = host::makeFolders(folder.path(path));
        ASSERT_TRUE(failure) << path;
        EXPECT_EQ(failure->domain(), host::kSystemErrorDomain);
        EXPECT_EQ(failure->path(), folder.path(path));
        EXPECT_EQ(failure->suggestion(),
                  "There is a file where a folder is needed. Choose another one");
    }
}

TEST(Files, FolderCreatedByAnotherProcessInTheMeantimeIsNotAnError)
{
    const support::TemporaryFolder folder;
    folder.makeFolder("a");
    support::OneFault files{"stat", ENOENT}; // as if the folder did not exist yet
    EXPECT_FALSE(host::makeFolders(folder.path("a"), files));
    EXPECT_TRUE(files.happened());
}

TEST(Files, FileIsWrittenIntoAFolderThatIsMissing)
{
    const support::TemporaryFolder folder;
    EXPECT_FALSE(host::writeFile(folder.path("a/b/file"), "text"));
    EXPECT_EQ(folder.read("a/b/file"), "text");
}

TEST(Files, OneFailedCallLeavesTheOldOrTheNewFileAndIsReported)
{
    const support::TemporaryFolder folder;
    support::OneFault recorder;
    ASSERT_FALSE(host::writeFile(folder.path("file"), "new", recorder));
    std::map<std::string, int> counts;
    for (const auto& call : recorder.calls()) {
        folder.put("file", "old");
        support::OneFault files{call, EIO, ++counts[call]};
        const auto failure = host::writeFile(folder.path("file"), "new", files);
        const auto content = folder.read("file");
        EXPECT_TRUE(failure ? content == "old" || content == "new" : content == "new") << call;
        if (failure) {
            EXPECT_EQ(failure->code(), EIO) << call;
            EXPECT_EQ(failure->path(), folder.path("file")) << call;
        }
    }
    EXPECT_TRUE(counts.contains("write") && counts.contains("fsync"));
}

TEST(Files, RenameReportsEachFailedStep)
{
    const support::TemporaryFolder folder;
    folder.put("a", "text");
    EXPECT_EQ(host::renameInFolder(gps::FileSystem::system(), folder.path(), "a", "b"), 0);
    EXPECT_EQ(folder.read("b"), "text");
    EXPECT_EQ(host::renameInFolder(gps::FileSystem::system(), folder.path(), "a", "c"), ENOENT);
    for (const char* call : {"open", "renameat", "fsync"}) {
        support::OneFault files{call, EIO};
        EXPECT_EQ(host::renameInFolder(files, folder.path(), "b", "b"), EIO) << call;
    }
    support::OneFault files{"fsync", EINVAL};
    EXPECT_EQ(host::renameInFolder(files, folder.path(), "b", "b"), 0)
        << "a volume whose folders cannot be flushed";
}

TEST(Files, PathIsOneOfFilesUnderAnotherNameToo)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put("a", "x");
    const auto other = folder.put("b", "x");
    std::filesystem::create_symlink(file, folder.path("link"));
    EXPECT_TRUE(host::isOneOfFiles(file, {other, file}));
    EXPECT_TRUE(host::isOneOfFiles(folder.path("link"), {file}));
    EXPECT_TRUE(host::isOneOfFiles(folder.path("./a"), {file}));
    EXPECT_FALSE(host::isOneOfFiles(other, {file}));
    EXPECT_FALSE(host::isOneOfFiles(folder.path("missing"), {file, folder.path("missing")}));
    EXPECT_FALSE(host::isOneOfFiles(file, {}));
}

} // namespace
