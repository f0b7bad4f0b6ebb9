// SPDX-License-Identifier: MIT

#include <gps/Error.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace gps {
namespace {

TEST(Error, ReturnsWhatItsUserInformationHolds)
{
    const Error error{
        "domain",
        -2,
        {{kErrorDescriptionKey, "what"}, {kErrorSuggestionKey, "try this"}, {kErrorPathKey, "/a"}}};
    EXPECT_EQ(error.domain(), "domain");
    EXPECT_EQ(error.code(), -2);
    EXPECT_EQ(error.description(), "what");
    EXPECT_EQ(error.suggestion(), "try this");
    EXPECT_EQ(error.path(), "/a");
}

TEST(Error, MissingEntriesAndThoseOfAnotherTypeAreNullopt)
{
    const Error error{"domain", 1, {{kErrorDescriptionKey, 7}}};
    EXPECT_EQ(error.description(), std::nullopt);
    EXPECT_EQ(error.suggestion(), std::nullopt);
    EXPECT_EQ(error.path(), std::nullopt);
}

TEST(Error, ACauseIsAddedWholeAndLeavesTheRestUnchanged)
{
    const Error cause{"inner", 260, {{kErrorPathKey, "/a"}}};
    const Error error{"outer", -1, {{kErrorDescriptionKey, "what"}}};
    const auto caused = error.causedBy(cause);
    EXPECT_EQ(caused.domain(), "outer");
    EXPECT_EQ(caused.code(), -1);
    EXPECT_EQ(caused.description(), "what");
    ASSERT_NE(caused.userInfo().findDictionary(kErrorUnderlyingKey), nullptr);
    EXPECT_EQ(*caused.userInfo().findDictionary(kErrorUnderlyingKey),
              (Dictionary{{"domain", "inner"},
                          {"code", 260},
                          {"userInfo", Dictionary{{kErrorPathKey, "/a"}}}}));
    EXPECT_EQ(error.userInfo().find(kErrorUnderlyingKey), nullptr);
}

TEST(Error, EqualityComparesEveryPart)
{
    const Error error{"domain", 1, {{"a", 1}}};
    EXPECT_EQ(error, (Error{"domain", 1, {{"a", 1.0}}}));
    EXPECT_NE(error, (Error{"other", 1, {{"a", 1}}}));
    EXPECT_NE(error, (Error{"domain", 2, {{"a", 1}}}));
    EXPECT_NE(error, (Error{"domain", 1, {}}));
}

TEST(Error, TheTextIsOneLine)
{
    EXPECT_EQ((Error{"domain", -2, {{"key", "value"}}}.text()),
              R"(Error Domain=domain Code=-2 UserInfo={key = "value"})");
}

TEST(RangeError, NamesTheSentenceTheFieldAndTheCount)
{
    EXPECT_STREQ((RangeError{"PMGNTRK", 7, 3}.what()),
                 "A PMGNTRK sentence has no field 7: it has 3 fields");
    EXPECT_STREQ((RangeError{"PMGNWPL", 1, 1}.what()),
                 "A PMGNWPL sentence has no field 1: it has 1 field");
}

TEST(RangeError, IsAStandardOutOfRangeError)
{
    EXPECT_THROW(throw RangeError("PMGNTRK", 7, 3), std::out_of_range);
}

} // namespace
} // namespace gps
