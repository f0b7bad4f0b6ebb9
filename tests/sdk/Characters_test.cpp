// SPDX-License-Identifier: MIT

#include <gps/Characters.h>

#include <gtest/gtest.h>

#include <string>

namespace gps {
namespace {

TEST(Characters, SixCharactersAreWhiteSpace)
{
    std::string found;
    for (int c = -128; c < 128; ++c) {
        if (isWhiteSpace(static_cast<char>(c)))
            found += static_cast<char>(c);
    }
    EXPECT_EQ(found, "\t\n\v\f\r ");
}

TEST(Characters, TenCharactersAreDigits)
{
    std::string found;
    for (int c = -128; c < 128; ++c) {
        if (isDigit(static_cast<char>(c)))
            found += static_cast<char>(c);
    }
    EXPECT_EQ(found, "0123456789");
}

TEST(Characters, OnlyTheCapitalsOfAsciiHaveSmallLetters)
{
    std::string changed;
    for (int c = -128; c < 128; ++c) {
        if (lowerCase(static_cast<char>(c)) != static_cast<char>(c))
            changed += {static_cast<char>(c), lowerCase(static_cast<char>(c))};
    }
    EXPECT_EQ(changed, "AaBbCcDdEeFfGgHhIiJjKkLlMmNnOoPpQqRrSsTtUuVvWwXxYyZz");
}

TEST(Characters, TrimmingKeepsTheSpaceInside)
{
    EXPECT_EQ(trimmed(" \t\r\na b\v\f "), "a b");
    EXPECT_EQ(trimmed("a"), "a");
    EXPECT_EQ(trimmed(" \n "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Characters, OnlyTheSpaceAtTheStartIsLeading)
{
    EXPECT_EQ(withoutLeadingSpace(" \ta b \n"), "a b \n");
    EXPECT_EQ(withoutLeadingSpace(" \n "), "");
    EXPECT_EQ(withoutLeadingSpace(""), "");
}

} // namespace
} // namespace gps
