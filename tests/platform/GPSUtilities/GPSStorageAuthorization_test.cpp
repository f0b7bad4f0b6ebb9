// SPDX-License-Identifier: MIT

#include <platform/GPSUtilities/GPSStorageAuthorization.h>

#include <gtest/gtest.h>

namespace gps {
namespace {

TEST(GPSStorageAuthorization, GrantsEveryPathAndReturnsItUnchanged)
{
    for (const auto* path : {"/", "/media/user/MAGELLAN", "/nowhere/at all", ""}) {
        const auto url = GPSStorageAuthorization::authorizedBookmarkURLForPath(path);
        ASSERT_TRUE(url) << path;
        EXPECT_EQ(url->path(), path);
    }
}

TEST(GPSStorageAuthorization, CountsTheBracketsThatAreOpen)
{
    EXPECT_EQ(GPSStorageAuthorization::openAccessCount(), 0U);
    {
        const AuthorizedPath outer{"/media/user/MAGELLAN"};
        const AuthorizedPath inner{"/"};
        EXPECT_EQ(GPSStorageAuthorization::openAccessCount(), 2U);
    }
    EXPECT_EQ(GPSStorageAuthorization::openAccessCount(), 0U);
}

} // namespace
} // namespace gps
