// SPDX-License-Identifier: MIT

#include <platform/GPSUtilities/GPSStorageAuthorization.h>

#include <gtest/gtest.h>

namespace gps {
namespace {

TEST(GPSStorageAuthorization, GrantsEveryPathAndAnswersThePathItself)
{
    for (const auto* path : {"/", "/media/user/MAGELLAN", "/nowhere/at all", ""}) {
        const auto url = GPSStorageAuthorization::authorizedBookmarkURLForPath(path);
        ASSERT_TRUE(url) << path;
        EXPECT_EQ(url->path(), path);
    }
}

TEST(GPSStorageAuthorization, AccessOpensAndCloses)
{
    const auto url = GPSStorageAuthorization::authorizedBookmarkURLForPath("/media");
    EXPECT_TRUE(url->startAccessingSecurityScopedResource());
    url->stopAccessingSecurityScopedResource();
    EXPECT_TRUE(url->startAccessingSecurityScopedResource());
}

} // namespace
} // namespace gps
