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

TEST(Hash, IsSixteenLowerCaseHexadecimalDigits)
{
    EXPECT_TRUE(host::isHash(host::hashOf("")));
    EXPECT_TRUE(host::isHash("0123456789abcdef"));
    for (const char* text : {"", "0123456789abcde", "0123456789abcdef0", "0123456789ABCDEF",
                             "0123456789abcdeg", "0123456789abcde "})
        EXPECT_FALSE(host::isHash(text)) << text;
}

} // namespace
