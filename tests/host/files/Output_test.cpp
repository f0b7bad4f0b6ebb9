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

TEST(Output, TextIsWrittenDirectlyWhereThereIsRoom)
{
    support::Written written;
    std::string expected;
    for (const std::size_t size : {1U, 65535U, 16384U, 65520U, 16384U, 65521U, 16384U, 16U}) {
        const std::string text(size, static_cast<char>('a' + expected.size() % 26));
        if (size > host::Output::kMostRoom) {
            written.output().write(text);
        } else {
            char* const at = written.output().room(size);
            written.output().setEnd(at + text.copy(at, size));
        }
        expected += text;
    }
    EXPECT_EQ(written.text(), expected);
}

TEST(Output, RoomNeedNotBeUsed)
{
    support::Written written;
    written.output().write("a");
    written.output().setEnd(written.output().room(100));
    written.output().write("b");
    EXPECT_EQ(written.text(), "ab");
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

TEST(Output, SizeCountsWhatIsBufferedAndWhatIsWritten)
{
    support::Written written;
    EXPECT_EQ(written.output().size(), 0);
    written.output().write("text");
    EXPECT_EQ(written.output().size(), 4);
    written.output().flush();
    written.output().write(std::string(100000, 'x'));
    EXPECT_EQ(written.output().size(), 100004);
}

TEST(Output, OnlyAFileTakesInsertions)
{
    EXPECT_FALSE(support::Written{host::Output::Kind::kStream}.output().canInsert());
    EXPECT_TRUE(support::Written{host::Output::Kind::kFile}.output().canInsert());
    EXPECT_TRUE(host::Spool{"/tmp"}.canInsert());
}

TEST(Output, TextIsReplacedInTheFileAndInTheBuffer)
{
    support::Written written{host::Output::Kind::kFile};
    auto& output = written.output();
    const std::string large(100000, 'x');
    output.write("head" + large);
    output.write("tail");
    output.overwrite(1, "EA");
    output.overwrite(output.size() - 1, "L");
    output.write(",after");
    EXPECT_EQ(written.text(), "hEAd" + large + "taiL,after");
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

TEST(Spool, TextIsInsertedIntoTheOutput)
{
    // As long as the buffer, one byte less and one more.
    for (const std::size_t tail : {0U, 1U, 65535U, 65536U, 65537U, 200000U}) {
        for (const std::size_t size : {1U, 65535U, 65536U, 65537U, 200000U}) {
            support::Written written{host::Output::Kind::kFile};
            host::Spool spool{written.folder()};
            const std::string inserted(size, 'x');
            const std::string moved =
                std::string(tail / 2, 'a') + std::string(tail - tail / 2, 'b');
            written.output().write("before," + moved);
            spool.write(inserted);
            spool.insertInto(written.output(), 7);
            written.output().write(",after");
            EXPECT_EQ(written.text(), "before," + inserted + moved + ",after");
            EXPECT_EQ(written.output().size(), static_cast<off_t>(written.text().size()));
        }
    }
}

TEST(Spool, CanBeUsedAgainAfterItWasInserted)
{
    support::Written written{host::Output::Kind::kFile};
    host::Spool spool{written.folder()};
    written.output().write("end");
    for (const char* const text : {"second,", "first,"}) {
        spool.write(text);
        spool.insertInto(written.output(), 0);
    }
    EXPECT_EQ(written.text(), "first,second,end");
}

TEST(Spool, FailedInsertionIsAFailureOfTheOutput)
{
    struct Fault {
        const char* call;
        int which;
    };
    // Two pieces are moved, and one is inserted.
    for (const auto [call, which] : {Fault{"pread", 1},
                                     {"pread", 2},
                                     {"pread", 3},
                                     {"pwrite", 1},
                                     {"pwrite", 2},
                                     {"pwrite", 3},
                                     {"lseek", 1}}) {
        support::OneFault files{call, EIO, which};
        support::Written written{host::Output::Kind::kFile, files};
        host::Spool spool{written.folder()};
        written.output().write(std::string(100000, 'x'));
        spool.write("text");
        spool.insertInto(written.output(), 0);
        EXPECT_TRUE(files.happened()) << call << which;
        const auto failure = written.output().flush();
        ASSERT_TRUE(failure) << call << which;
        EXPECT_EQ(failure->code(), EIO) << call << which;
    }
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
