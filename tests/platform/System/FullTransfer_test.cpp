// SPDX-License-Identifier: MIT

#include "OneFault.h"
#include "SlowFiles.h"

#include <platform/System/FullTransfer.h>
#include <platform/System/OpenFile.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <fcntl.h>

namespace gps {
namespace {

using support::OneFault;
using support::SlowFiles;
using support::TemporaryFolder;

constexpr std::string_view kText = "a text of some length";

/// One file, open for reading and writing.
class FullTransfer : public testing::Test {
protected:
    void write(std::string_view text) const { ASSERT_EQ(writeAll(system(), file(), text), 0); }
    [[nodiscard]] int file() const { return file_.get(); }
    static FileSystem& system() { return FileSystem::system(); }

    TemporaryFolder folder_;
    OpenFile file_{system(), system().open(folder_.path("a").c_str(), O_RDWR | O_CREAT, 0600)};
    std::string bytes_ = "old";
};

TEST_F(FullTransfer, ShortAndInterruptedWritesWriteTheWholeText)
{
    SlowFiles files;
    EXPECT_EQ(writeAll(files, file(), kText), 0);
    EXPECT_EQ(folder_.read("a"), kText);
}

TEST_F(FullTransfer, AFailedWriteIsReportedWithItsErrno)
{
    OneFault files{"write", ENOSPC};
    EXPECT_EQ(writeAll(files, file(), kText), ENOSPC);
}

TEST_F(FullTransfer, AWriteThatWritesNothingIsAFailure)
{
    struct StuckFiles : FileSystem {
        ssize_t write(int, const void*, std::size_t) override { return 0; }
    };
    StuckFiles files;
    EXPECT_EQ(writeAll(files, file(), kText), EIO);
}

TEST_F(FullTransfer, AnEmptyTextNeedsNoCall)
{
    OneFault files;
    EXPECT_EQ(writeAll(files, file(), ""), 0);
    EXPECT_TRUE(files.calls().empty());
}

TEST_F(FullTransfer, ShortAndInterruptedWritesAtAnOffsetWriteTheWholeText)
{
    write("12345678");
    SlowFiles files;
    EXPECT_EQ(writeAt(files, file(), 3, kText), 0);
    EXPECT_EQ(folder_.read("a"), "123" + std::string{kText});
}

TEST_F(FullTransfer, AFailedWriteAtAnOffsetIsReportedWithItsErrno)
{
    OneFault files{"pwrite", ENOSPC};
    EXPECT_EQ(writeAt(files, file(), 3, kText), ENOSPC);
}

TEST_F(FullTransfer, ShortAndInterruptedReadsReadTheWholeFile)
{
    write(kText);
    ASSERT_EQ(system().lseek(file(), 0, SEEK_SET), 0);
    SlowFiles files;
    EXPECT_EQ(readAll(files, file(), 0, 100, bytes_), 0);
    EXPECT_EQ(bytes_, kText);
}

TEST_F(FullTransfer, AReadEndsAtTheLimit)
{
    write("12345678");
    for (const std::size_t limit : {0U, 7U, 8U, 9U}) {
        for (const std::size_t expected : {0U, 7U, 8U, 100U}) {
            ASSERT_EQ(system().lseek(file(), 0, SEEK_SET), 0);
            EXPECT_EQ(readAll(system(), file(), expected, limit, bytes_), 0);
            EXPECT_EQ(bytes_, std::string{"12345678"}.substr(0, limit));
        }
    }
}

TEST_F(FullTransfer, AFailedReadKeepsWhatWasReadBeforeIt)
{
    write("12345678");
    ASSERT_EQ(system().lseek(file(), 0, SEEK_SET), 0);
    OneFault files{"read", EIO, 2};
    EXPECT_EQ(readAll(files, file(), 3, 100, bytes_), EIO);
    EXPECT_EQ(bytes_, "1234");
}

TEST_F(FullTransfer, ShortAndInterruptedReadsAtAnOffsetFillTheBuffer)
{
    write(kText);
    SlowFiles files;
    std::string buffer(15, '-');
    std::size_t count = 0;
    EXPECT_EQ(readAt(files, file(), 2, buffer.data(), buffer.size(), count), 0);
    EXPECT_EQ(count, 15U);
    EXPECT_EQ(buffer, kText.substr(2, 15));
}

TEST_F(FullTransfer, AReadAtAnOffsetIsShortOnlyAtTheEndOfTheFile)
{
    write(kText);
    std::string buffer(100, '-');
    std::size_t count = 0;
    EXPECT_EQ(readAt(system(), file(), 2, buffer.data(), buffer.size(), count), 0);
    EXPECT_EQ(buffer.substr(0, count), kText.substr(2));
    EXPECT_EQ(readAt(system(), file(), 99, buffer.data(), buffer.size(), count), 0);
    EXPECT_EQ(count, 0U);
}

TEST_F(FullTransfer, AFailedReadAtAnOffsetIsReportedWithItsErrno)
{
    write(kText);
    std::string buffer(4, '-');
    std::size_t count = 0;
    OneFault files{"pread", EIO};
    EXPECT_EQ(readAt(files, file(), 0, buffer.data(), buffer.size(), count), EIO);
}

} // namespace
} // namespace gps
