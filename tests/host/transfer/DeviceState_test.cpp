// SPDX-License-Identifier: MIT

#include "host/transfer/DeviceState.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using host::DeviceState;

class DeviceStateTest : public testing::Test {
protected:
    DeviceStateTest()
    {
        folder_.put("device/Points/a.upt", "one");
        folder_.put("device/Points/deep/b.upt", "two");
        folder_.put("device/other", "not data");
    }

    [[nodiscard]] DeviceState look() const
    {
        return DeviceState::of(folder_.path("device"), {folder_.path("device/Points")});
    }

    // Whether the second look sees a change.
    [[nodiscard]] bool isSeen(const std::function<void()>& change) const
    {
        const auto before = look();
        change();
        return look() != before;
    }

    // Gives a file the times that it had before it was changed.
    void setOld(const std::string& name) const
    {
        const timespec old[2]{{1'000'000'000, 0}, {1'000'000'000, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, folder_.path(name).c_str(), old, 0), 0);
    }

    // Returns once a change of any file gets a later time: file systems count in ticks.
    void awaitTick() const
    {
        const auto changed = [this](const char* name) {
            struct stat status {};
            EXPECT_EQ(::stat(folder_.put(name, "").c_str(), &status), 0);
            return std::pair{status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
        };
        const auto start = changed("first");
        while (changed("later") == start) {
        }
    }

    support::TemporaryFolder folder_;
};

TEST_F(DeviceStateTest, SameFilesAreNoChange)
{
    EXPECT_FALSE(isSeen([] {}));
}

TEST_F(DeviceStateTest, EachChangeOfAFileIsSeen)
{
    const auto path = [this](const char* name) { return folder_.path(name); };
    EXPECT_TRUE(isSeen([&] { folder_.put("device/Points/c.upt", ""); })) << "a new file";
    EXPECT_TRUE(isSeen([&] { folder_.put("device/Points/deep/b.upt", "three"); })) << "its size";
    EXPECT_TRUE(isSeen([&] { fs::remove(path("device/Points/c.upt")); })) << "one that is gone";
    EXPECT_TRUE(isSeen([&] {
        fs::rename(path("device/Points/a.upt"), path("device/Points/d.upt"));
    })) << "its name";
    EXPECT_TRUE(isSeen([&] { fs::create_directory(path("device/Points/new")); })) << "a folder";
}

TEST_F(DeviceStateTest, ChangeOfEqualSizeAndTimeIsSeenByTheTimeOfTheChange)
{
    setOld("device/Points/a.upt");
    awaitTick();
    EXPECT_TRUE(isSeen([&] {
        folder_.put("device/Points/a.upt", "two");
        setOld("device/Points/a.upt");
    }));
}

TEST_F(DeviceStateTest, WhatIsNotDataDoesNotCount)
{
    EXPECT_FALSE(isSeen([this] { folder_.put("device/other", "changed"); }));
    EXPECT_FALSE(isSeen([this] { folder_.put("device/Points/.magellangps-1-1", "unfinished"); }));
}

TEST_F(DeviceStateTest, FolderThatIsGoneIsAChange)
{
    EXPECT_TRUE(isSeen([this] { fs::remove_all(folder_.path("device/Points")); }));
}

TEST_F(DeviceStateTest, AnotherFolderInTheSamePlaceIsAnotherVolume)
{
    const auto before = look();
    EXPECT_TRUE(look().isOfSameVolume(before));
    fs::rename(folder_.path("device"), folder_.path("first"));
    folder_.put("device/Points/a.upt", "one");
    EXPECT_FALSE(look().isOfSameVolume(before));
}

} // namespace
