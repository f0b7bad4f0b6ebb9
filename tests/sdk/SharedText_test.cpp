// SPDX-License-Identifier: MIT
// Texts whose copies share their bytes.

#include <gps/SharedText.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

TEST(SharedText, IsTheTextThatItWasMadeOf)
{
    const gps::SharedText text{std::string{"a\0b", 3}};
    EXPECT_EQ(std::string_view{text}, std::string_view("a\0b", 3));
    EXPECT_EQ(text, std::string_view("a\0b", 3));
    EXPECT_NE(text, "a");
}

TEST(SharedText, IsEmptyWithoutOne)
{
    EXPECT_EQ(gps::SharedText{}, "");
    EXPECT_EQ(gps::SharedText{}, gps::SharedText{""});
    EXPECT_NE(gps::SharedText{}, "a");
}

TEST(SharedText, SharesItsBytesWithItsCopies)
{
    gps::SharedText text{"shared"};
    const auto copy = text;
    const std::string_view bytes = text;
    EXPECT_EQ(std::string_view{copy}.data(), bytes.data());
    text = "another";
    EXPECT_EQ(copy, "shared");
    EXPECT_EQ(bytes, "shared");
    EXPECT_EQ(text, "another");
}

} // namespace
