// SPDX-License-Identifier: MIT

#include "host/files/Hash.h"

#include <gtest/gtest.h>

namespace {

TEST(Hash, MatchesThePublishedTestVectors)
{
    EXPECT_EQ(host::hashOf(""), "cbf29ce484222325");
    EXPECT_EQ(host::hashOf("a"), "af63dc4c8601ec8c");
    EXPECT_EQ(host::hashOf("foobar"), "85944171f73967e8");
}

} // namespace
