// SPDX-License-Identifier: MIT

#include "host/files/Output.h"

#include "host/base/HostError.h"
#include "host/formats/Written.h"

#include <gtest/gtest.h>

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

TEST(Output, FirstFailureStays)
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

TEST(Output, ClosedFileIsAFailure)
{
    host::Output output{-1, "nothing"};
    output.write("text");
    EXPECT_TRUE(output.flush());
}

TEST(Spool, WhatWasWrittenIsAppended)
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

TEST(Spool, FolderThatIsNotThereIsNoObstacle)
{
    support::Written written;
    host::Spool spool{"/nowhere"};
    spool.write("text");
    spool.moveTo(written.output());
    EXPECT_EQ(written.text(), "text");
}

TEST(Spool, FolderShowsNoFile)
{
    const support::TemporaryFolder folder;
    host::Spool spool{folder.path()};
    spool.write("text");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
