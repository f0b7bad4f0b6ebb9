// SPDX-License-Identifier: MIT

#include <platform/GPSUtilities/CharacterFilter.h>

#include <gtest/gtest.h>

namespace gps {
namespace {

const CharacterSet& vowels()
{
    static const CharacterSet set{"aeiou"};
    return set;
}

TEST(CharacterFilter, KeepsTheSetsCharactersInTheirOrder)
{
    EXPECT_EQ(stringByRemovingCharactersNotInSet("education", vowels()), "euaio");
    EXPECT_EQ(stringByRemovingCharactersNotInSet("EDUCATION", vowels()), "");
    EXPECT_EQ(stringByRemovingCharactersNotInSet("", vowels()), "");
}

TEST(CharacterFilter, ACharacterOutsideAsciiIsRemovedWhole)
{
    EXPECT_EQ(
        stringByRemovingCharactersNotInSet("a\xC3\xA9i \xE2\x82\xAC o\xF0\x9F\x98\x80u", vowels()),
        "aiou");
    EXPECT_EQ(stringByRemovingCharactersNotInSet("\xFF\x80", vowels()), "");
}

TEST(CharacterFilter, ANulByteIsACharacterLikeAnyOther)
{
    EXPECT_EQ(stringByRemovingCharactersNotInSet(std::string_view{"a\0e", 3}, vowels()), "ae");
}

TEST(CharacterFilter, AnEmptySetKeepsNothing)
{
    EXPECT_EQ(stringByRemovingCharactersNotInSet("aeiou", CharacterSet{""}), "");
}

TEST(CharacterFilter, TextThatIsThereAlreadyIsNotFiltered)
{
    std::string text = "xyz";
    appendCharactersInSet(text, "alien", vowels());
    EXPECT_EQ(text, "xyzaie");
}

TEST(CharacterFilter, ASetContainsATextIfItContainsEachCharacter)
{
    EXPECT_TRUE(vowels().containsAll("aeiou"));
    EXPECT_TRUE(vowels().containsAll(""));
    EXPECT_FALSE(vowels().containsAll("aeioux"));
    EXPECT_FALSE(vowels().containsAll("\xE1"));
}

TEST(CharacterFilter, ASetCountsEachCharacterOnce)
{
    EXPECT_EQ(CharacterSet{"aabbc"}.size(), 3U);
    EXPECT_TRUE(vowels().contains('a'));
    EXPECT_FALSE(vowels().contains('b'));
    EXPECT_FALSE(vowels().contains('\xE1'));
}

} // namespace
} // namespace gps
