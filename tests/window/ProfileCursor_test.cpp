// SPDX-License-Identifier: MIT

#include "host/window/profile/ProfileCursor.h"

#include <gtest/gtest.h>

namespace {

using host::ProfileCursor;
using host::ProfileStretch;
using Step = ProfileCursor::Step;

TEST(ProfileCursor, IsNowhereAtFirst)
{
    const ProfileCursor cursor{5};
    EXPECT_FALSE(cursor.point());
    EXPECT_FALSE(cursor.stretch());
}

TEST(ProfileCursor, FollowsThePointerAndReturnsToWhatWasClicked)
{
    ProfileCursor cursor{5};
    cursor.pointAt(3);
    EXPECT_EQ(cursor.point(), 3);
    cursor.pointAt(std::nullopt);
    EXPECT_FALSE(cursor.point());
    cursor.pin(1);
    cursor.pointAt(4);
    EXPECT_EQ(cursor.point(), 4);
    cursor.pointAt(std::nullopt);
    EXPECT_EQ(cursor.point(), 1);
}

TEST(ProfileCursor, DragMarksAStretchInEitherDirection)
{
    ProfileCursor cursor{5};
    cursor.drag(3, 1);
    EXPECT_EQ(cursor.stretch(), (ProfileStretch{1, 3}));
    cursor.drag(3, 3);
    EXPECT_FALSE(cursor.stretch());
    cursor.drag(3, 4);
    EXPECT_EQ(cursor.stretch(), (ProfileStretch{3, 4}));
    cursor.pin(0);
    EXPECT_FALSE(cursor.stretch());
}

TEST(ProfileCursor, KeysMoveByAHundredthATenthOrOnePoint)
{
    ProfileCursor cursor{1001};
    cursor.step(Step::kForward, false, false);
    EXPECT_EQ(cursor.point(), 10);
    cursor.step(Step::kPageForward, false, false);
    EXPECT_EQ(cursor.point(), 110);
    cursor.step(Step::kBack, true, false);
    EXPECT_EQ(cursor.point(), 109);
    cursor.step(Step::kPageBack, false, false);
    EXPECT_EQ(cursor.point(), 9);
    cursor.step(Step::kBack, false, false);
    EXPECT_EQ(cursor.point(), 0) << "not before the first";
    cursor.step(Step::kLast, false, false);
    EXPECT_EQ(cursor.point(), 1000);
    cursor.step(Step::kForward, true, false);
    EXPECT_EQ(cursor.point(), 1000) << "not past the last";
    cursor.step(Step::kFirst, false, false);
    EXPECT_EQ(cursor.point(), 0);
}

TEST(ProfileCursor, KeysMoveByOnePointInAShortTrack)
{
    ProfileCursor cursor{2};
    cursor.step(Step::kForward, false, false);
    EXPECT_EQ(cursor.point(), 1);
    ProfileCursor ofOne{1};
    ofOne.step(Step::kForward, false, true);
    EXPECT_EQ(ofOne.point(), 0);
    EXPECT_FALSE(ofOne.stretch());
    ProfileCursor ofNothing;
    ofNothing.step(Step::kLast, false, true);
    EXPECT_FALSE(ofNothing.point());
}

TEST(ProfileCursor, MarkingKeysExtendTheStretch)
{
    ProfileCursor cursor{10};
    cursor.pin(4);
    cursor.step(Step::kForward, false, true);
    cursor.step(Step::kForward, false, true);
    EXPECT_EQ(cursor.stretch(), (ProfileStretch{4, 6}));
    cursor.step(Step::kFirst, false, true);
    EXPECT_EQ(cursor.stretch(), (ProfileStretch{0, 4}));
    cursor.step(Step::kForward, false, false);
    EXPECT_EQ(cursor.stretch(), (ProfileStretch{0, 4})) << "without marking, it stays";
    cursor.step(Step::kForward, false, true);
    EXPECT_EQ(cursor.stretch(), (ProfileStretch{1, 2})) << "another one begins at the cursor";
}

TEST(ProfileCursor, IsClearedAfterTheStretch)
{
    ProfileCursor cursor{10};
    cursor.drag(1, 5);
    EXPECT_TRUE(cursor.clear());
    EXPECT_FALSE(cursor.stretch());
    EXPECT_EQ(cursor.point(), 5);
    EXPECT_TRUE(cursor.clear());
    EXPECT_FALSE(cursor.point());
    EXPECT_FALSE(cursor.clear());
}

} // namespace
