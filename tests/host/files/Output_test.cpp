// SPDX-License-Identifier: MIT

#include "host/files/Output.h"

#include "host/base/HostError.h"
#include "host/formats/Written.h"
#include "platform/System/OneFault.h"
#include "support/Variable.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace {

TEST(Output, TextsOfAnySizeArriveInOrder)
{
    support::Written written;
    std::string expected;
    for (const std::size_t size : {1U, 65535U, 1U, 65536U, 65537U, 200000U, 3U}) {
        const std::string text(size, static_cast<char>('a' + expected.size() % 26));
        written.output().write(text);
        expected += text;
    }
    EXPECT_EQ(written.text(), expected);
}

TEST(Output, FirstFailureIsKept)
{
    const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    host::Output output{full, "a name"};
    EXPECT_FALSE(output.flush());
    output.write("text");
    const auto failure = output.flush();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->domain(), host::kSystemErrorDomain);
    EXPECT_EQ(failure->code(), ENOSPC);
    EXPECT_EQ(failure->path(), "a name");
    EXPECT_EQ(output.flush(), failure);
    ::close(full);
}

TEST(Output, ClosedFileIsAnError)
{
    host::Output output{-1, "nothing"};
    output.write("text");
    EXPECT_TRUE(output.flush());
}

TEST(Output, InterruptedWriteIsContinued)
{
    support::OneFault files{"write", EINTR};
    const support::TemporaryFolder folder;
    const int file = ::open(folder.path("a").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    host::Output output{file, "a", files};
    output.write("text");
    EXPECT_FALSE(output.flush());
    EXPECT_TRUE(files.happened());
    EXPECT_EQ(folder.read("a"), "text");
    ::close(file);
}

TEST(Spool, TextIsMovedToTheOutput)
{
    support::Written written;
    host::Spool spool{written.folder()};
    const std::string large(100000, 'x');
    spool.write(large);
    written.output().write("before,");
    spool.moveTo(written.output());
    written.output().write(",after");
    EXPECT_EQ(written.text(), "before," + large + ",after");
}

TEST(Spool, SystemsFolderIsUsedIfItsOwnIsMissing)
{
    support::Written written;
    host::Spool spool{"/nowhere"};
    spool.write("text");
    spool.moveTo(written.output());
    EXPECT_EQ(written.text(), "text");
}

TEST(Spool, ThatCannotBeCreatedSaysWhy)
{
    support::Written written; // in the folder for temporary files
    const support::Variable none{"TMPDIR", "/nowhere else"};
    host::Spool spool{"/nowhere"};
    spool.write("text");
    spool.moveTo(written.output());
    const auto failure = written.output().flush();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), "Temporary data cannot be stored: No such file or directory");
    EXPECT_EQ(failure->path(), "/nowhere");
}

TEST(Spool, FileHasNoName)
{
    const support::TemporaryFolder folder;
    host::Spool spool{folder.path()};
    spool.write("text");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Spool, CanBeUsedAgainAfterItWasMoved)
{
    support::Written written;
    host::Spool spool{written.folder()};
    spool.write("first,");
    spool.moveTo(written.output());
    spool.write("second");
    spool.moveTo(written.output());
    spool.moveTo(written.output());
    EXPECT_EQ(written.text(), "first,second");
}

TEST(Spool, FileSystemWithoutUnnamedFilesIsUsedNevertheless)
{
    const support::TemporaryFolder folder;
    support::Written written;
    support::OneFault files{"open", EOPNOTSUPP};
    host::Spool spool{folder.path(), files};
    spool.write("text");
    EXPECT_TRUE(files.happened());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "its name is removed at once";
    spool.moveTo(written.output());
    EXPECT_EQ(written.text(), "text");
}

TEST(Spool, FailedCallIsAFailureOfTheOutput)
{
    for (const char* call : {"write", "pread", "ftruncate", "lseek"}) {
        const support::TemporaryFolder folder;
        const int file = ::open(folder.path("a").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        support::OneFault files{call, EIO};
        host::Output output{file, "output", files};
        host::Spool spool{folder.path(), files};
        spool.write("text");
        spool.moveTo(output);
        EXPECT_TRUE(files.happened()) << call;
        const auto failure = output.flush();
        ::close(file);
        ASSERT_TRUE(failure) << call;
        EXPECT_EQ(failure->code(), EIO) << call;
    }
}

} // namespace
