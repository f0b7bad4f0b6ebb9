// SPDX-License-Identifier: MIT

#include "host/base/HostError.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

TEST(HostError, HasDescriptionSuggestionAndPath)
{
    const auto error = host::hostError("It failed", "Try again", "/some/file");
    EXPECT_EQ(error.domain(), host::kHostErrorDomain);
    EXPECT_EQ(error.code(), 1);
    EXPECT_EQ(error.description(), "It failed");
    EXPECT_EQ(error.suggestion(), "Try again");
    EXPECT_EQ(error.path(), "/some/file");
}

TEST(HostError, WithoutAPathHasNone)
{
    EXPECT_FALSE(host::hostError("It failed", "Try again").path());
}

TEST(SystemError, HasTheErrnoAsItsCodeAndTheTextOfTheSystem)
{
    const auto error = host::systemError("It cannot be read", "Try again", "/some/file", ENOENT);
    EXPECT_EQ(error.domain(), host::kSystemErrorDomain);
    EXPECT_EQ(error.code(), ENOENT);
    EXPECT_EQ(error.description(), "It cannot be read: No such file or directory");
    EXPECT_EQ(error.suggestion(), "Try again");
    EXPECT_EQ(error.path(), "/some/file");
}

} // namespace
