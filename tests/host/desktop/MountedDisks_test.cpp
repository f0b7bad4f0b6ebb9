// SPDX-License-Identifier: MIT

#include "host/desktop/MountedDisks.h"

#include "host/base/HostError.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Mounts each disk below /media.
struct RecordingService final : host::DiskService {
    std::optional<gps::Error> whyUnavailable() override { return std::nullopt; }
    std::optional<gps::Error> mount(const std::string& node, std::string& folder) override
    {
        calls.push_back("mount " + node);
        if (isRefusing)
            return host::hostError("No", "");
        folder = "/media" + node;
        return std::nullopt;
    }
    std::optional<gps::Error> unmount(const std::string& node) override
    {
        calls.push_back("unmount " + node);
        return isRefusing ? std::optional{host::hostError("No", "")} : std::nullopt;
    }
    std::optional<gps::Error> powerOff(const std::string& node, bool& /*isOff*/) override
    {
        calls.push_back("power off " + node);
        return std::nullopt;
    }

    bool isRefusing = false;
    std::vector<std::string> calls;
};

TEST(MountedDisks, ThoseThatAreLeftAreUnmountedInTheEnd)
{
    RecordingService service;
    {
        host::MountedDisks disks{service};
        EXPECT_FALSE(disks.mount("/a"));
        EXPECT_FALSE(disks.mount("/b"));
        EXPECT_FALSE(disks.unmount("/a"));
        ASSERT_EQ(disks.all().size(), 1U);
        EXPECT_EQ(disks.all().front().folder, "/media/b");
    }
    EXPECT_THAT(service.calls, ElementsAre("mount /a", "mount /b", "unmount /a", "unmount /b"));
}

TEST(MountedDisks, DiskThatCouldNotBeMountedIsNotUnmounted)
{
    RecordingService service;
    service.isRefusing = true;
    {
        host::MountedDisks disks{service};
        EXPECT_TRUE(disks.mount("/a"));
        EXPECT_THAT(disks.all(), IsEmpty());
    }
    EXPECT_THAT(service.calls, ElementsAre("mount /a"));
}

TEST(MountedDisks, UnmountingIsTriedOnce)
{
    RecordingService service;
    {
        host::MountedDisks disks{service};
        EXPECT_FALSE(disks.mount("/a"));
        service.isRefusing = true;
        EXPECT_TRUE(disks.unmount("/a"));
    }
    EXPECT_THAT(service.calls, ElementsAre("mount /a", "unmount /a"));
}

} // namespace
