// SPDX-License-Identifier: MIT

#include "host/window/map/LabelRoom.h"

#include <gtest/gtest.h>

namespace {

using host::LabelRoom;

TEST(LabelRoom, NameIsAfterItsPointIfThereIsRoom)
{
    LabelRoom room{200, 100};
    const auto corner = room.place({100, 50}, 5, 40, 10);
    ASSERT_TRUE(corner);
    EXPECT_GT(corner->x, 105);
    EXPECT_EQ(corner->y, 45);
}

TEST(LabelRoom, NameIsBeforeItsPointWhereThePictureEnds)
{
    LabelRoom room{200, 100};
    const auto corner = room.place({190, 50}, 5, 40, 10);
    ASSERT_TRUE(corner);
    EXPECT_LT(corner->x + 40, 185);
}

TEST(LabelRoom, NamesDoNotOverlap)
{
    LabelRoom room{200, 100};
    const auto first = room.place({100, 50}, 5, 40, 10);
    const auto second = room.place({100, 52}, 5, 40, 10);
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->x, second->x);
}

TEST(LabelRoom, NameWithoutRoomIsLeftOut)
{
    LabelRoom room{200, 100};
    room.occupy({0, 0, 200, 100});
    EXPECT_FALSE(room.place({100, 50}, 5, 40, 10));
    EXPECT_FALSE((LabelRoom{30, 100}.place({15, 50}, 5, 40, 10)));
}

TEST(LabelRoom, AreasThatTouchDoNotOverlap)
{
    EXPECT_FALSE((host::LabelBox{0, 0, 10, 10}.overlaps({10, 0, 10, 10})));
    EXPECT_TRUE((host::LabelBox{0, 0, 10, 10}.overlaps({9.9, 9.9, 10, 10})));
}

TEST(LabelRoom, EndsAtTheMostLabelsThatCanBeRead)
{
    LabelRoom room{1e6, 100};
    for (std::size_t i = 0; i < LabelRoom::kMostLabels; ++i) {
        EXPECT_FALSE(room.isFull());
        EXPECT_TRUE(room.place({100.0 * static_cast<double>(i) + 50, 50}, 5, 40, 10));
    }
    EXPECT_TRUE(room.isFull());
    EXPECT_FALSE(room.place({9e5, 50}, 5, 40, 10));
}

} // namespace
