// SPDX-License-Identifier: MIT
// Filtering, cutting and copying of texts, with both sides of each limit.

#include <gps/Error.h>
#include <plugin/codec/FieldText.h>
#include <plugin/codec/SentenceFields.h>
#include <support/Sentence.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace magellan {
namespace {

using support::firstFields;

constexpr std::string_view kAllowed =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz .0123456789-/'!@#<%^&>()+=:\\";
constexpr char kTwentyFive[] = "abcdefghijklmnopqrstuvwxy";

std::string filtered(const gps::Value& value)
{
    return magellanStringFromDictionary({{"key", value}}, "key");
}

std::string cut(const gps::Value& value)
{
    return magellanStringFromDictionary({{"key", value}}, "key", 20);
}

TEST(DeviceCharacterSet, HasExactly81Characters)
{
    EXPECT_EQ(deviceCharacterSet().size(), 81U);
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(deviceCharacterSet().contains(static_cast<char>(byte)),
                  kAllowed.find(static_cast<char>(byte)) != std::string_view::npos)
            << byte;
}

TEST(DeviceCharacterSet, IsBuiltOnce)
{
    EXPECT_EQ(&deviceCharacterSet(), &deviceCharacterSet());
}

TEST(FieldText, FilteringDropsCommasAndAsterisksAndClosesTheGap)
{
    EXPECT_EQ(filtered("Old, Mill"), "Old Mill");
    EXPECT_EQ(filtered("**Old*Mill**"), "OldMill");
    EXPECT_EQ(filtered(kAllowed), kAllowed);
}

TEST(FieldText, ANameOf25CharactersIsCutTo20AndACommentOf25IsWhole)
{
    EXPECT_EQ(cut(kTwentyFive), "abcdefghijklmnopqrst");
    EXPECT_EQ(filtered(kTwentyFive), kTwentyFive);
}

TEST(FieldText, ANameOf20CharactersIsKeptAndOneOf21LosesItsLast)
{
    EXPECT_EQ(cut("abcdefghijklmnopqrs"), "abcdefghijklmnopqrs");
    EXPECT_EQ(cut("abcdefghijklmnopqrst"), "abcdefghijklmnopqrst");
    EXPECT_EQ(cut("abcdefghijklmnopqrstu"), "abcdefghijklmnopqrst");
}

TEST(FieldText, TheFilterComesBeforeTheCut)
{
    EXPECT_EQ(cut("____________________abc"), "abc");
    EXPECT_EQ(cut("\xC3\xA9\xC3\xA9" + std::string{kTwentyFive}), "abcdefghijklmnopqrst");
}

TEST(FieldText, TheLengthIsIgnored)
{
    for (const int length : {-1, 0, 5, 20, 1000})
        EXPECT_EQ(magellanStringFromDictionary({{"key", kTwentyFive}}, "key", length),
                  "abcdefghijklmnopqrst")
            << length;
}

TEST(FieldText, ANameWithoutAnyCharacterOfTheSetIsAnEmptyField)
{
    EXPECT_EQ(cut("\xC3\xA9\xC3\xA8\xC3\xAA"), "");
    EXPECT_EQ(filtered("\xE6\xBC\xA2\xE5\xAD\x97"), "");
}

TEST(FieldText, AMissingKeyOrAValueThatIsNotATextIsAnEmptyField)
{
    EXPECT_EQ(magellanStringFromDictionary({}, "key"), "");
    EXPECT_EQ(magellanStringFromDictionary({}, "key", 20), "");
    EXPECT_EQ(filtered(42), "");
    EXPECT_EQ(filtered(gps::Array{"x"}), "");
}

constexpr char kEight[] = "f0,f1,f2,f3,f4,f5,f6,f7";

TEST(FieldText, TextBeforeAnAppendedOneCountsNeitherForTheFilterNorForTheCut)
{
    std::string sentence = "$PMGNWPL,*,";
    appendDeviceText(sentence, {{"key", "a*bcd"}}, "key", 3);
    EXPECT_EQ(sentence, "$PMGNWPL,*,abc");
    appendDeviceText(sentence, {}, "key", 3);
    EXPECT_EQ(sentence, "$PMGNWPL,*,abc");
}

TEST(SetInDictionary, AnIndexEqualToTheCountThrowsAndOneBelowIsStored)
{
    gps::Dictionary record;
    const auto seven = firstFields(kEight, 7);
    EXPECT_THROW(setInDictionary(record, "key", 7, SentenceFields{seven}), gps::RangeError);
    EXPECT_TRUE(record.empty());
    setInDictionary(record, "key", 7, SentenceFields{kEight});
    EXPECT_EQ(*record.findString("key"), "f7");
}

TEST(SetInDictionary, AnIndexAboveTheCountDoesNothing)
{
    gps::Dictionary record{{"key", "old"}};
    const auto six = firstFields(kEight, 6);
    setInDictionary(record, "key", 7, SentenceFields{six});
    EXPECT_EQ(*record.findString("key"), "old");
}

TEST(SetInDictionary, FieldsAreStoredUnchangedEvenIfEmpty)
{
    gps::Dictionary record;
    setInDictionary(record, "empty", 1, SentenceFields{"a,,c"});
    setInDictionary(record, "odd", 1, SentenceFields{"a,_?;|,c"});
    EXPECT_EQ(gps::describe(record), "{empty = \"\", odd = \"_?;|\"}");
}

} // namespace
} // namespace magellan
