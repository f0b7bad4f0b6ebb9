// SPDX-License-Identifier: MIT

#include "host/files/OutputFile.h"

#include "platform/System/OneFault.h"
#include "support/AsNobody.h"
#include "support/Signals.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <map>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using host::OutputFile;

std::size_t entries(const support::TemporaryFolder& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator{folder.path()}, {}));
}

TEST(OutputFile, HasItsNameOnlyAfterTheCommit)
{
    const support::TemporaryFolder folder;
    OutputFile file{folder.path("a.gpx")};
    ASSERT_FALSE(file.open());
    file.output().write("new");
    EXPECT_FALSE(fs::exists(folder.path("a.gpx")));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(folder.read("a.gpx"), "new");
    EXPECT_EQ(entries(folder), 1U);
}

TEST(OutputFile, OlderFileIsUnchangedWithoutACommit)
{
    const support::TemporaryFolder folder;
    folder.put("a.gpx", "old");
    {
        OutputFile file{folder.path("a.gpx")};
        ASSERT_FALSE(file.open());
        file.output().write("new");
        EXPECT_EQ(entries(folder), 2U);
    }
    EXPECT_EQ(folder.read("a.gpx"), "old");
    EXPECT_EQ(entries(folder), 1U);
}

TEST(OutputFile, ReplacesMoreThanItHoldsOnlyIfThePresentFileIsLarger)
{
    const support::TemporaryFolder folder;
    folder.put("a.gpx", "four");
    const auto replacesMore = [&](const std::string& path, std::string_view text) {
        OutputFile file{path};
        EXPECT_FALSE(file.open());
        file.output().write(text);
        return file.replacesMore();
    };
    EXPECT_TRUE(replacesMore(folder.path("a.gpx"), "new"));
    EXPECT_FALSE(replacesMore(folder.path("a.gpx"), "new!"));
    EXPECT_FALSE(replacesMore(folder.path("b.gpx"), ""));
    EXPECT_FALSE(replacesMore("/dev/null", ""));
}

// The number of a process that has ended.
pid_t endedProcess()
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return child;
}

TEST(OutputFile, FilesOfKilledProcessesAreRemoved)
{
    const support::TemporaryFolder folder;
    const auto ended = std::to_string(endedProcess());
    const auto stray = folder.put(".magellangps-" + ended + "-0", "half");
    const auto locked = folder.put(".magellangps-" + ended + "-1", "half");
    const auto own = folder.put(".magellangps-" + std::to_string(::getpid()) + "-7", "half");
    const auto data = folder.put(".magellangps-" + ended + "-notes", "text");
    const int file = ::open(locked.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    OutputFile output{folder.path("a.gpx")};
    EXPECT_FALSE(output.open());
    ::close(file);
    EXPECT_FALSE(fs::exists(stray));
    EXPECT_TRUE(fs::exists(locked)) << "a process of another machine writes it";
    EXPECT_TRUE(fs::exists(own));
    EXPECT_TRUE(fs::exists(data));
}

TEST(OutputFile, UnfinishedFileIsLocked)
{
    const support::TemporaryFolder folder;
    OutputFile output{folder.path("a.gpx")};
    ASSERT_FALSE(output.open());
    const auto hidden = fs::directory_iterator
    {
        folder.path()
        } -> path();
    const int file = ::open(hidden.c_str(), O_RDONLY);
    EXPECT_EQ(::flock(file, LOCK_EX | LOCK_NB), -1);
    ::close(file);
}

TEST(OutputFile, PartialFileIsBesideTheOlderOne)
{
    const support::TemporaryFolder folder;
    folder.put("a.gpx", "old");
    OutputFile file{folder.path("a.gpx")};
    ASSERT_FALSE(file.open());
    file.output().write("half");
    EXPECT_EQ(file.partialPath(), fs::canonical(folder.path()) / "a.partial.gpx");
    EXPECT_FALSE(file.keepPartial());
    EXPECT_EQ(folder.read("a.gpx"), "old");
    EXPECT_EQ(folder.read("a.partial.gpx"), "half");
    EXPECT_EQ(entries(folder), 2U);
}

TEST(OutputFile, PartialNameOfANameWithoutExtensionEndsInPartial)
{
    const support::TemporaryFolder folder;
    for (const auto& [name, partial] :
         {std::pair{"trip", "trip.partial"}, std::pair{"a.b.gpx", "a.b.partial.gpx"}}) {
        OutputFile file{folder.path(name)};
        ASSERT_FALSE(file.open());
        EXPECT_EQ(fs::path{file.partialPath()}.filename(), partial);
    }
}

TEST(OutputFile, ReplacedFileKeepsItsMode)
{
    const support::TemporaryFolder folder;
    fs::permissions(folder.put("a.gpx", "old"), fs::perms{0640});
    OutputFile file{folder.path("a.gpx")};
    ASSERT_FALSE(file.open());
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(fs::status(folder.path("a.gpx")).permissions(), fs::perms{0640});
}

TEST(OutputFile, FileThatALinkLeadsToIsReplaced)
{
    const support::TemporaryFolder folder;
    folder.put("there/a.gpx", "old");
    fs::create_symlink("there/a.gpx", folder.path("link.gpx"));
    OutputFile file{folder.path("link.gpx")};
    ASSERT_FALSE(file.open());
    file.output().write("new");
    EXPECT_FALSE(file.commit());
    EXPECT_TRUE(fs::is_symlink(folder.path("link.gpx")));
    EXPECT_EQ(folder.read("there/a.gpx"), "new");
}

TEST(OutputFile, MissingFolderIsAnError)
{
    const support::TemporaryFolder folder;
    const auto failure = OutputFile{folder.path("no/a.gpx")}.open();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), ENOENT);
}

TEST(OutputFile, FolderIsAnError)
{
    const support::TemporaryFolder folder;
    const auto failure = OutputFile{folder.path()}.open();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), EISDIR);
}

TEST(OutputFile, FolderWithoutWritePermissionIsAnError)
{
    const support::TemporaryFolder folder;
    const support::AsNobody nobody;
    if (::access(folder.path().c_str(), W_OK) == 0 && ::geteuid() != 65534)
        GTEST_SKIP() << "cannot give up rights";
    const auto failure = OutputFile{folder.path("a.gpx")}.open();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), EACCES);
}

TEST(OutputFile, DeviceIsWrittenDirectly)
{
    OutputFile file{"/dev/null"};
    ASSERT_FALSE(file.open());
    file.output().write("text");
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(file.partialPath(), "");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(OutputFile, FullDeviceIsAnError)
{
    OutputFile file{"/dev/full"};
    ASSERT_FALSE(file.open());
    file.output().write("text");
    EXPECT_TRUE(file.commit());
}

// Writes a new file over an old one with one failing call.
std::optional<gps::Error> writeWithFault(const support::TemporaryFolder& folder,
                                         support::OneFault& files)
{
    folder.put("a.gpx", "old");
    OutputFile file{folder.path("a.gpx"), files};
    if (auto failure = file.open())
        return failure;
    file.output().write("new");
    return file.commit();
}

TEST(OutputFile, OneFailedCallLeavesTheOldOrTheNewFileAndIsReported)
{
    const support::TemporaryFolder folder;
    support::OneFault recorder;
    ASSERT_FALSE(writeWithFault(folder, recorder));
    std::map<std::string, int> counts;
    int reported = 0;
    for (const auto& call : recorder.calls()) {
        support::OneFault files{call, EIO, ++counts[call]};
        const auto failure = writeWithFault(folder, files);
        const auto which = call + ' ' + std::to_string(counts[call]);
        EXPECT_TRUE(files.happened()) << which;
        const auto content = folder.read("a.gpx");
        if (failure) {
            ++reported;
            EXPECT_TRUE(content == "old" || content == "new") << which;
            EXPECT_EQ(failure->code(), EIO) << which;
            EXPECT_TRUE(failure->path() && failure->suggestion()) << which;
        } else {
            EXPECT_EQ(content, "new") << which;
        }
        EXPECT_EQ(entries(folder), 1U) << "no hidden file is left: " << which;
    }
    EXPECT_GE(reported, 7) << "both opens, the write, the three flushes and the rename";
}

TEST(OutputFile, FailedFlushAfterTheRenameSaysThatTheFileIsThere)
{
    const support::TemporaryFolder folder;
    support::OneFault files{"fsync", EIO, 2};
    const auto failure = writeWithFault(folder, files);
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->description()->starts_with("The output file may be lost"))
        << *failure->description();
    EXPECT_EQ(folder.read("a.gpx"), "new");
}

TEST(OutputFile, InterruptedWriteIsContinued)
{
    const support::TemporaryFolder folder;
    support::OneFault files{"write", EINTR};
    EXPECT_FALSE(writeWithFault(folder, files));
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(folder.read("a.gpx"), "new");
}

TEST(OutputFile, TwoInOneFolderDoNotDisturbEachOther)
{
    const support::TemporaryFolder folder;
    OutputFile first{folder.path("a.gpx")};
    ASSERT_FALSE(first.open());
    OutputFile second{folder.path("b.gpx")};
    ASSERT_FALSE(second.open());
    first.output().write("a");
    second.output().write("b");
    EXPECT_FALSE(second.commit());
    EXPECT_FALSE(first.commit());
    EXPECT_EQ(folder.read("a.gpx"), "a");
    EXPECT_EQ(folder.read("b.gpx"), "b");
}

class OutputFileSignal : public testing::TestWithParam<int> {};

TEST_P(OutputFileSignal, RemovesTheHiddenFileAndEndsTheProcess)
{
    const support::TemporaryFolder folder;
    folder.put("a.gpx", "old");
    const pid_t child = ::fork();
    if (child == 0) {
        const support::DefaultSignals defaults;
        OutputFile file{folder.path("a.gpx")};
        if (file.open() || entries(folder) != 2)
            ::_exit(1);
        ::raise(GetParam());
        ::_exit(2);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
    EXPECT_EQ(folder.read("a.gpx"), "old");
    EXPECT_EQ(entries(folder), 1U);
}

TEST_P(OutputFileSignal, RemovesTheHiddenFilesOfAllThreads)
{
    const support::TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0) {
        const support::DefaultSignals defaults;
        OutputFile first{folder.path("a.gpx")};
        OutputFile second{folder.path("b.gpx")};
        if (first.open() || second.open() || second.commit() || entries(folder) != 2)
            ::_exit(1);
        OutputFile third{folder.path("c.gpx")}; // has the place of the second one
        if (third.open() || entries(folder) != 3)
            ::_exit(1);
        ::raise(GetParam());
        ::_exit(2);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(entries(folder), 1U);
    EXPECT_TRUE(fs::exists(folder.path("b.gpx")));
}

TEST_P(OutputFileSignal, DoesNotEndTheProcessIfItIsIgnored)
{
    const support::TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0) {
        (void)std::signal(GetParam(), SIG_IGN);
        OutputFile file{folder.path("a.gpx")};
        if (file.open())
            ::_exit(1);
        ::raise(GetParam());
        ::_exit(file.commit() ? 2 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(fs::exists(folder.path("a.gpx")));
}

INSTANTIATE_TEST_SUITE_P(Each, OutputFileSignal, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGPIPE));

} // namespace
