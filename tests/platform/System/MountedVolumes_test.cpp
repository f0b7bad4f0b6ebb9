// SPDX-License-Identifier: MIT
// The system's own mount table; mocked ones are in platform_udev/.

#include <platform/System/MountedVolumes.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace gps {
namespace {

TEST(MountedVolumes, AMountTableThatCannotBeReadHasNoVolumes)
{
    const support::TemporaryFolder folder;
    EXPECT_TRUE(mountedVolumes(folder.path("none")).empty());
    EXPECT_TRUE(mountedVolumes(folder.path()).empty());
}

TEST(MountedVolumes, TheSystemsOwnTableHasTheRoot)
{
    const auto volumes = mountedVolumes();
    bool hasRoot = false;
    for (const auto& volume : volumes)
        hasRoot = hasRoot || volume.path == "/";
    EXPECT_TRUE(hasRoot);
}

} // namespace
} // namespace gps
