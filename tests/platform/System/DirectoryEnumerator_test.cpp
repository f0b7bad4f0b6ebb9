// SPDX-License-Identifier: MIT

#include "OneFault.h"

#include <platform/System/FileManager.h>
#include <platform/System/Log.h>
#include <support/AsNobody.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gps {
namespace {

using support::OneFault;
using support::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// All entries, folders with a trailing "/".
std::vector<std::string> walk(DirectoryEnumerator entries)
{
    std::vector<std::string> paths;
    while (const auto entry = entries.next())
        paths.push_back(entry->relativePath + (entry->isFolder ? "/" : ""));
    return paths;
}

class LogLines {
public:
    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }

private:
    std::vector<std::string> lines_;
    LogSubscription listening_{
        [this](std::string_view line, const Error*) { lines_.emplace_back(line); }};
};

TEST(DirectoryEnumerator, WalksInByteOrderAFolderBeforeItsContents)
{
    const TemporaryFolder folder;
    for (const char* name :
         {"b.log", "a", "B.log", "a.log", "c/z", "c/y/x", "c.log", "\xC3\xA9", "Z", "10", "9"})
        folder.put(name, "");
    EXPECT_THAT(walk(FileManager{}.enumerator(folder.path())),
                ElementsAre("10", "9", "B.log", "Z", "a", "a.log", "b.log", "c/", "c/y/", "c/y/x",
                            "c/z", "c.log", "\xC3\xA9"));
}

TEST(DirectoryEnumerator, HiddenFilesAreEntriesToo)
{
    const TemporaryFolder folder;
    folder.put(".hidden", "");
    EXPECT_THAT(walk(FileManager{}.enumerator(folder.path())), ElementsAre(".hidden"));
}

TEST(DirectoryEnumerator, LinksAreEntriesThatAreNeverDescendedInto)
{
    const TemporaryFolder folder;
    folder.put("a/file", "");
    ASSERT_EQ(::symlink("..", folder.path("a/loop").c_str()), 0);
    ASSERT_EQ(::symlink("a", folder.path("link").c_str()), 0);
    ASSERT_EQ(::symlink("nothing", folder.path("dangling").c_str()), 0);
    EXPECT_THAT(walk(FileManager{}.enumerator(folder.path())),
                ElementsAre("a/", "a/file", "a/loop", "dangling", "link"));
}

TEST(DirectoryEnumerator, ALinkToTheWalkedFolderItselfIsFollowed)
{
    const TemporaryFolder folder;
    folder.put("a/file", "");
    ASSERT_EQ(::symlink("a", folder.path("link").c_str()), 0);
    EXPECT_THAT(walk(FileManager{}.enumerator(folder.path("link"))), ElementsAre("file"));
}

TEST(DirectoryEnumerator, SkipsOnlyTheDescendantsOfTheLastEntry)
{
    const TemporaryFolder folder;
    folder.put("a/x", "");
    folder.put("b/y", "");
    auto entries = FileManager{}.enumerator(folder.path());
    EXPECT_EQ(entries.next()->relativePath, "a");
    entries.skipDescendants();
    EXPECT_THAT(walk(std::move(entries)), ElementsAre("b/", "b/y"));
}

TEST(DirectoryEnumerator, SkippingAfterAFileChangesNothing)
{
    const TemporaryFolder folder;
    folder.put("a", "");
    folder.put("b/y", "");
    auto entries = FileManager{}.enumerator(folder.path());
    EXPECT_EQ(entries.next()->relativePath, "a");
    entries.skipDescendants();
    EXPECT_THAT(walk(std::move(entries)), ElementsAre("b/", "b/y"));
}

TEST(DirectoryEnumerator, AnEmptyFolderHasNoEntriesHoweverOftenItIsAsked)
{
    const TemporaryFolder folder;
    auto entries = FileManager{}.enumerator(folder.path());
    EXPECT_FALSE(entries.next());
    EXPECT_FALSE(entries.next());
}

TEST(DirectoryEnumerator, AMissingFolderIsEmptyAndNotLogged)
{
    const TemporaryFolder folder;
    const LogLines logged;
    EXPECT_THAT(walk(FileManager{}.enumerator(folder.path("none"))), IsEmpty());
    EXPECT_THAT(logged.lines(), IsEmpty());
}

TEST(DirectoryEnumerator, AFileIsEmptyAndLogged)
{
    const TemporaryFolder folder;
    folder.put("file", "");
    const LogLines logged;
    EXPECT_THAT(walk(FileManager{}.enumerator(folder.path("file"))), IsEmpty());
    EXPECT_THAT(logged.lines(), ElementsAre(HasSubstr(folder.path("file"))));
}

TEST(DirectoryEnumerator, AFolderWithoutPermissionIsSkippedAndLogged)
{
    const TemporaryFolder folder;
    folder.put("a/x", "");
    folder.put("b", "");
    ASSERT_EQ(::chmod(folder.path("a").c_str(), 0), 0);
    const LogLines logged;
    {
        const support::AsNobody nobody;
        EXPECT_THAT(walk(FileManager{}.enumerator(folder.path())), ElementsAre("a/", "b"));
    }
    EXPECT_THAT(logged.lines(), ElementsAre(HasSubstr("Permission denied")));
    ASSERT_EQ(::chmod(folder.path("a").c_str(), 0755), 0);
}

TEST(DirectoryEnumerator, AListingThatFailsPartwayYieldsTheEntriesBeforeTheFailure)
{
    const TemporaryFolder folder;
    for (const char* name : {"a", "b", "c", "d"})
        folder.put(name, "");
    OneFault files{"readdir", EIO, 4};
    const LogLines logged;
    const auto paths = walk(FileManager{&files}.enumerator(folder.path()));
    EXPECT_GE(paths.size(), 1U); // three were listed, of which up to two are "." and ".."
    EXPECT_LE(paths.size(), 3U);
    EXPECT_TRUE(files.happened());
    EXPECT_THAT(logged.lines(), ElementsAre(HasSubstr("Input/output error")));
}

TEST(DirectoryEnumerator, RemembersTheFirstFailureButNotAMissingFolder)
{
    const TemporaryFolder folder;
    folder.put("a/file", "");
    folder.put("b/file", "");
    const LogLines logged;
    const auto failureWith = [&](OneFault files) {
        auto entries = FileManager{&files}.enumerator(folder.path());
        while (entries.next()) {
        }
        return entries.failure();
    };
    EXPECT_EQ(failureWith({}), 0);
    EXPECT_EQ(failureWith({"opendir", EACCES, 1}), EACCES);
    EXPECT_EQ(failureWith({"opendir", EACCES, 2}), EACCES);
    EXPECT_EQ(failureWith({"readdir", EIO, 2}), EIO);
    EXPECT_EQ(failureWith({"opendir", ENOENT, 1}), 0);
    EXPECT_EQ(failureWith({"opendir", ENOENT, 2}), ENOENT); // a folder that was listed is gone
}

/// "path: errno" of what a walk could not see, relative to the folder.
std::vector<std::string> unseenWith(FileSystem& files, const TemporaryFolder& folder)
{
    auto entries = FileManager{&files}.enumerator(folder.path());
    while (entries.next()) {
    }
    std::vector<std::string> texts;
    for (const auto& [path, systemError] : entries.unseen())
        texts.push_back(path.substr(folder.path().size()) + ": " + std::to_string(systemError));
    return texts;
}

TEST(DirectoryEnumerator, ListsWhatItCouldNotSee)
{
    const TemporaryFolder folder;
    folder.put("a/file", "");
    folder.put("b/file", "");
    const auto unseen = [&](OneFault files) { return unseenWith(files, folder); };
    EXPECT_THAT(unseen({}), IsEmpty());
    EXPECT_THAT(unseen({"opendir", EACCES, 1}), ElementsAre(": " + std::to_string(EACCES)));
    EXPECT_THAT(unseen({"opendir", EACCES, 2}), ElementsAre("/a: " + std::to_string(EACCES)));
    EXPECT_THAT(unseen({"opendir", ENOENT, 3}), ElementsAre("/b: " + std::to_string(ENOENT)));
    EXPECT_THAT(unseen({"readdir", EIO, 2}), ElementsAre(": " + std::to_string(EIO)));
    EXPECT_THAT(unseen({"opendir", ENOENT, 1}), IsEmpty()); // no folder, no entries
}

TEST(DirectoryEnumerator, AnEntryOfUnknownTypeThatCannotBeLookedAtIsUnseenAndNoFolder)
{
    class Blind : public FileSystem {
    public:
        dirent* readdir(DIR* folder) override
        {
            dirent* const entry = FileSystem::readdir(folder);
            if (entry != nullptr)
                entry->d_type = DT_UNKNOWN;
            return entry;
        }
        int lstat(const char* /*path*/, struct stat* /*status*/) override
        {
            errno = EIO;
            return -1;
        }
    } files;
    const TemporaryFolder folder;
    folder.put("a/file", "");
    EXPECT_THAT(unseenWith(files, folder), ElementsAre("/a: " + std::to_string(EIO)));
}

TEST(DirectoryEnumerator, ListsAThousandUnseenEntriesAndNoMore)
{
    class Blind : public FileSystem {
    public:
        DIR* opendir(const char* path) override
        {
            if (std::exchange(isFirst_, false))
                return FileSystem::opendir(path);
            errno = EACCES;
            return nullptr;
        }

    private:
        bool isFirst_ = true;
    };
    const auto unseenOf = [](std::size_t folders) {
        const TemporaryFolder folder;
        for (std::size_t i = 0; i < folders; ++i)
            folder.makeFolder(std::to_string(i));
        Blind files;
        return unseenWith(files, folder).size();
    };
    EXPECT_EQ(unseenOf(DirectoryEnumerator::kMostUnseen), DirectoryEnumerator::kMostUnseen);
    EXPECT_EQ(unseenOf(DirectoryEnumerator::kMostUnseen + 1), DirectoryEnumerator::kMostUnseen);
}

TEST(DirectoryEnumerator, AnEntryOfUnknownTypeIsLookedUp)
{
    class WithoutTypes : public FileSystem {
    public:
        dirent* readdir(DIR* folder) override
        {
            dirent* const entry = FileSystem::readdir(folder);
            if (entry != nullptr)
                entry->d_type = DT_UNKNOWN;
            return entry;
        }
    } files;
    const TemporaryFolder folder;
    folder.put("a/file", "");
    ASSERT_EQ(::symlink("..", folder.path("a/loop").c_str()), 0);
    EXPECT_THAT(walk(FileManager{&files}.enumerator(folder.path())),
                ElementsAre("a/", "a/file", "a/loop"));
}

TEST(DirectoryEnumerator, AFolderThatVanishesEndsOnlyItsOwnWalk)
{
    const TemporaryFolder folder;
    folder.makeFolder("a");
    folder.put("b", "");
    auto entries = FileManager{}.enumerator(folder.path());
    EXPECT_EQ(entries.next()->relativePath, "a");
    ASSERT_EQ(::rmdir(folder.path("a").c_str()), 0);
    EXPECT_THAT(walk(std::move(entries)), ElementsAre("b"));
}

TEST(DirectoryEnumerator, WalksAHundredThousandFiles)
{
    constexpr std::size_t kCount = 100'000;
    const TemporaryFolder folder;
    const int directory = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (std::size_t i = 0; i < kCount; ++i)
        ASSERT_EQ(::mknodat(directory, std::to_string(i).c_str(), S_IFREG | 0600, 0), 0);
    ::close(directory);
    auto entries = FileManager{}.enumerator(folder.path());
    std::size_t count = 0;
    std::string last;
    while (const auto entry = entries.next()) {
        ASSERT_LT(last, entry->relativePath);
        last = entry->relativePath;
        ++count;
    }
    EXPECT_EQ(count, kCount);
}

} // namespace
} // namespace gps
