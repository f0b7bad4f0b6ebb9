// SPDX-License-Identifier: MIT

#include <platform/OrvUtils/OrvDebug.h>

#include <gtest/gtest.h>

namespace gps {
namespace {

class OrvDebugTest : public testing::Test {
protected:
    ~OrvDebugTest() override { OrvSetDebugLevel(0); }
};

TEST_F(OrvDebugTest, IsOffAtEveryLevelWhenTheLevelIsZero)
{
    OrvSetDebugLevel(0);
    for (const int level : {-1, 0, 1, 2})
        EXPECT_FALSE(OrvDebugLevelIs(level)) << level;
}

TEST_F(OrvDebugTest, IsOnUpToTheLevelThatWasSet)
{
    OrvSetDebugLevel(2);
    EXPECT_TRUE(OrvDebugLevelIs(0));
    EXPECT_TRUE(OrvDebugLevelIs(1));
    EXPECT_TRUE(OrvDebugLevelIs(2));
    EXPECT_FALSE(OrvDebugLevelIs(3));
}

TEST_F(OrvDebugTest, TheLevelSetLastCounts)
{
    OrvSetDebugLevel(3);
    OrvSetDebugLevel(1);
    EXPECT_TRUE(OrvDebugLevelIs(1));
    EXPECT_FALSE(OrvDebugLevelIs(2));
}

} // namespace
} // namespace gps
