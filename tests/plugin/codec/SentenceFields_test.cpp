// SPDX-License-Identifier: MIT
// Splitting and access by index, with the bounds of both.

#include <gps/Error.h>
#include <plugin/codec/SentenceFields.h>
#include <support/RangeErrorText.h>
#include <support/Sentence.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace magellan {
namespace {

TEST(SentenceFields, ABodyWithoutACommaIsOneField)
{
    EXPECT_EQ(SentenceFields{""}.count(), 1U);
    EXPECT_EQ(SentenceFields{""}.at(0), "");
    EXPECT_EQ(SentenceFields{"PMGNCMD"}.count(), 1U);
    EXPECT_EQ(SentenceFields{"PMGNCMD"}.at(0), "PMGNCMD");
}

TEST(SentenceFields, KeepTheirTextExactlyAndIncludeEmptyOnes)
{
    const SentenceFields fields{",a, b ,,"};
    ASSERT_EQ(fields.count(), 5U);
    EXPECT_EQ(fields.at(0), "");
    EXPECT_EQ(fields.at(1), "a");
    EXPECT_EQ(fields.at(2), " b ");
    EXPECT_EQ(fields.at(3), "");
    EXPECT_EQ(fields.at(4), "");
}

TEST(SentenceFields, AnIndexEqualToTheCountThrowsAndTheOneBelowDoesNot)
{
    const SentenceFields fields{"a,b,c"};
    EXPECT_EQ(fields.at(2), "c");
    EXPECT_THROW((void)fields.at(3), gps::RangeError);
    EXPECT_THROW((void)fields.at(15), gps::RangeError);
}

TEST(SentenceFields, ARangeErrorIsAnOutOfRangeThatNamesSentenceFieldAndCount)
{
    static_assert(std::is_base_of_v<std::out_of_range, gps::RangeError>);
    EXPECT_EQ(support::rangeErrorOf([] { (void)SentenceFields{"PMGNTRK"}.at(7); }),
              "A PMGNTRK sentence has no field 7: it has 1 field");
    EXPECT_EQ(support::rangeErrorOf([] { (void)SentenceFields{"PMGNGEO,1,2"}.at(12); }),
              "A PMGNGEO sentence has no field 12: it has 3 fields");
}

TEST(SentenceFields, RequiringTooManyFieldsThrowsForTheFirstMissingOne)
{
    const SentenceFields fields{"PMGNTRK,1,2"};
    EXPECT_NO_THROW(fields.require(0));
    EXPECT_NO_THROW(fields.require(3));
    for (const std::size_t count : {4U, 8U, 100U})
        EXPECT_EQ(support::rangeErrorOf([&] { fields.require(count); }),
                  "A PMGNTRK sentence has no field 3: it has 3 fields")
            << count;
}

TEST(SentenceFields, MissingContentThrowsLikeAMissingField)
{
    EXPECT_THROW(SentenceFields{"a,b,c"}.throwRangeError(1), gps::RangeError);
}

TEST(SentenceFields, TheFirstSixteenAreReachableHoweverManyThereAre)
{
    std::string body = "f0";
    for (int i = 1; i < 40; ++i) {
        body.append(",f").append(std::to_string(i));
        const SentenceFields fields{body};
        ASSERT_EQ(fields.count(), static_cast<std::size_t>(i) + 1);
        for (std::size_t at = 0; at < SentenceFields::kReachable && at < fields.count(); ++at)
            ASSERT_EQ(fields.at(at), std::string{"f"}.append(std::to_string(at)));
    }
}

TEST(SentenceFields, AreSplitAtEveryOffset)
{
    for (std::size_t length = 0; length < 40; ++length) {
        for (std::size_t comma = 0; comma < length; ++comma) {
            std::string body(length, '-'); // differs from the comma in one bit
            body[comma] = ',';
            const SentenceFields fields{body};
            ASSERT_EQ(fields.count(), 2U) << body;
            ASSERT_EQ(fields.at(0), std::string(comma, '-')) << body;
            ASSERT_EQ(fields.at(1), std::string(length - comma - 1, '-')) << body;
        }
    }
}

TEST(SentenceFields, NoOtherCharacterSeparates)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string body(11, static_cast<char>(byte));
        EXPECT_EQ(SentenceFields{body}.count(), byte == ',' ? 12U : 1U) << byte;
    }
}

TEST(SentenceFields, ExistForAValidLineOfTheRequestedName)
{
    const auto line = support::sentence("PMGNTRK,a,b") + "\r\n";
    const auto fields = SentenceFields::ofSentence(line, "PMGNTRK");
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->count(), 3U);
    EXPECT_EQ(fields->at(2), "b");
    EXPECT_TRUE(SentenceFields::ofSentence(support::sentence("PMGNTRK"), "PMGNTRK"));
}

TEST(SentenceFields, DoNotExistForAnInvalidLineOrOneOfAnotherName)
{
    for (const auto* body : {"PMGNTR", "PMGNTR,K", "PMGNTRKX", "PMGNTRKX,a", "pmgntrk,a",
                             " PMGNTRK,a", "PMGNWPL,a", ",PMGNTRK"})
        EXPECT_FALSE(SentenceFields::ofSentence(support::sentence(body), "PMGNTRK")) << body;
    EXPECT_FALSE(SentenceFields::ofSentence(support::breakChecksum(support::sentence("PMGNTRK,a")),
                                            "PMGNTRK"));
    EXPECT_FALSE(SentenceFields::ofSentence("", "PMGNTRK"));
}

TEST(SentenceFields, ABodyIsSplitOnlyIfItsFirstFieldIsTheName)
{
    for (const auto* body : {"PMGNTRK", "PMGNTRK,", "PMGNTRK,a,b"})
        EXPECT_TRUE(SentenceFields::ofBody(body, "PMGNTRK")) << body;
    for (const auto* body : {"", "PMGNTR", "PMGNTR,K", "PMGNTRKX", "PMGNTRKX,a", "pmgntrk,a",
                             " PMGNTRK,a", "PMGNWPL,a", ",PMGNTRK", "$PMGNTRK,a"})
        EXPECT_FALSE(SentenceFields::ofBody(body, "PMGNTRK")) << body;
    EXPECT_EQ(SentenceFields::ofBody("PMGNTRK,a,b", "PMGNTRK")->at(2), "b");
}

TEST(SentenceFields, TheRestBeginsAtAFieldAndIsEmptyPastTheLast)
{
    const SentenceFields fields{"a,b,,c,"};
    EXPECT_EQ(fields.from(0), "a,b,,c,");
    EXPECT_EQ(fields.from(2), ",c,");
    EXPECT_EQ(fields.from(4), "");
    EXPECT_EQ(fields.from(5), "");
}

TEST(SentenceFields, AreViewsIntoTheBody)
{
    const std::string body = "a,b,c";
    EXPECT_EQ(SentenceFields{body}.at(1).data(), body.data() + 2);
}

} // namespace
} // namespace magellan
