// SPDX-License-Identifier: MIT

#include "host/files/FolderLock.h"

#include "platform/System/OneFault.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <utility>

namespace {

TEST(FolderLock, SecondOneOfTheFolderIsHeldByAnotherUntilTheFirstEnds)
{
    const support::TemporaryFolder folder;
    {
        host::FolderLock first{folder.path()};
        EXPECT_FALSE(first.isHeldByAnother());
        EXPECT_TRUE(host::FolderLock{folder.path()}.isHeldByAnother());
        const auto moved = std::move(first);
        EXPECT_TRUE(host::FolderLock{folder.path()}.isHeldByAnother());
    }
    EXPECT_FALSE(host::FolderLock{folder.path()}.isHeldByAnother());
}

TEST(FolderLock, FolderWithoutLocksCountsAsLocked)
{
    const support::TemporaryFolder folder;
    support::OneFault files{"flock", ENOTSUP};
    EXPECT_FALSE((host::FolderLock{folder.path(), files}.isHeldByAnother()));
    EXPECT_FALSE(host::FolderLock{folder.path("missing")}.isHeldByAnother());
}

TEST(FolderLock, KnowsItsFolderByAnyPath)
{
    const support::TemporaryFolder folder;
    folder.makeFolder("a");
    const host::FolderLock lock{folder.path()};
    EXPECT_TRUE(lock.isOfAny({folder.path("a/..")}));
    EXPECT_TRUE(lock.isOfAny({folder.path("a"), folder.path()}));
    EXPECT_FALSE(lock.isOfAny({folder.path("a")}));
    EXPECT_FALSE(lock.isOfAny({folder.path("missing")}));
    EXPECT_FALSE(lock.isOfAny({}));
    EXPECT_FALSE(host::FolderLock{folder.path("missing")}.isOfAny({folder.path()}));
}

} // namespace
